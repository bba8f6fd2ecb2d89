// What is drawn for a character and the combining marks that follow it.
#pragma once

#include "display/font_book.h"

#include <string>
#include <vector>

namespace host::display {

struct Sign {
    std::u32string text;        // the character and its marks
    const Face *face = nullptr; // of the character itself
    unsigned glyph = 0; // in the face, if the sign is drawn just as it is there; 0 also for the box
    // In the face's units and exactly as wide as the host's metrics say: a stand-in from another font
    // has been narrowed or stands in the middle of its place.
    GlyphShape shape;
    double advance = 0.0; // capital heights
    double stretch = 1.0; // how the face's glyph was fitted: its width
    double shift = 0.0;   // and its place, in capital heights
    struct Lent {
        char32_t character = 0;
        const Face *face = nullptr; // null: no font of this machine has it, a box is drawn
    };
    std::vector<Lent> lent; // what the drafting font could not give
};

// Made on first use, kept as long as the process.
const Sign &signOf(const std::u32string &text);

} // namespace host::display
