// A text as glyphs in their places, the same for every painter. Places are in a space where a capital
// is 1 high and the aspect is 1: x along the baseline, y above it.
#pragma once

#include "display/display_list.h"
#include "display/font_book.h"
#include "display/render.h"

#include <unordered_map>
#include <vector>

namespace host::display {

struct PlacedGlyph {
    const Face *face = nullptr;
    unsigned glyph = 0;
    char32_t character = 0;
    char32_t mark = 0; // composed into the glyph; 0 none
    double x = 0.0;
    double y = 0.0;
    double stretch = 1.0; // of its width: a stand-in wider than the metrics say is narrowed
    double advance = 0.0; // to the next glyph's x, without the extra space between characters
};

struct ShapedText {
    const TextItem *item = nullptr;
    std::vector<PlacedGlyph> glyphs;
    double gap = 0.0; // extra space after each character
    double width = 0.0;
};

// Shapes the texts of one file and notes which characters another font had to lend.
class Shaper {
public:
    ShapedText shape(const TextItem &item);
    const std::vector<Substitution> &substitutions() const { return m_substitutions; }

private:
    struct Character {
        const Face *face = nullptr;
        unsigned glyph = 0;
        double advance = 0.0;
        double stretch = 1.0;
        double shift = 0.0; // a narrower stand-in is centred in its place
    };
    const Character &find(char32_t character);
    void noteSubstitution(char32_t character, const Face *face);
    void placeMark(char32_t mark, ShapedText &text);

    std::unordered_map<char32_t, Character> m_characters;
    std::vector<Substitution> m_substitutions;
};

} // namespace host::display
