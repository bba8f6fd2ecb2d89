#include "display/face.h"

#include <algorithm>
#include <cctype>
#include <cmath>

#include FT_OUTLINE_H
#include FT_TRUETYPE_TABLES_H

#include "display/kerning.h"
#include "display/render.h"

namespace host::display {

namespace {

FT_Library freetype()
{
    static FT_Library library = [] {
        FT_Library made = nullptr;
        if (FT_Init_FreeType(&made) != 0)
            throw RenderError("FreeType does not start; check its installation.");
        return made;
    }();
    return library;
}

struct Collector {
    GlyphShape shape;
    FT_Vector last{};

    void add(FT_Pos x, FT_Pos y, bool onCurve)
    {
        shape.contours.back().push_back({static_cast<int>(x), static_cast<int>(y), onCurve});
    }
};

int moveTo(const FT_Vector *to, void *user)
{
    auto &into = *static_cast<Collector *>(user);
    into.shape.contours.emplace_back();
    into.add(to->x, to->y, true);
    into.last = *to;
    return 0;
}

int lineTo(const FT_Vector *to, void *user)
{
    auto &into = *static_cast<Collector *>(user);
    into.add(to->x, to->y, true);
    into.last = *to;
    return 0;
}

int quadraticTo(const FT_Vector *control, const FT_Vector *to, void *user)
{
    auto &into = *static_cast<Collector *>(user);
    into.add(control->x, control->y, false);
    into.add(to->x, to->y, true);
    into.last = *to;
    return 0;
}

// Four quadratics follow a cubic of a glyph to within a font unit or two.
int cubicTo(const FT_Vector *c1, const FT_Vector *c2, const FT_Vector *to, void *user)
{
    auto &into = *static_cast<Collector *>(user);
    const auto at = [&](double t, auto part) {
        const double u = 1.0 - t;
        return u * u * u * part(into.last) + 3 * u * u * t * part(*c1) + 3 * u * t * t * part(*c2) +
               t * t * t * part(*to);
    };
    const auto slope = [&](double t, auto part) {
        const double u = 1.0 - t;
        return 3 * (u * u * (part(*c1) - part(into.last)) + 2 * u * t * (part(*c2) - part(*c1)) +
                    t * t * (part(*to) - part(*c2)));
    };
    const auto x = [](const FT_Vector &v) { return static_cast<double>(v.x); };
    const auto y = [](const FT_Vector &v) { return static_cast<double>(v.y); };
    constexpr int pieces = 4;
    for (int i = 0; i < pieces; ++i) {
        const double t0 = static_cast<double>(i) / pieces, t1 = static_cast<double>(i + 1) / pieces;
        // The mean of the two tangents' ends is the control point of the best quadratic.
        const auto control = [&](auto part) {
            const double h = (t1 - t0) / 2.0;
            return (at(t0, part) + h * slope(t0, part) + at(t1, part) - h * slope(t1, part)) / 2.0;
        };
        into.add(std::lround(control(x)), std::lround(control(y)), false);
        into.add(std::lround(at(t1, x)), std::lround(at(t1, y)), true);
    }
    into.last = *to;
    return 0;
}

void finish(GlyphShape &shape)
{
    for (auto &contour : shape.contours) {
        // The way back to the start is implied.
        const auto &a = contour.front(), &b = contour.back();
        if (contour.size() > 1 && b.onCurve && a.x == b.x && a.y == b.y) contour.pop_back();
    }
    std::erase_if(shape.contours, [](const auto &contour) { return contour.size() < 2; });
    shape.measure();
}

GlyphShape load(FT_Face face, unsigned glyph)
{
    Collector into;
    if (FT_Load_Glyph(face, glyph, FT_LOAD_NO_SCALE) != 0 ||
        face->glyph->format != FT_GLYPH_FORMAT_OUTLINE)
        return {};
    const FT_Outline_Funcs functions{moveTo, lineTo, quadraticTo, cubicTo, 0, 0};
    FT_Outline_Decompose(&face->glyph->outline, &functions, &into);
    into.shape.advance = static_cast<int>(face->glyph->metrics.horiAdvance);
    finish(into.shape);
    return std::move(into.shape);
}

} // namespace

void GlyphShape::measure()
{
    bool first = true;
    for (const auto &contour : contours) {
        for (const GlyphPoint &p : contour) {
            left = first ? p.x : std::min(left, p.x);
            right = first ? p.x : std::max(right, p.x);
            bottom = first ? p.y : std::min(bottom, p.y);
            top = first ? p.y : std::max(top, p.y);
            first = false;
        }
    }
}

Face::Face(const std::string &file, int index) : m_file(file), m_index(index)
{
    if (FT_New_Face(freetype(), file.c_str(), index, &m_face) != 0)
        throw RenderError("The font file " + file +
                          " cannot be read; install it again or name another.");
    if (!FT_IS_SCALABLE(m_face)) {
        FT_Done_Face(m_face);
        throw RenderError("The font file " + file +
                          " has no outlines; name a TrueType or OpenType font.");
    }
    FT_Select_Charmap(m_face, FT_ENCODING_UNICODE);
    m_unitsPerEm = m_face->units_per_EM;
    const unsigned capital = glyphOf(U'H');
    m_capitalHeight = capital ? shape(capital).top : 0;
    if (m_capitalHeight <= 0) m_capitalHeight = m_unitsPerEm * 7 / 10;
    m_family = m_face->family_name ? m_face->family_name : "";
    const char *name = FT_Get_Postscript_Name(m_face);
    m_postScriptName = name ? name : "Font";
    for (char &c :
         m_postScriptName) // it becomes a name in PDF, where few characters stand for themselves
        if (!std::isalnum(static_cast<unsigned char>(c)) && c != '-' && c != '_') c = '-';
}

Face::~Face() { FT_Done_Face(m_face); }

unsigned Face::glyphOf(char32_t character) const
{
    const auto [known, isNew] = m_glyphs.try_emplace(character, 0u);
    if (isNew) known->second = FT_Get_Char_Index(m_face, character);
    return known->second;
}

const GlyphShape &Face::shape(unsigned glyph) const
{
    auto &known = m_shapes[glyph];
    if (!known) known = std::make_unique<GlyphShape>(load(m_face, glyph));
    return *known;
}

double Face::advance(unsigned glyph) const
{
    return static_cast<double>(shape(glyph).advance) / m_capitalHeight;
}

int Face::kerning(unsigned first, unsigned second) const
{
    if (!m_kerningRead) readKerning();
    const auto pair = m_kerning.find(first << 16 | second);
    return pair == m_kerning.end() ? 0 : pair->second;
}

void Face::readKerning() const
{
    m_kerningRead = true;
    FT_ULong length = 0;
    constexpr FT_ULong gpos = 0x47504f53; // 'GPOS'
    if (FT_Load_Sfnt_Table(m_face, gpos, 0, nullptr, &length) != 0) return;
    std::vector<unsigned char> table(length);
    if (FT_Load_Sfnt_Table(m_face, gpos, 0, table.data(), &length) == 0)
        m_kerning = kerningPairs(table);
}

int Face::ascender() const { return m_face->ascender; }
int Face::descender() const { return m_face->descender; }
bool Face::isFixedWidth() const { return FT_IS_FIXED_WIDTH(m_face) != 0; }

} // namespace host::display
