// The lines between the cells of a block: every edge once, merged where edges meet, the outline apart.
#pragma once

#include "app/authoring/art.h"

#include <vector>

namespace app::authoring {

struct Box {
    double x = 0.0;
    double y = 0.0;
    double width = 0.0;
    double height = 0.0;
};

// The outline of a block of that size, then the edges of the cells that do not lie on it.
void drawCellLines(Art &art, double width, double height, const std::vector<Box> &cells,
                   int outlinePen, int cellPen);

} // namespace app::authoring
