#include "display/characters.h"

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <tuple>

namespace host::display {

namespace {

struct Range {
    char32_t first;
    char32_t last;
};

template <std::size_t N> bool within(const Range (&ranges)[N], char32_t character)
{
    return std::any_of(std::begin(ranges), std::end(ranges), [&](const Range &range) {
        return character >= range.first && character <= range.last;
    });
}

struct Composition {
    std::uint16_t base;
    std::uint16_t mark;
    std::uint16_t character;
};

constexpr Composition kCompositions[] = {
#include "compositions.inc"
};

} // namespace

bool isCombiningMark(char32_t character)
{
    static constexpr Range marks[]{
        {0x300, 0x36f},   {0x483, 0x489},   {0x591, 0x5bd},   {0x610, 0x61a},   {0x64b, 0x65f},
        {0x1ab0, 0x1aff}, {0x1dc0, 0x1dff}, {0x20d0, 0x20ff}, {0x3099, 0x309a}, {0xfe20, 0xfe2f}};
    return character >= 0x300 && within(marks, character);
}

bool isInvisible(char32_t character)
{
    static constexpr Range invisible[]{{0x200b, 0x200f}, {0x202a, 0x202e}, {0x2060, 0x206f},
                                       {0xfe00, 0xfe0f}, {0xfeff, 0xfeff}, {0xe0100, 0xe01ef}};
    return character >= 0x200b && within(invisible, character);
}

char32_t composed(char32_t base, char32_t mark)
{
    const auto key = [](const Composition &c) {
        return std::pair<char32_t, char32_t>(c.base, c.mark);
    };
    const std::pair wanted(base, mark);
    const auto found =
        std::lower_bound(std::begin(kCompositions), std::end(kCompositions), wanted,
                         [&](const Composition &c, const auto &w) { return key(c) < w; });
    return found != std::end(kCompositions) && key(*found) == wanted ? found->character : 0;
}

} // namespace host::display
