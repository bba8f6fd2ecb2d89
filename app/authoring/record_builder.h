// The records that the cell form stands for, as they are stored: every slot of a class's layout, what is
// not said as 0 or empty.
#pragma once

#include "app/authoring/model.h"

#include <string>
#include <vector>

namespace app::authoring {

// `units`: 1 millimetres, 2 inches; pattern names depend on them.
RecordTree recordOf(const Field &field);
RecordTree recordOf(const Table &table);
RecordTree recordOf(const BlockLocation &location);
RecordTree recordOf(const Block &block, int units);
RecordTree recordOf(const Format &format, const Size &size, int units);
RecordTree recordOf(const Format &format, int units);
std::vector<RecordTree> recordsOf(const Library &library);

// Names of the patterns that the art becomes; empty without art.
std::string frameOf(const Format &format, const Size &size, int units);
std::string patternOf(const Block &block, int units);

} // namespace app::authoring
