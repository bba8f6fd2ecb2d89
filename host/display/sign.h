// What is drawn for a character and the combining marks that follow it.
#pragma once

#include "display/font_book.h"

#include <string>
#include <vector>

namespace host::display {

struct Sign {
    std::u32string text;        // the character and its marks
    const Face *face = nullptr; // of the character itself
    unsigned glyph =
        0; // in the face, of the character with the marks that it is one with; 0: a box
    std::size_t inGlyph = 1; // how many characters of the text the glyph stands for
    // In the face's units and exactly as wide as the host's metrics say: a stand-in from another font
    // has been narrowed or stands in the middle of its place.
    GlyphShape shape;
    double advance = 0.0; // capital heights
    double stretch = 1.0; // how the face's glyph was fitted: its width
    double shift = 0.0;   // and its place, in capital heights
    struct Mark {         // of those that are no part of the glyph
        char32_t character = 0;
        const Face *face = nullptr;
        double x = 0.0; // of its glyph's origin, capital heights
        double y = 0.0;
    };
    std::vector<Mark> marks;
    struct Lent {
        char32_t character = 0;
        const Face *face = nullptr; // null: no font of this machine has it, a box is drawn
    };
    std::vector<Lent> lent; // what the drafting font could not give
};

// Made on first use, kept as long as the process.
const Sign &signOf(const std::u32string &text);

} // namespace host::display
