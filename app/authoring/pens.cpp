#include "app/authoring/pens.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace app::authoring {

const char *const kPenWidths = "0.13, 0.18, 0.25, 0.35, 0.5, 0.7, 1, 1.4, 2";

namespace {

constexpr int kFirst = 5; // the numbered widths begin here
constexpr std::array kWidths{0.13, 0.18, 0.25, 0.35, 0.5, 0.7, 1.0, 1.4, 2.0};

} // namespace

std::optional<int> penOfWidth(double millimetres)
{
    for (std::size_t i = 0; i < kWidths.size(); ++i)
        if (std::abs(kWidths[i] - millimetres) < 1e-9) return kFirst + static_cast<int>(i);
    return {};
}

std::optional<double> widthOfPen(int pen)
{
    const int index = pen - kFirst;
    if (index < 0 || index >= static_cast<int>(kWidths.size())) return {};
    return kWidths[static_cast<std::size_t>(index)];
}

int nearestPen(double millimetres)
{
    const auto nearest = std::min_element(kWidths.begin(), kWidths.end(), [&](double a, double b) {
        return std::abs(a - millimetres) < std::abs(b - millimetres);
    });
    return kFirst + static_cast<int>(nearest - kWidths.begin());
}

} // namespace app::authoring
