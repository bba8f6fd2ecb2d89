// Lines of text as a box at an origin, by the host's own metrics.
#pragma once

#include "display/display_list.h"
#include "model/object.h"

#include <string>
#include <vector>

namespace host::display {

struct TextBox {
    std::vector<std::string> lines; // visible text
    Lettering lettering;            // lengths in millimetres, the angle on the sheet
    Place origin;
    std::string font;
    unsigned group = 0;
};

// One item a line that is not empty.
void appendText(const TextBox &box, std::vector<Item> &items);

} // namespace host::display
