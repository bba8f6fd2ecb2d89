// A text as glyphs in their places, the same for every painter. Places are in a space where a capital
// is 1 high and the aspect is 1: x along the baseline, y above it.
#pragma once

#include "display/display_list.h"
#include "display/font_book.h"
#include "display/render.h"

#include <map>
#include <unordered_map>
#include <vector>

namespace host::display {

// A glyph and what it stands for: two characters drawn by one glyph stay two.
struct GlyphUse {
    const Face *face = nullptr;
    unsigned glyph = 0;
    char32_t character = 0;
    char32_t mark = 0; // composed into the glyph; 0 none
};

struct PlacedGlyph {
    GlyphUse is;
    std::size_t use = 0; // place in Shaper::uses()
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

// From the first to the last ink along the baseline, in the space of the glyphs.
struct InkExtent {
    double left = 0.0;
    double right = 0.0;
};
InkExtent inkOf(const ShapedText &text);

// Shapes the texts of one file and notes which characters another font had to lend.
class Shaper {
public:
    ShapedText shape(const TextItem &item);
    const std::vector<Substitution> &substitutions() const { return m_substitutions; }
    const std::vector<GlyphUse> &uses() const { return m_uses; } // each once, by first use

private:
    struct Character {
        GlyphUse is;
        std::size_t use = 0;
        double advance = 0.0;
        double stretch = 1.0;
        double shift = 0.0; // a narrower stand-in is centred in its place
    };
    const Character &find(char32_t character);
    void noteSubstitution(char32_t character, const Face *face);
    void placeMark(char32_t mark, ShapedText &text);
    bool compose(PlacedGlyph &base, char32_t mark);

    std::unordered_map<char32_t, Character> m_characters;
    std::map<std::pair<char32_t, char32_t>, std::size_t> m_composed; // uses of letters with marks
    std::vector<GlyphUse> m_uses;
    std::vector<Substitution> m_substitutions;
};

} // namespace host::display
