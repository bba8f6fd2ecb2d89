#include "display/pdf_fonts.h"

#include <algorithm>
#include <cstdio>
#include <memory>

#include "display/deflate.h"
#include "display/numbers.h"
#include "display/truetype_subset.h"

namespace host::display {

// What a subset needs, whichever file it is for. Many drawings of one kind show the same characters,
// so the last few are kept.
struct PdfFonts::Embedded {
    const Face *face = nullptr;
    std::vector<const Sign *> signs;
    std::string font; // deflated
    std::size_t fontLength = 0;
    std::string widths;
    std::string toUnicode; // deflated
    std::string tag;
};

PdfFonts::PdfFonts(const Shaper &shaper) : m_codes(shaper.uses().size())
{
    const auto &signs = shaper.uses();
    for (std::size_t use = 0; use < signs.size(); ++use) {
        auto font = std::find_if(m_fonts.begin(), m_fonts.end(),
                                 [&](const Font &f) { return f.face == signs[use]->face; });
        if (font == m_fonts.end()) font = m_fonts.insert(font, {signs[use]->face, {}, {}});
        font->uses.push_back(use);
    }
    for (std::size_t font = 0; font < m_fonts.size(); ++font) {
        auto &uses = m_fonts[font].uses;
        std::sort(uses.begin(), uses.end(),
                  [&](std::size_t a, std::size_t b) { return signs[a]->text < signs[b]->text; });
        for (const std::size_t use : uses) {
            m_fonts[font].signs.push_back(signs[use]);
            m_codes[use] = {font, static_cast<unsigned>(m_fonts[font].signs.size())};
        }
    }
}

namespace {

void appendHex16(std::string &text, unsigned value)
{
    constexpr const char *digits = "0123456789ABCDEF";
    for (int shift = 12; shift >= 0; shift -= 4) text += digits[value >> shift & 15u];
}

void appendUtf16(std::string &text, char32_t character)
{
    if (character >= 0x10000) {
        appendHex16(text, 0xd800 + static_cast<unsigned>((character - 0x10000) >> 10));
        appendHex16(text, 0xdc00 + static_cast<unsigned>((character - 0x10000) & 0x3ff));
    } else {
        appendHex16(text, static_cast<unsigned>(character));
    }
}

// Six capitals that tell subsets of one font apart; the same subset always gets the same.
std::string subsetTag(std::string_view content)
{
    std::uint64_t hash = 14695981039346656037ull;
    for (const char c : content) hash = (hash ^ static_cast<unsigned char>(c)) * 1099511628211ull;
    std::string tag;
    for (int i = 0; i < 6; ++i, hash /= 26) tag += static_cast<char>('A' + hash % 26);
    return tag;
}

// Lines of a character map in blocks of at most a hundred.
void appendBlocks(std::string &map, const std::vector<std::string> &lines)
{
    constexpr std::size_t most = 100;
    for (std::size_t at = 0; at < lines.size(); at += most) {
        const std::size_t count = std::min(most, lines.size() - at);
        map += std::to_string(count) + " beginbfrange\n";
        for (std::size_t i = at; i < at + count; ++i) map += lines[i];
        map += "endbfrange\n";
    }
}

std::string toUnicodeMap(const std::vector<const Sign *> &signs)
{
    std::vector<std::string> lines;
    for (std::size_t i = 0; i < signs.size();) {
        // A range must not pass a boundary of 256, of codes or of characters.
        const char32_t character = signs[i]->text[0];
        const auto follows = [&](std::size_t k) {
            return k < signs.size() && signs[k]->text.size() == 1 &&
                   signs[k]->text[0] == character + (k - i) && (signs[k]->text[0] & 0xff) != 0 &&
                   ((k + 1) & 0xff) != 0 && signs[k]->text[0] < 0xffff;
        };
        std::size_t n = 1;
        while (signs[i]->text.size() == 1 && follows(i + n)) ++n;
        std::string line = "<";
        appendHex16(line, static_cast<unsigned>(i + 1));
        line += "><";
        appendHex16(line, static_cast<unsigned>(i + n));
        line += "><";
        for (const char32_t c : signs[i]->text) appendUtf16(line, c);
        lines.push_back(line + ">\n");
        i += n;
    }
    std::string map = "/CIDInit /ProcSet findresource begin 12 dict begin begincmap\n"
                      "/CIDSystemInfo<</Registry(Adobe)/Ordering(UCS)/Supplement 0>>def\n"
                      "/CMapName/Adobe-Identity-UCS def/CMapType 2 def\n"
                      "1 begincodespacerange\n<0000><FFFF>\nendcodespacerange\n";
    appendBlocks(map, lines);
    return map + "endcmap CMapName currentdict/CMap defineresource pop end end\n";
}

} // namespace

const PdfFonts::Embedded &PdfFonts::embedded(const Font &font)
{
    static auto *kept = new std::vector<std::unique_ptr<Embedded>>;
    for (const auto &known : *kept)
        if (known->face == font.face && known->signs == font.signs) return *known;

    auto made = std::make_unique<Embedded>();
    made->face = font.face;
    made->signs = font.signs;
    std::vector<const GlyphShape *> shapes;
    made->widths = "[1[";
    for (const Sign *sign : font.signs) {
        shapes.push_back(&sign->shape);
        if (shapes.size() > 1) made->widths += ' ';
        appendNumber(made->widths, 1000.0 * sign->shape.advance / font.face->unitsPerEm(), 2);
    }
    made->widths += "]]";
    const std::string trueType = trueTypeSubset(*font.face, shapes);
    const std::string map = toUnicodeMap(font.signs);
    made->tag = subsetTag(trueType + map);
    made->fontLength = trueType.size();
    made->font = deflated(trueType);
    made->toUnicode = deflated(map);

    constexpr std::size_t most = 32;
    if (kept->size() >= most) kept->erase(kept->begin());
    kept->push_back(std::move(made));
    return *kept->back();
}

std::string PdfFonts::write(PdfFile &file) const
{
    std::string resource = "/Font<<";
    for (std::size_t i = 0; i < m_fonts.size(); ++i) {
        const Face &face = *m_fonts[i].face;
        const Embedded &data = embedded(m_fonts[i]);
        const std::string name = "/" + data.tag + "+" + face.postScriptName();
        const auto thousandths = [&](int fontUnits) {
            return std::to_string(fontUnits * 1000 / face.unitsPerEm()) + ' ';
        };
        const int program =
            file.putStream(data.font, "/Length1 " + std::to_string(data.fontLength));
        const int descriptor = file.put(
            "<</Type/FontDescriptor/FontName" + name + "/Flags 4/FontBBox[" +
            thousandths(-face.unitsPerEm()) + thousandths(face.descender()) +
            thousandths(2 * face.unitsPerEm()) + thousandths(face.ascender()) +
            "]/ItalicAngle 0/Ascent " + thousandths(face.ascender()) + "/Descent " +
            thousandths(face.descender()) + "/CapHeight " + thousandths(face.capitalHeight()) +
            "/StemV 80/FontFile2 " + reference(program) + ">>");
        const int descendant =
            file.put("<</Type/Font/Subtype/CIDFontType2/BaseFont" + name +
                     "/CIDSystemInfo<</Registry(Adobe)/Ordering(Identity)/Supplement "
                     "0>>/CIDToGIDMap/Identity"
                     "/DW 1000/W" +
                     data.widths + "/FontDescriptor " + reference(descriptor) + ">>");
        const int map = file.putStream(data.toUnicode);
        const int font = file.put("<</Type/Font/Subtype/Type0/BaseFont" + name +
                                  "/Encoding/Identity-H/DescendantFonts[" + reference(descendant) +
                                  "]/ToUnicode " + reference(map) + ">>");
        resource += "/F" + std::to_string(i) + ' ' + reference(font);
    }
    return resource + ">>";
}

} // namespace host::display
