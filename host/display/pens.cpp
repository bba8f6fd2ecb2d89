#include "display/pens.h"

#include <array>

namespace host::display {

double penWidth(int width)
{
    constexpr std::array series{0.13, 0.18, 0.25, 0.35, 0.5, 0.7, 1.0, 1.4, 2.0}; // 5 to 13
    if (width >= 5 && width <= 13) return series[static_cast<std::size_t>(width - 5)];
    return width == 1 ? 0.5 : width == 2 ? 0.25 : 0.35;
}

std::span<const double> dashesOf(int lineFont)
{
    // The elements of technical drawings: dash 12, long dash 24, dot 0.5, gap 3 pen widths.
    static constexpr std::array dashed{12.0, 3.0};
    static constexpr std::array phantom{24.0, 3.0, 0.5, 3.0, 0.5, 3.0};
    static constexpr std::array centreline{24.0, 3.0, 0.5, 3.0};
    static constexpr std::array dotted{0.5, 3.0};
    static constexpr std::array longDashed{24.0, 3.0};
    static constexpr std::array dottedDashed{12.0, 3.0, 0.5, 3.0};
    switch (lineFont) {
    case 2:
        return dashed;
    case 3:
        return phantom;
    case 4:
        return centreline;
    case 5:
        return dotted;
    case 6:
        return longDashed;
    case 7:
        return dottedDashed;
    default:
        return {}; // 0 comes from definitions that never chose a font
    }
}

Rgb rgbOf(int color)
{
    // The usual names of 1 to 15, darkened where the screen's shade would vanish on white paper.
    static constexpr std::array<Rgb, 16> palette{{
        {0, 0, 0},       // 0: not a colour
        {0, 0, 220},     // blue
        {0, 140, 0},     // green
        {0, 140, 160},   // cyan
        {210, 0, 0},     // red
        {190, 0, 190},   // magenta
        {170, 140, 0},   // yellow
        {0, 0, 0},       // white on a dark screen, black on paper
        {110, 110, 0},   // olive
        {220, 90, 140},  // pink
        {130, 70, 20},   // brown
        {225, 110, 0},   // orange
        {110, 40, 170},  // purple
        {140, 0, 0},     // dark red
        {0, 150, 110},   // aquamarine
        {110, 110, 110}, // grey
    }};
    if (color < 0 || color >= static_cast<int>(palette.size())) return {};
    return palette[static_cast<std::size_t>(color)];
}

} // namespace host::display
