// render --merge: one document of many drawings.
#pragma once

#include "app/fleet/render_many.h"
#include "app/workspace.h"

#include <vector>

namespace app::fleet {

// A page a sheet, in the order of the drawings, made by this process with one page in memory at a time. What
// cannot be read is said and left out. The document says of itself what the first drawing says that says it.
int renderMerged(const Options &options, const RenderManyArguments &arguments,
                 const std::vector<Found> &found);

std::vector<SheetRef> sheetsOf(const Workspace &work); // a Problem when it has none

} // namespace app::fleet
