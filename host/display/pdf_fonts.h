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

    std::size_t nameOf(const PlacedSign &sign) const { return m_codes[sign.use].font; } // n of /Fn
    unsigned codeOf(const PlacedSign &sign) const { return m_codes[sign.use].code; }
    // Writes the fonts and gives the resource dictionary's entry.
    std::string write(PdfFile &file) const;

private:
    struct Font {
        const Face *face;
        std::vector<std::size_t> uses;
        std::vector<const Sign *> signs; // sorted by text; the code of signs[i] is i + 1
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
