// What an interactive user draws and no program interface used here offers: arcs, filled areas
// and the option "save pattern data" of a part.
#pragma once

#include "../uf_defs.h"

#include <vector>

namespace nxhost {

struct AuthoringPoint {
    double x;
    double y;
};

// Each object goes into the work part, on the work layer, into the current sheet's view if a sheet
// is current. Lengths in part units, angles in degrees counter-clockwise from the x axis. Raises
// UgException like every platform call.
DllExport tag_t createArc(double x, double y, double radius, double start_angle, double end_angle);
// The outline closes itself and needs three points or more; nested outlines are filled by the
// even-odd rule.
DllExport tag_t createFilledArea(const std::vector<std::vector<AuthoringPoint>> &outlines);

// What was drawn, for programs that read art back. UgException when the object is of another kind.
struct AuthoredArc {
    AuthoringPoint centre;
    double radius;
    double startAngle; // degrees; the end lies behind it, a whole turn at most
    double endAngle;
};
DllExport AuthoredArc askArc(tag_t arc);
DllExport std::vector<std::vector<AuthoringPoint>> askFilledArea(tag_t area);

// A part can be placed as a pattern only if this is on when it is saved. Off in a new part.
DllExport void setPatternDataSaved(tag_t part, bool on);
DllExport bool isPatternDataSaved(tag_t part);

} // namespace nxhost
