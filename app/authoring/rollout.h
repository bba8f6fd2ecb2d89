// What new definitions do to blocks that stand on drawings, when an update pairs them as the library does.
#pragma once

#include "app/authoring/record.h"

#include <optional>
#include <string>
#include <vector>

namespace app::authoring {

struct Consequence {
    std::string where;                 // "block TITLE, field number"
    std::string what;                  // "added", "removed", "moved: ...", "REORDERED: ..."
    std::optional<std::size_t> record; // which of the new records it is about, if there is one
    Mark at;                           // in the text of that record
};

// The library's update deletes the fields of a block that are gone, pairs the rest with the new definition
// by position and adds what is missing; tables pair by position without any deletion, the fields of their
// rows by id. REORDERED is what such an update would pair with another definition. `oldName` is the file
// of the old records, for remedies.
std::vector<Consequence> rollout(const std::vector<RecordTree> &old,
                                 const std::vector<RecordTree> &fresh, const std::string &oldName);

} // namespace app::authoring
