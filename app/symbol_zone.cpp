#include "app/symbol_zone.h"

#include "app/authoring/iso_sheets.h"

#include "drawing/drawing.h"
#include "drawing/format.h"

#include "point2.hxx"
#include "point3.hxx"

#include <algorithm>
#include <cmath>

namespace app {

namespace {

constexpr double kField = 50.0; // of the grid reference border of an ISO frame

// An ISO frame is known by its size and the figures that its zones are stored with; other frames
// print the library's names.
const authoring::IsoSheet *isoFrameOf(const TrDrawing &drawing)
{
    const auto format = drawing.format();
    const authoring::IsoSheet *sheet = authoring::isoSheet(format->GetSizeName());
    const Point2 size = drawing.drawingSize();
    if (!sheet || sheet->width != size[0] || sheet->height != size[1]) return nullptr;
    const bool same = format->horzZoneLength() == kField && format->vertZoneLength() == 0.0 &&
                      format->rightOffset() == sheet->cornerWide - kField &&
                      format->numberHorzZones() == sheet->fieldsWide &&
                      format->numberVertZones() == sheet->fieldsHigh;
    return same ? sheet : nullptr;
}

// The corner fields reach to the edges of the sheet.
int fieldAt(double distance, double corner, int count)
{
    const double index = distance < corner ? 0.0 : 1.0 + std::trunc((distance - corner) / kField);
    return static_cast<int>(std::clamp(index, 0.0, count - 1.0));
}

// Letters from the top without I and O, numerals from the left.
std::string isoZone(const authoring::IsoSheet &sheet, double x, double y)
{
    constexpr char kLetters[] = "ABCDEFGHJKLMNPQRSTUVWXYZ";
    const int row = fieldAt(sheet.height - y, sheet.cornerHigh, sheet.fieldsHigh);
    const int column = fieldAt(x, sheet.cornerWide, sheet.fieldsWide);
    return kLetters[row] + std::to_string(column + 1);
}

bool hasZones(const TrFormatBase &format)
{
    return (format.horzZoneLength() != 0.0 || format.numberHorzZones() != 0) &&
           (format.vertZoneLength() != 0.0 || format.numberVertZones() != 0);
}

} // namespace

ZoneNames zoneOf(const SheetRef &sheet, double x, double y)
{
    const auto drawing = TrDrawing::getDrawing(sheet.tag);
    if (!drawing->hasFormat() || !hasZones(*drawing->format())) return {};
    if (!std::isfinite(x) || !std::isfinite(y)) return {}; // placed by another program
    ZoneNames names;
    names.library = drawing->zone(Point3(x, y, 0.0));
    const authoring::IsoSheet *iso = isoFrameOf(*drawing);
    names.printed = iso ? isoZone(*iso, x, y) : names.library;
    return names;
}

} // namespace app
