#include "display/shaping.h"

#include <algorithm>

#include "display/characters.h"
#include "display/utf8.h"

namespace host::display {

namespace {

// A character with the marks behind it; what is not drawn is passed over. No writing stacks more than
// a few marks, and a PDF reader takes only so many characters for one glyph.
std::u32string nextCluster(const std::string &text, std::size_t &at)
{
    constexpr std::size_t most = 8;
    std::u32string cluster;
    while (at < text.size()) {
        std::size_t after = at;
        const char32_t character = nextCharacter(text, after);
        const bool joins =
            isInvisible(character) || (isCombiningMark(character) && cluster.size() < most);
        if (!cluster.empty() && !joins) break;
        at = after;
        if (!isInvisible(character)) cluster += character < 0x20 ? U' ' : character;
    }
    return cluster;
}

} // namespace

ShapedText Shaper::shape(const TextItem &item)
{
    ShapedText text{&item, {}, (item.charSpace - 1.0) * 0.2, 0.0};
    text.signs.reserve(item.text.size());
    double x = 0.0;
    for (std::size_t at = 0; at < item.text.size();) {
        const std::u32string cluster = nextCluster(item.text, at);
        if (cluster.empty()) break;
        const std::size_t use = useOf(cluster);
        const Sign *sign = m_uses[use];
        text.signs.push_back({sign, use, x});
        text.width = x + sign->advance;
        x = text.width + text.gap;
    }
    return text;
}

std::size_t Shaper::useOf(std::u32string_view text)
{
    const bool isAscii = text.size() == 1 && text[0] < m_ascii.size();
    std::size_t &use = isAscii ? m_ascii[text[0]]
                               : m_others.try_emplace(std::u32string(text), kUnknown).first->second;
    if (use != kUnknown) return use;
    use = m_uses.size();
    m_uses.push_back(&signOf(std::u32string(text)));
    for (const Sign::Lent &lent : m_uses.back()->lent) note(lent);
    return use;
}

void Shaper::note(const Sign::Lent &lent)
{
    const std::string file = lent.face ? lent.face->file() : "";
    auto known = std::find_if(m_substitutions.begin(), m_substitutions.end(),
                              [&](const Substitution &s) { return s.file == file; });
    if (known == m_substitutions.end())
        known = m_substitutions.insert(known, {"", lent.face ? lent.face->family() : "", file});
    std::string character;
    appendUtf8(character, lent.character);
    if (known->characters.find(character) == std::string::npos) known->characters += character;
}

InkExtent inkOf(const ShapedText &text)
{
    InkExtent extent{text.width, 0.0};
    for (const PlacedSign &placed : text.signs) {
        const GlyphShape &shape = placed.sign->shape;
        if (shape.contours.empty()) continue;
        const double unit = placed.sign->face->capitalHeight();
        extent.left = std::min(extent.left, placed.x + shape.left / unit);
        extent.right = std::max(extent.right, placed.x + shape.right / unit);
    }
    return extent.left < extent.right ? extent : InkExtent{0.0, text.width};
}

} // namespace host::display
