// From tags, identifiers and indexes to objects. Each step raises a standard exception whose text the
// caller reads as the last error.
#pragma once

#include "content/entry.h"
#include "content/field.h"
#include "content/table.h"
#include "drawing/block.h"
#include "drawing/drawing.h"
#include "drawing/format.h"

#include <boost/shared_ptr.hpp>

#include <string>

namespace QelFmt::api {

boost::shared_ptr<TrDrawing> findDrawing(unsigned tag);   // "Invalid drawing"
boost::shared_ptr<TrFormatBase> findFormat(unsigned tag); // + "No format found on drawing"
boost::shared_ptr<TrBlockBase> findBlock(unsigned tag, const char *block_id);
boost::shared_ptr<TrFieldBase> findField(unsigned tag, const char *block_id, const char *field_id);
boost::shared_ptr<TrTableBase> findTable(unsigned tag, const char *block_id, const char *table_id);

// The table travels along: an entry asks it for its place.
struct FoundEntry {
    boost::shared_ptr<TrTableBase> table;
    boost::shared_ptr<TrEntryBase> entry;
};
FoundEntry findEntry(unsigned tag, const char *block_id, const char *table_id, int index);

// The missing field's text ends "on block." for the editability functions and "on table." for the value
// functions; callers rely on both.
boost::shared_ptr<TrFieldBase> findFieldOf(TrEntryBase &entry, const char *field_id,
                                           const char *where);

// The first block of the format with that identifier; empty when there is none.
boost::shared_ptr<TrBlockBase> firstBlock(const TrFormatBase &format, const std::string &id);

} // namespace QelFmt::api
