// What differs between two states of definitions, slot by slot and in stored order.
#pragma once

#include "app/authoring/record.h"

#include <string>
#include <vector>

namespace app::authoring {

struct Difference {
    std::string where; // "block TITLE, field number"
    std::string what;  // "text_size: 2.5 -> 3.5", "added", "removed", "position 3 -> 1"
};

// Records are found again by what identityOf tells them by. Everything that the full form writes counts:
// also layers, names and elements that no class knows, and whether a slot is stored at all.
std::vector<Difference> differences(const RecordFile &old, const RecordFile &fresh);

} // namespace app::authoring
