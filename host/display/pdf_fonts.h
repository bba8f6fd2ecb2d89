// The fonts of one PDF file: every face once, with the glyphs that any page shows.
#pragma once

#include "display/pdf_file.h"
#include "display/shaping.h"

#include <string>
#include <vector>

namespace host::display {

class PdfFonts {
public:
    // After all texts of the file have been shaped.
    explicit PdfFonts(const Shaper &shaper);

    std::size_t nameOf(const PlacedGlyph &glyph) const
    {
        return m_codes[glyph.use].font;
    } // n of /Fn
    unsigned codeOf(const PlacedGlyph &glyph) const { return m_codes[glyph.use].code; }
    // Writes the fonts and gives the resource dictionary's entry.
    std::string write(PdfFile &file) const;

private:
    struct Slot { // in the order of codes
        char32_t character;
        char32_t mark;
        unsigned glyph;
        std::size_t use;
        bool operator==(const Slot &other) const // the same meaning and look, in any file
        {
            return character == other.character && mark == other.mark && glyph == other.glyph;
        }
    };
    struct Font {
        const Face *face;
        std::vector<Slot> slots; // the code of slots[i] is i + 1
    };
    struct Code {
        std::size_t font = 0;
        unsigned code = 0;
    };
    struct Embedded;
    static const Embedded &embedded(const Font &font);

    std::vector<Font> m_fonts;
    std::vector<Code> m_codes; // by use
};

} // namespace host::display
