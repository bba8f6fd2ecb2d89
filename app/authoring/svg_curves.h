// Paths as what patterns can hold: straight lines, arcs of circles and filled areas.
#pragma once

#include "app/authoring/svg_path.h"

#include <vector>

namespace app::authoring {

// Lines and arcs along the path. Curves that are arcs of circles become arcs; others are followed by
// straight lines that stay within the tolerance. A path that is not closed stays open.
void strokePath(const std::vector<SvgSubpath> &path, int pen, double tolerance, Art &art);

// The inside of the path. Areas of patterns are filled by the even-odd rule; for the other one, nonzero,
// outlines that lie within the ink are left out, and those that lie side by side become areas of their
// own.
void fillPath(const std::vector<SvgSubpath> &path, bool evenOdd, double tolerance, Art &art);

} // namespace app::authoring
