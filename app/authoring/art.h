// Art: what a pattern part holds, in block or sheet coordinates.
#pragma once

#include "app/authoring/origin.h"

#include <string>
#include <variant>
#include <vector>

namespace app::authoring {

struct ArtPoint {
    double x = 0.0;
    double y = 0.0;
    bool operator==(const ArtPoint &) const = default;
};
struct ArtLine {
    ArtPoint from;
    ArtPoint to;
    int pen; // line width number of the platform
};
struct ArtArc { // counter-clockwise, degrees; a circle ends 360 after its start
    ArtPoint centre;
    double radius;
    double start;
    double end;
    int pen;
};
struct ArtArea {
    std::vector<std::vector<ArtPoint>> outlines;
};
struct ArtText {
    std::string text;
    ArtPoint at;
    int site; // 1 top left ... 9 bottom right
    double size;
    std::string font;
    double aspect = 1.0;
    double angle = 0.0;
    Origin origin = {};
};
using Shape = std::variant<ArtLine, ArtArc, ArtArea, ArtText>;
using Art = std::vector<Shape>;

} // namespace app::authoring
