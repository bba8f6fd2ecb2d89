// fill, from a report: what somebody has changed in it is set on its sheets, and nothing else.
#pragma once

#include "app/fleet/paths.h"
#include "app/fleet/run.h"

#include <string>

namespace app::fleet {

struct FillReportArguments {
    PathArguments paths; // none: all drawings of the report
    RunArguments run;
    std::string data;
    bool force = false;  // also locked fields
    bool strict = false; // refuse values that do not fit their cells
};

// One save a drawing, and none where nothing is changed. Each drawing whose rows cannot be set as they
// are is reported with everything that is wrong with them, and left alone.
int fillFromReport(const Options &options, const FillReportArguments &arguments);

} // namespace app::fleet
