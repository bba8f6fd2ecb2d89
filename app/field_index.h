// The fields of a sheet, looked up once: for commands that read or set many of them.
#pragma once

#include "app/values.h"

#include <boost/shared_ptr.hpp>

#include <string>
#include <vector>

namespace app {

struct IndexedField {
    FieldName name;
    boost::shared_ptr<TrFieldBase> record;
};

// True as long as no block or field of the sheet comes or goes.
class FieldIndex {
public:
    FieldIndex(const Workspace &work, const SheetRef &sheet);

    // In the order of the sheet. Of two blocks, or fields of a block, with one id the first counts.
    const std::vector<IndexedField> &fields() const { return m_fields; }
    // As findField(): "BLOCK.FIELD", or a field's name alone when one block has it; else a Problem, which
    // is an UnknownField where none has it.
    const IndexedField &find(const std::string &text) const;
    const std::string &place() const { return m_place; }
    std::string choices() const; // "there are TITLE.number, TITLE.title"

    void requireEditable(const IndexedField &field) const; // a Problem that names the remedy
    void set(const IndexedField &field, const Lines &lines) const;

private:
    std::string m_part;  // path
    std::string m_place; // "a.qdraw, sheet S1"
    std::vector<IndexedField> m_fields;
};

} // namespace app
