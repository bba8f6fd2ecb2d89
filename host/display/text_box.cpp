#include "display/text_box.h"

#include <cmath>
#include <numbers>

#include "model/text_metrics.h"

namespace host::display {

namespace {

// Multiples of 90 degrees are exact, so that a turned line stays on its grid.
Place turned(Place point, double degrees)
{
    const double quarters = degrees / 90.0;
    double s = std::sin(degrees * std::numbers::pi / 180.0);
    double c = std::cos(degrees * std::numbers::pi / 180.0);
    if (quarters == std::floor(quarters)) {
        s = std::round(s);
        c = std::round(c);
    }
    return {c * point.x - s * point.y, s * point.x + c * point.y};
}

// Lines at the left need no measuring.
double indent(const std::string &line, double boxWidth, const Lettering &look)
{
    if (look.justification == 2) return (boxWidth - lineWidth(line, look)) / 2.0;
    return look.justification == 3 ? boxWidth - lineWidth(line, look) : 0.0;
}

} // namespace

void appendText(const TextBox &box, std::vector<Item> &items)
{
    const Lettering &look = box.lettering;
    const double width = textWidth(box.lines, look);
    const double height = textHeight(box.lines.size(), look);
    const Vec3 corner = boxOffset(look.site, width, height);
    double baseline = corner.y + height - look.size;
    for (const std::string &line : box.lines) {
        if (!line.empty()) {
            const Place start{corner.x + indent(line, width, look), baseline};
            const Place offset = turned(start, look.angle);
            items.push_back(TextItem{line,
                                     {box.origin.x + offset.x, box.origin.y + offset.y},
                                     look.size,
                                     look.angle,
                                     look.aspect,
                                     look.charSpace,
                                     look.color,
                                     box.font,
                                     box.group});
        }
        baseline -= linePitch(look);
    }
}

} // namespace host::display
