// Which pattern masters a part's patterns use, and under which ids they are stored.
#pragma once

#include "body_codec.h"

#include <map>

namespace host::store {

using MastersById = std::map<std::int64_t, std::shared_ptr<const PatternMaster>>;

struct StoredMasters {
    MastersById byId;       // one a content
    Encoder::MasterIds ids; // of every master, equal ones alike
};

// Numbered from 1 in the order in which the part's patterns first use them. Masters of the same content
// share an id, whether or not they share an address: the file depends on the content alone.
StoredMasters mastersOf(const Part &part);

// The same for a part whose file holds `stored`: known masters keep their ids, new ones follow, and
// those that no pattern uses any more are left out.
StoredMasters mastersOf(const Part &part, const MastersById &stored);

} // namespace host::store
