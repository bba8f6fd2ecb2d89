#include "text_metrics.h"

#include <algorithm>
#include <iterator>

namespace host {

namespace {

struct Advances {
    char32_t first;
    char32_t last;
    double advance; // in units of the height of a capital
};

constexpr Advances kAdvances[] = {
#include "osifont_advances.inc"
};
constexpr double kMissingGlyph = 0.593377;

double advanceOf(char32_t code)
{
    const auto found = std::lower_bound(
        std::begin(kAdvances), std::end(kAdvances), code,
        [](const Advances &range, char32_t wanted) { return range.last < wanted; });
    return found == std::end(kAdvances) || code < found->first ? kMissingGlyph : found->advance;
}

// Takes one character off the text. A byte that is no UTF-8 stands for itself: old 8-bit texts.
char32_t takeCharacter(std::string_view &text)
{
    const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
    const unsigned char lead = byte(0);
    const std::size_t length = lead >= 0xF0 && lead < 0xF8   ? 4
                               : lead >= 0xE0 && lead < 0xF0 ? 3
                               : lead >= 0xC2 && lead < 0xE0 ? 2
                                                             : 1;
    char32_t code = length == 1 ? lead : lead & (0x7Fu >> length);
    for (std::size_t i = 1; i < length; ++i) {
        if (i >= text.size() || (byte(i) & 0xC0) != 0x80) {
            text.remove_prefix(1);
            return lead;
        }
        code = (code << 6) | (byte(i) & 0x3F);
    }
    text.remove_prefix(length);
    return code;
}

} // namespace

double textHeight(std::size_t lines, const Lettering &lettering)
{
    if (lines == 0) return 0.0;
    const double size = lettering.size;
    return static_cast<double>(lines) * size +
           static_cast<double>(lines - 1) * size * lettering.lineSpace * 0.5;
}

double linePitch(const Lettering &lettering)
{
    return lettering.size + lettering.size * lettering.lineSpace * 0.5;
}

double lineWidth(std::string_view utf8, const Lettering &lettering)
{
    double units = 0.0;
    std::size_t characters = 0;
    while (!utf8.empty()) {
        units += advanceOf(takeCharacter(utf8));
        ++characters;
    }
    if (characters > 1)
        units += static_cast<double>(characters - 1) * (lettering.charSpace - 1.0) * 0.2;
    return units * lettering.size * lettering.aspect;
}

double textWidth(const std::vector<std::string> &lines, const Lettering &lettering)
{
    double widest = 0.0;
    for (const std::string &line : lines) widest = std::max(widest, lineWidth(line, lettering));
    return widest;
}

Vec3 boxOffset(int site, double width, double height)
{
    if (site < 1 || site > 9) return {};
    const int column = (site - 1) % 3;
    const int row = (site - 1) / 3; // 0 top
    return {-width * column / 2.0, -height * (2 - row) / 2.0, 0.0};
}

} // namespace host
