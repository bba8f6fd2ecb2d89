#include "app/authoring/art_reader.h"

#include "app/authoring/pens.h"
#include "app/authoring/style.h"

#include <fmt/format.h>

namespace app::authoring {

namespace {

constexpr int kThinPen = 8; // 0.35 mm

std::vector<ArtPoint> readPoints(Mapping &item, const std::string &key, std::size_t least)
{
    std::vector<ArtPoint> points;
    const YAML::Node list = item.node(key);
    bool good = list.IsSequence() && list.size() >= least;
    for (std::size_t i = 0; good && i < list.size(); ++i) {
        const YAML::Node point = list[i];
        good = point.IsSequence() && point.size() == 2 && asNumber(point[0]) && asNumber(point[1]);
        if (good) points.push_back({*asNumber(point[0]), *asNumber(point[1])});
    }
    if (!good) {
        item.complain(key, fmt::format("must be a list of {} or more points [x, y]", least));
        points.clear();
    }
    return points;
}

void polyline(const std::vector<ArtPoint> &points, int pen, Art &art)
{
    for (std::size_t i = 1; i < points.size(); ++i)
        art.push_back(ArtLine{points[i - 1], points[i], pen});
}

void circle(const std::vector<double> &at, double start, double end, int pen, Art &art)
{
    art.push_back(ArtArc{{at[0], at[1]}, at[2], start, end, pen});
}

void readText(Mapping &item, Art &art)
{
    const auto text = item.text("text");
    const auto at = item.numbers("where", 2, 2);
    item.require("where", "a text needs its point: where: [x, y]");
    Style style;
    readStyle(item, style);
    const double angle = item.number("angle").value_or(0.0);
    if (text && at)
        art.push_back(ArtText{
            *text, {(*at)[0], (*at)[1]}, style.site, style.size, style.font, style.aspect, angle});
}

void readItem(Mapping &item, Art &art)
{
    const int pen = readPen(item, "width", kThinPen);
    if (item.has("line")) {
        if (const auto l = item.numbers("line", 4, 4))
            polyline({{(*l)[0], (*l)[1]}, {(*l)[2], (*l)[3]}}, pen, art);
    } else if (item.has("polyline")) {
        polyline(readPoints(item, "polyline", 2), pen, art);
    } else if (item.has("rectangle")) {
        if (const auto r = item.numbers("rectangle", 4, 4)) {
            const double x = (*r)[0], y = (*r)[1], right = x + (*r)[2], top = y + (*r)[3];
            polyline({{x, y}, {right, y}, {right, top}, {x, top}, {x, y}}, pen, art);
        }
    } else if (item.has("circle")) {
        if (const auto c = item.numbers("circle", 3, 3)) circle(*c, 0.0, 360.0, pen, art);
    } else if (item.has("arc")) {
        if (const auto a = item.numbers("arc", 5, 5)) circle(*a, (*a)[3], (*a)[4], pen, art);
    } else if (item.has("area")) {
        if (auto points = readPoints(item, "area", 3); !points.empty())
            art.push_back(ArtArea{{std::move(points)}});
    } else if (item.has("text")) {
        readText(item, art);
    } else {
        item.complain("art", "one of line, polyline, rectangle, circle, arc, area, text is needed");
    }
}

} // namespace

int readPen(Mapping &mapping, const std::string &key, int fallback)
{
    const auto width = mapping.number(key);
    if (!width) return fallback;
    if (const auto pen = penOfWidth(*width)) return *pen;
    mapping.complain(key, fmt::format("no pen is {} wide: use one of {}", *width, kPenWidths));
    return fallback;
}

void readArt(YamlFile &file, const YAML::Node &node, const std::string &what, Art &art)
{
    if (!node.IsDefined()) return;
    if (!node.IsSequence()) {
        file.complain(node, what + ": art must be a list");
        return;
    }
    for (const YAML::Node &one : node) {
        Mapping item(file, one, what + ", art");
        readItem(item, art);
    }
}

} // namespace app::authoring
