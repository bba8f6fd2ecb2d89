// Line widths in millimetres and the platform's numbers for them.
#pragma once

#include <optional>
#include <string>

namespace app::authoring {

// 0.13, 0.18, 0.25, 0.35, 0.5, 0.7, 1, 1.4, 2 (the series of ISO 128); empty for any other width.
std::optional<int> penOfWidth(double millimetres);
std::optional<double> widthOfPen(int pen); // empty for pens without a number of the series
int nearestPen(double millimetres);
// As the borders of rows are drawn, which the platform makes thick lines: 0.5 mm.
inline constexpr int kRowPen = 9;
extern const char *const kPenWidths; // for complaints

} // namespace app::authoring
