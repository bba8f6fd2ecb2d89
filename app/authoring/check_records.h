// Records as such, whatever they mean: numbers that are none, children that nobody looks at, ids.
#pragma once

#include "app/authoring/findings.h"

#include <string>

namespace app::authoring {

// Of the record and all that it owns. `units`: 1 millimetres, 2 inches.
void checkRecord(const RecordTree &record, const std::string &where, int units, Findings &findings);

} // namespace app::authoring
