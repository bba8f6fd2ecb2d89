// The family "asme": sheets A to F and A vertical with frame, zones and alignment arrows, laid out after
// ASME Y14.1. Inches, origin at the sheet's lower left corner.
#pragma once

#include "app/authoring/model.h"

#include <string>

namespace app::authoring {

struct AsmeSheet {
    const char *id;
    const char *label;
    const char *description;
    double width;
    double height;
    int sizeCode; // of the platform; 0 for the vertical sheet, which has none
    double sideMargin;
    double endMargin; // top and bottom
    int columns;      // zones, counted from the sheet's edges; 0 none
    int rows;
};

const AsmeSheet *asmeSheet(const std::string &id); // null when the family has no such size
std::string asmeSheetIds();

Size asmeSize(const AsmeSheet &sheet, int frameLayer);
Art asmeFrame(const AsmeSheet &sheet, const std::string &font);

} // namespace app::authoring
