// SVG files as art.
#pragma once

#include "app/authoring/art.h"
#include "app/authoring/cell_lines.h"
#include "app/authoring/complaints.h"

#include <optional>
#include <string>
#include <vector>

namespace app::authoring {

// The shapes of the file, fitted into the box with their aspect kept and in its middle. Strokes get the
// pen that is nearest to their width, or `pen` if that is given; what is filled becomes areas. `units`:
// of the box, 1 millimetres, 2 inches. What patterns cannot hold is complained of by its name, with its
// place in the SVG file.
Art readSvg(const std::string &path, const Box &box, int units, std::optional<int> pen,
            std::vector<Complaint> &complaints);

} // namespace app::authoring
