// The shapes of ID symbols with their texts.
#pragma once

#include "display/display_list.h"
#include "model/object.h"

#include <string>
#include <vector>

namespace host::display {

struct SymbolLook {
    int type = 1; // UF_DRF_id_symbol_type_e
    Place centre;
    double size = 0.0; // millimetres: diameter, or height over all
    Pen pen;
    Lettering lettering; // size in millimetres
    std::string upper;   // visible text
    std::string lower;   // shown by the divided shapes only
    std::string font;
    unsigned group = 0;
};

// A text that is too long for its place is narrowed, so that it never leaves the shape.
void appendSymbol(const SymbolLook &look, std::vector<Item> &items);

} // namespace host::display
