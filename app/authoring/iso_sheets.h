// The family "iso": trimmed sheets A0 to A4 with frame, grid reference border, centring and trimming
// marks, laid out after ISO 5457:1999. Millimetres, origin at the sheet's lower left corner.
#pragma once

#include "app/authoring/model.h"
#include "app/authoring/sheet_family.h"

#include <optional>
#include <string>
#include <vector>

namespace app::authoring {

struct IsoSheet {
    const char *id; // "A3", "A4P"
    const char *label;
    double width;
    double height;
    int sizeCode;   // of the platform; 0 for portrait sheets, which have none
    int fieldsWide; // of the grid reference border
    int fieldsHigh;
    double cornerWide; // length of the corner fields, from the trimmed edge
    double cornerHigh;
    bool labelsOnTwoSides; // A4: at the top and on the right only
};

// Null when the family has no such size.
const IsoSheet *isoSheet(const std::string &id);
std::string isoSheetIds(); // for complaints

// The size record: sheet, zones, frame layer and label.
Size isoSize(const IsoSheet &sheet, int frameLayer);
// The frame; marks are left out where they would cross one of the `occupied` rectangles.
Art isoFrame(const IsoSheet &sheet, const std::string &font,
             const std::vector<Rectangle> &occupied);

} // namespace app::authoring
