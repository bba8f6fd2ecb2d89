#include "display/sign.h"

#include <algorithm>
#include <cmath>
#include <map>

#include "display/characters.h"
#include "display/utf8.h"
#include "model/text_metrics.h"

namespace host::display {

namespace {

// What the host's metrics give a character: whatever was computed from them must hold on paper.
double metricAdvance(char32_t character)
{
    std::string utf8;
    appendUtf8(utf8, character);
    Lettering one;
    one.size = 1.0;
    return lineWidth(utf8, one);
}

class SignMaker {
public:
    explicit SignMaker(const std::u32string &text) { m_sign.text = text; }

    Sign make()
    {
        std::u32string marks = m_sign.text.substr(1);
        const char32_t character = composedWith(marks);
        m_sign.face = faceOf(character);
        m_sign.glyph = m_sign.face->glyphOf(character);
        m_sign.inGlyph = m_sign.text.size() - marks.size();
        m_sign.shape = m_sign.face->shape(m_sign.glyph);
        fit(metricAdvance(m_sign.text[0]));
        for (const char32_t mark : marks) add(mark);
        return std::move(m_sign);
    }

private:
    // The character together with those of its first marks that the drafting font has in one glyph,
    // which leave the list.
    char32_t composedWith(std::u32string &marks) const
    {
        char32_t character = m_sign.text[0];
        while (!marks.empty()) {
            const char32_t one = composed(character, marks[0]);
            if (one == 0 || FontBook::get().drafting().glyphOf(one) == 0) break;
            character = one;
            marks.erase(0, 1);
        }
        return character;
    }

    const Face *faceOf(char32_t character)
    {
        const Face *drafting = &FontBook::get().drafting();
        const Face *face = FontBook::get().faceFor(character);
        if (face != drafting) m_sign.lent.push_back({character, face});
        return face ? face : drafting; // whose glyph 0 is a box
    }

    void fit(double advance)
    {
        const double unit = m_sign.face->capitalHeight();
        const double natural = m_sign.shape.advance / unit;
        constexpr double same = 1e-4; // the table of metrics is rounded
        m_sign.advance = advance;
        if (std::abs(natural - advance) <= same) return;
        if (natural > advance && advance > 0.0) m_sign.stretch = advance / natural;
        if (natural < advance) m_sign.shift = (advance - natural) / 2.0;
        m_sign.shape.advance = static_cast<int>(std::lround(advance * unit));
        for (auto &contour : m_sign.shape.contours)
            for (GlyphPoint &p : contour)
                p.x = static_cast<int>(std::lround(p.x * m_sign.stretch + m_sign.shift * unit));
        m_sign.shape.measure();
    }

    // Over or under the middle of what is there already, and clear of it.
    void add(char32_t mark)
    {
        const Face *face = faceOf(mark);
        const GlyphShape &over = face->shape(face->glyphOf(mark));
        GlyphShape &under = m_sign.shape;
        if (over.contours.empty()) return;
        const double scale =
            static_cast<double>(m_sign.face->capitalHeight()) / face->capitalHeight();
        const double capital = m_sign.face->capitalHeight();
        const double shift =
            (under.left + under.right) / 2.0 - scale * (over.left + over.right) / 2.0;
        const bool above = scale * over.bottom > 0.4 * capital;
        const double clear = under.top + 0.08 * capital - scale * over.bottom;
        const double rise = above ? std::max(0.0, clear) : 0.0;
        m_sign.marks.push_back({mark, face, shift / capital, rise / capital});
        for (auto contour : over.contours) {
            for (GlyphPoint &p : contour) {
                p.x = static_cast<int>(std::lround(p.x * scale + shift));
                p.y = static_cast<int>(std::lround(p.y * scale + rise));
            }
            under.contours.push_back(std::move(contour));
        }
        under.measure();
    }

    Sign m_sign;
};

} // namespace

const Sign &signOf(const std::u32string &text)
{
    static auto *known = new std::map<std::u32string, Sign>; // signs are referred to until the end
    auto found = known->find(text);
    if (found == known->end()) found = known->emplace(text, SignMaker(text).make()).first;
    return found->second;
}

} // namespace host::display
