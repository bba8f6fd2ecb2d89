// The zone of a sheet that a point lies in, by the name that a reader of the print finds it under.
#pragma once

#include "app/workspace.h"

#include <string>

namespace app {

struct ZoneNames {
    std::string printed; // on the border of the frame
    std::string library; // the library's: columns from the right, rows from the bottom
};

// Both are empty on a sheet without zones, and for a point that is not finite.
ZoneNames zoneOf(const SheetRef &sheet, double x, double y);

} // namespace app
