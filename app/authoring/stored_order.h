// Placed blocks pair with their definitions by position. What once was stored therefore keeps its place:
// records that an older state knows come first, in its order, and new ones follow.
#pragma once

#include "app/authoring/record.h"

#include <string>
#include <vector>

namespace app::authoring {

// By which a record is found again: its kind and its id, format, size or name.
std::string identityOf(const RecordTree &record);

void keepOrder(std::vector<RecordTree> &records, const std::vector<RecordTree> &old);

} // namespace app::authoring
