#include "display/shaping.h"

#include <algorithm>
#include <cmath>

#include "display/characters.h"
#include "display/utf8.h"
#include "model/text_metrics.h"

namespace host::display {

namespace {

// What the host's metrics give a character: everything that was computed from them must hold on paper.
double metricAdvance(char32_t character)
{
    std::string utf8;
    appendUtf8(utf8, character);
    Lettering one;
    one.size = 1.0;
    return lineWidth(utf8, one);
}

constexpr char32_t kReplacement = 0xfffd;

} // namespace

ShapedText Shaper::shape(const TextItem &item)
{
    ShapedText text{&item, {}, (item.charSpace - 1.0) * 0.2, 0.0};
    text.glyphs.reserve(item.text.size());
    double x = 0.0;
    for (std::size_t at = 0; at < item.text.size();) {
        char32_t character = nextCharacter(item.text, at);
        if (character < 0x20) character = U' ';
        if (isInvisible(character)) continue;
        if (isCombiningMark(character) && !text.glyphs.empty()) {
            placeMark(character, text);
            continue;
        }
        const Character &known = find(character);
        text.glyphs.push_back({known.is, known.use, x + known.shift, 0.0, known.stretch,
                               known.advance - known.shift});
        x += known.advance;
        text.width = x;
        x += text.gap;
    }
    return text;
}

InkExtent inkOf(const ShapedText &text)
{
    InkExtent extent{text.width, 0.0};
    for (const PlacedGlyph &glyph : text.glyphs) {
        const GlyphShape &shape = glyph.is.face->shape(glyph.is.glyph);
        if (shape.contours.empty()) continue;
        const double unit = glyph.stretch / glyph.is.face->capitalHeight();
        extent.left = std::min(extent.left, glyph.x + shape.left * unit);
        extent.right = std::max(extent.right, glyph.x + shape.right * unit);
    }
    return extent.left < extent.right ? extent : InkExtent{0.0, text.width};
}

const Shaper::Character &Shaper::find(char32_t character)
{
    const auto [entry, isNew] = m_characters.try_emplace(character);
    Character &found = entry->second;
    if (!isNew) return found;

    FontBook &book = FontBook::get();
    const Face *face = book.faceFor(character);
    if (face != &book.drafting()) noteSubstitution(character, face);
    const Face *drawn = face ? face : &book.drafting();
    found.is = {drawn, drawn->glyphOf(character), character,
                0}; // glyph 0, a box, when nobody has it
    found.use = m_uses.size();
    m_uses.push_back(found.is);
    found.advance = metricAdvance(character);
    const double natural = drawn->advance(found.is.glyph);
    constexpr double same = 1e-4; // the table of metrics is rounded
    if (natural > found.advance + same && found.advance > 0.0)
        found.stretch = found.advance / natural;
    if (natural < found.advance - same) found.shift = (found.advance - natural) / 2.0;
    return found;
}

void Shaper::noteSubstitution(char32_t character, const Face *face)
{
    const std::string file = face ? face->file() : "";
    auto known = std::find_if(m_substitutions.begin(), m_substitutions.end(),
                              [&](const Substitution &s) { return s.file == file; });
    if (known == m_substitutions.end())
        known = m_substitutions.insert(known, {"", face ? face->family() : "", file});
    appendUtf8(known->characters, character == 0 ? kReplacement : character);
}

// Into the letter before it if the drafting font has the two as one character, else over or under it.
void Shaper::placeMark(char32_t mark, ShapedText &text)
{
    PlacedGlyph &base = text.glyphs.back();
    if (base.is.mark == 0 && compose(base, mark)) return;

    const Character &known = find(mark);
    const GlyphShape &under = base.is.face->shape(base.is.glyph);
    const GlyphShape &over = known.is.face->shape(known.is.glyph);
    const double underUnit = 1.0 / base.is.face->capitalHeight();
    const double overUnit = 1.0 / known.is.face->capitalHeight();
    const double middle = base.x + base.stretch * (under.left + under.right) * underUnit / 2.0;
    PlacedGlyph placed{known.is, known.use, 0.0, 0.0, 1.0, 0.0};
    placed.x = middle - (over.left + over.right) * overUnit / 2.0;
    constexpr double clearance = 0.08;
    const double top = base.y + under.top * underUnit + clearance;
    const bool above = over.bottom * overUnit > 0.4;
    if (above) placed.y = std::max(0.0, top - over.bottom * overUnit);
    placed.advance = base.x + base.advance - placed.x;
    text.glyphs.push_back(placed);
}

bool Shaper::compose(PlacedGlyph &base, char32_t mark)
{
    const Face &drafting = FontBook::get().drafting();
    const char32_t one = composed(base.is.character, mark);
    if (one == 0 || drafting.glyphOf(one) == 0) return false;
    base.is = {&drafting, drafting.glyphOf(one), base.is.character, mark};
    const auto [known, isNew] = m_composed.try_emplace({base.is.character, mark}, m_uses.size());
    if (isNew) m_uses.push_back(base.is);
    base.use = known->second;
    return true;
}

} // namespace host::display
