// One font file, read once in a process. Lengths are in capital heights unless they say font units.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include <ft2build.h>
#include FT_FREETYPE_H

namespace host::display {

// A glyph's outline in font units: quadratic curves only, as TrueType stores them.
struct GlyphPoint {
    int x = 0;
    int y = 0;
    bool onCurve = true;
};

struct GlyphShape {
    std::vector<std::vector<GlyphPoint>> contours;
    int advance = 0; // font units
    // Of the points, so of the ink or a little more.
    int left = 0;
    int right = 0;
    int bottom = 0;
    int top = 0;
    void measure(); // sets the four
};

class Face {
public:
    // RenderError when the file is no font with outlines.
    Face(const std::string &file, int index);
    ~Face();
    Face(const Face &) = delete;
    Face &operator=(const Face &) = delete;

    unsigned glyphOf(char32_t character) const; // 0: none
    const GlyphShape &shape(unsigned glyph) const;
    double advance(unsigned glyph) const; // capital heights
    // Font units by which the second glyph would be moved by a renderer that kerns; 0 for most.
    int kerning(unsigned first, unsigned second) const;

    int index() const { return m_index; } // in a collection
    int unitsPerEm() const { return m_unitsPerEm; }
    int capitalHeight() const { return m_capitalHeight; } // font units, of a rendered H
    int ascender() const;
    int descender() const;
    const std::string &file() const { return m_file; }
    const std::string &family() const { return m_family; }
    const std::string &postScriptName() const { return m_postScriptName; }
    bool isFixedWidth() const;

private:
    void readKerning() const;

    std::string m_file;
    int m_index = 0;
    FT_Face m_face = nullptr;
    int m_unitsPerEm = 0;
    int m_capitalHeight = 0;
    std::string m_family;
    std::string m_postScriptName;
    // Read when first asked: most painters never do.
    mutable std::unordered_map<std::uint32_t, int> m_kerning; // first << 16 | second
    mutable bool m_kerningRead = false;
    mutable std::unordered_map<unsigned, std::unique_ptr<GlyphShape>> m_shapes;
    mutable std::unordered_map<char32_t, unsigned> m_glyphs;
};

} // namespace host::display
