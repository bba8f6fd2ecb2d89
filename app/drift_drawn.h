// What stands on the sheet for a block's fields, against what their definitions say: the library's update
// leaves some of it as it was.
#pragma once

#include "app/drift.h"

class TrBlockDefV1;

namespace app {

// Layers, indentation, borders, letters and place of the fields of the block and of its rows.
void compareDrawn(TrBlockBase &block, const TrBlockDefV1 &def, Differences &found);

} // namespace app
