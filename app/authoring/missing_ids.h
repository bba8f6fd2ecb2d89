// Definitions without an id: one of them ends the loading of all that follow.
#pragma once

#include "app/authoring/record.h"

#include <vector>

namespace app::authoring {

// The formats and blocks without one, wherever they stand in the records.
std::vector<const RecordTree *> withoutId(const std::vector<RecordTree> &records);

} // namespace app::authoring
