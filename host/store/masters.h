// Which pattern masters a part's patterns use, and under which ids they are stored.
#pragma once

#include "body_codec.h"

#include <map>

namespace host::store {

struct StoredMasters {
    std::map<std::int64_t, const PatternMaster *> byId; // one a content
    Encoder::MasterIds ids;                             // of every master, equal ones alike
};

// Numbered from 1 in the order in which the part's patterns first use them. Masters of the same content
// share an id, whether or not they share an address: the file depends on the content alone.
StoredMasters mastersOf(const Part &part);

} // namespace host::store
