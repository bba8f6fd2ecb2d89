// stamp for many records: a sheet each.
#pragma once

#include "app/fleet/run.h"
#include "app/options.h"

#include "display/render.h"

#include <string>

namespace app::fleet {

struct StampRowsArguments {
    std::string format;       // "ISO/A3"; or
    std::string templatePath; // a drawing that is taken as it is, but for the values
    std::string sheet;        // the template's when it has several; else the new sheet's name
    std::string data;
    std::string output; // a NamePattern: .qdraw, .pdf, .svg or .png
    bool overwrite = false;
    host::display::RenderOptions picture;
    RunArguments run;
};

// Drawings that exist are left alone and reported unless `overwrite`; pictures are written anew.
int stampRows(const Options &options, const StampRowsArguments &arguments);

} // namespace app::fleet
