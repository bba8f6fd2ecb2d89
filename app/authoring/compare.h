// What differs between two states of definitions, slot by slot, and what that does to blocks that stand
// on drawings.
#pragma once

#include "app/authoring/record.h"

#include <string>
#include <vector>

namespace app::authoring {

struct Difference {
    std::string where; // "block TITLE, field number"
    std::string what;  // "text_size: 2.5 -> 3.5", "added", "removed", "moved"
};

std::vector<Difference> differences(const std::vector<RecordTree> &old,
                                    const std::vector<RecordTree> &fresh);

// What a rollout does to placed blocks: fields and tables added, removed, and REORDERED where a known one
// takes another position, so that placed values would change cells.
std::vector<Difference> rollout(const std::vector<RecordTree> &old,
                                const std::vector<RecordTree> &fresh);

} // namespace app::authoring
