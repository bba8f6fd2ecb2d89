// Paths of SVG as cubic curves, and what places and paints them: the grammar of SVG, read by a library.
#pragma once

#include "app/authoring/art.h"

#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace app::authoring {

struct SvgCurve { // from where the one before ends
    ArtPoint control1;
    ArtPoint control2;
    ArtPoint to;
    bool straight; // the controls do not count
};

struct SvgSubpath {
    ArtPoint start;
    std::vector<SvgCurve> curves;
    bool closed = false;
};

// x' = a x + c y + e, y' = b x + d y + f
struct SvgTransform {
    double a = 1, b = 0, c = 0, d = 1, e = 0, f = 0;

    ArtPoint operator()(ArtPoint p) const { return {a * p.x + c * p.y + e, b * p.x + d * p.y + f}; }
    SvgTransform after(const SvgTransform &inner) const;
    double scale() const; // of areas, its square root
};

// Empty when the text is no path data, no list of transforms.
std::optional<std::vector<SvgSubpath>> svgPath(const std::string &data);
std::optional<SvgTransform> svgTransform(const std::string &list);
// "fill:none;stroke:#000" as properties and values.
std::vector<std::pair<std::string, std::string>> svgStyle(const std::string &style);

} // namespace app::authoring
