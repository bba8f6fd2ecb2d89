// An update of a sheet, for programs.
#pragma once

#include "app/output.h"
#include "app/update.h"
#include "app/workspace.h"

namespace app {

// "sheet", "state" before, "format", "size", "formatChanged", "blocks" with how each was updated and
// why so, "addedBlocks", and "values" that are others now.
Json toJson(const SheetRef &sheet, const UpdateReport &report);

} // namespace app
