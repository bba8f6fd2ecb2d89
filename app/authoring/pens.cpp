#include "app/authoring/pens.h"

#include <array>
#include <cmath>

namespace app::authoring {

const char *const kPenWidths = "0.13, 0.18, 0.25, 0.35, 0.5, 0.7, 1, 1.4, 2";

std::optional<int> penOfWidth(double millimetres)
{
    constexpr int kFirst = 5; // the numbered widths begin here
    constexpr std::array widths{0.13, 0.18, 0.25, 0.35, 0.5, 0.7, 1.0, 1.4, 2.0};
    for (std::size_t i = 0; i < widths.size(); ++i)
        if (std::abs(widths[i] - millimetres) < 1e-9) return kFirst + static_cast<int>(i);
    return {};
}

} // namespace app::authoring
