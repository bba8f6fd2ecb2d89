// What the numbers of widths, line fonts and colours look like on paper.
#pragma once

#include <cstdint>
#include <span>

namespace host::display {

struct Rgb {
    std::uint8_t r = 0;
    std::uint8_t g = 0;
    std::uint8_t b = 0;
    bool operator==(const Rgb &) const = default;
};

// Millimetres; an unknown number is drawn like 0.
double penWidth(int width);

// Lengths of dash, gap, dash, gap ... as multiples of the pen width; empty: solid.
std::span<const double> dashesOf(int lineFont);

// 7 is the screen's foreground and black on paper, as is every number above 15.
Rgb rgbOf(int color);

} // namespace host::display
