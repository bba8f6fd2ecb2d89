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
constexpr double kEm = 1.356291; // what a full-width character takes in every font

bool within(char32_t code, char32_t first, char32_t last) { return code >= first && code <= last; }

// Combining marks, joiners and variation selectors stand with the character before them.
bool takesNoRoom(char32_t code)
{
    if (code < 0x0300) return false;
    return within(code, 0x0300, 0x036F) || within(code, 0x0483, 0x0489) ||
           within(code, 0x0591, 0x05BD) || within(code, 0x0610, 0x061A) ||
           within(code, 0x064B, 0x065F) || within(code, 0x1AB0, 0x1AFF) ||
           within(code, 0x1DC0, 0x1DFF) || within(code, 0x200B, 0x200F) ||
           within(code, 0x202A, 0x202E) || within(code, 0x2060, 0x206F) ||
           within(code, 0x20D0, 0x20FF) || within(code, 0x3099, 0x309A) ||
           within(code, 0xFE00, 0xFE0F) || within(code, 0xFE20, 0xFE2F) || code == 0xFEFF ||
           within(code, 0xE0100, 0xE01EF);
}

bool isFullWidth(char32_t code)
{
    return within(code, 0x1100, 0x115F) || within(code, 0x2E80, 0xA4CF) ||
           within(code, 0xAC00, 0xD7A3) || within(code, 0xF900, 0xFAFF) ||
           within(code, 0xFE30, 0xFE4F) || within(code, 0xFF01, 0xFF60) ||
           within(code, 0xFFE0, 0xFFE6) || within(code, 0x1F300, 0x1FAFF) ||
           within(code, 0x20000, 0x3FFFD);
}

// Of a character that the drafting font lacks; what is drawn instead is fitted into it.
double standInAdvance(char32_t code) { return isFullWidth(code) ? kEm : kMissingGlyph; }

double advanceOf(char32_t code)
{
    if (takesNoRoom(code)) return 0.0;
    const auto found = std::lower_bound(
        std::begin(kAdvances), std::end(kAdvances), code,
        [](const Advances &range, char32_t wanted) { return range.last < wanted; });
    return found == std::end(kAdvances) || code < found->first ? standInAdvance(code)
                                                               : found->advance;
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
        const char32_t code = takeCharacter(utf8);
        units += advanceOf(code);
        if (!takesNoRoom(code)) ++characters;
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
