// What a picture's file says of itself: title, number and author from the sheet's title block.
#pragma once

#include "app/workspace.h"

#include "display/render.h"

#include <CLI/CLI.hpp>

#include <vector>

namespace app {

// Options that the caller has filled in stay. The first sheet that has a title (a number, an author) gives
// it: a document is one drawing in the rule. Fields are known by their names, in small or capital letters:
// "title", "number" (or "dwg_no", "drawing_no"), "creator" (or "drawn", "drawn_by", "author"), "revision".
host::display::RenderOptions withDocumentInfo(host::display::RenderOptions options,
                                              const std::vector<SheetRef> &sheets);

// --date: without it a file says nothing of when it was made, and the same sheet gives the same bytes.
void addDateOption(CLI::App *verb, host::display::RenderOptions &options);

} // namespace app
