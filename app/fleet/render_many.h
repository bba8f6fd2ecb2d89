// render for many drawings: pictures in a folder, or one document.
#pragma once

#include "app/fleet/paths.h"
#include "app/fleet/run.h"
#include "app/options.h"

#include "display/render.h"

#include <string>

namespace app::fleet {

struct RenderManyArguments {
    PathArguments paths;
    RunArguments run;
    std::string ending; // ".pdf", ".svg" or ".png"
    std::string output; // the folder, or with `merge` the document
    bool merge = false; // one PDF of all sheets; made by one process
    host::display::RenderOptions options;
};

// A drawing found in a folder keeps its place below it. A picture of several sheets has one file a
// sheet, "drawing-SHEET.svg"; a PDF a page each.
int renderMany(const Options &options, const RenderManyArguments &arguments);

} // namespace app::fleet
