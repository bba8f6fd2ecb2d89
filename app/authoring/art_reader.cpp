#include "app/authoring/art_reader.h"

#include "app/authoring/pens.h"
#include "app/authoring/style.h"
#include "app/authoring/svg_reader.h"

#include <fmt/format.h>

#include <filesystem>

namespace app::authoring {

namespace {

constexpr int kThinPen = 8; // 0.35 mm

std::vector<ArtPoint> readPoints(Mapping &item, const std::string &key, const YAML::Node &list,
                                 std::size_t least)
{
    std::vector<ArtPoint> points;
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

// One outline, or several: those inside others are holes.
void readArea(Mapping &item, Art &art)
{
    constexpr std::size_t kLeast = 3;
    const YAML::Node list = item.node("area");
    const bool several = list.IsSequence() && list.size() > 0 && list[0].IsSequence() &&
                         list[0].size() > 0 && list[0][0].IsSequence();
    ArtArea area;
    if (!several) area.outlines.push_back(readPoints(item, "area", list, kLeast));
    for (std::size_t i = 0; several && i < list.size(); ++i)
        area.outlines.push_back(readPoints(item, "area", list[i], kLeast));
    for (const auto &outline : area.outlines)
        if (outline.empty()) return;
    art.push_back(std::move(area));
}

void polyline(Mapping &item, const std::string &key, const std::vector<ArtPoint> &points, int pen,
              Art &art)
{
    for (std::size_t i = 1; i < points.size(); ++i) {
        if (points[i - 1] == points[i])
            item.complain(key, "two points that follow each other must differ");
        art.push_back(ArtLine{points[i - 1], points[i], pen});
    }
}

// Counterclockwise from start to end, as the platform wants it: an end that is not behind its start is
// meant one turn further on.
void circle(Mapping &item, const std::string &key, const std::vector<double> &at, double start,
            double end, int pen, Art &art)
{
    if (at[2] <= 0) item.complain(key, "the radius must be greater than 0");
    if (end < start) end += 360.0;
    if (end == start || end - start > 360.0)
        item.complain(key, "the end angle must lie at most one turn behind the start angle");
    art.push_back(ArtArc{{at[0], at[1]}, at[2], start, end, pen});
}

void readText(Mapping &item, int units, Art &art)
{
    const auto text = item.text("text");
    const auto at = item.numbers("where", 2, 2);
    item.require("where", "a text needs its point: where: [x, y]");
    Style style = plainStyle(units);
    readStyle(item, style);
    const double angle = item.number("angle").value_or(0.0);
    if (text && at)
        art.push_back(ArtText{*text,
                              {(*at)[0], (*at)[1]},
                              style.site,
                              style.size,
                              style.font,
                              style.aspect,
                              angle,
                              item.origin("text")});
}

// An SVG file, which counts from the folder of the text.
void readPicture(Mapping &item, int units, Art &art)
{
    item.require("cell", "where the picture goes: cell: [x, y, width, height]");
    const auto cell = item.numbers("cell", 4, 4);
    const auto name = item.text("svg");
    if (!cell || !name) return;
    const Box box{(*cell)[0], (*cell)[1], (*cell)[2], (*cell)[3]};
    if (!(box.width > 0 && box.height > 0)) {
        item.complain("cell", "width and height must be greater than 0");
        return;
    }
    const auto folder = std::filesystem::path(item.file().path).parent_path();
    std::optional<int> pen;
    if (item.has("width")) pen = readPen(item, "width", kThinPen);
    std::vector<Complaint> inside;
    const Art picture = readSvg((folder / *name).string(), box, units, pen, inside);
    for (Complaint &complaint : inside) { // behind the place in the text: "logo.svg:3:2: ..."
        complaint.file = *name;
        item.complain("svg", toText(complaint));
    }
    art.insert(art.end(), picture.begin(), picture.end());
}

void readItem(Mapping &item, int units, Art &art)
{
    const int pen = readPen(item, "width", kThinPen);
    if (item.has("line")) {
        if (const auto l = item.numbers("line", 4, 4))
            polyline(item, "line", {{(*l)[0], (*l)[1]}, {(*l)[2], (*l)[3]}}, pen, art);
    } else if (item.has("polyline")) {
        polyline(item, "polyline", readPoints(item, "polyline", item.node("polyline"), 2), pen,
                 art);
    } else if (item.has("rectangle")) {
        if (const auto r = item.numbers("rectangle", 4, 4)) {
            const double x = (*r)[0], y = (*r)[1], right = x + (*r)[2], top = y + (*r)[3];
            polyline(item, "rectangle", {{x, y}, {right, y}, {right, top}, {x, top}, {x, y}}, pen,
                     art);
        }
    } else if (item.has("circle")) {
        if (const auto c = item.numbers("circle", 3, 3))
            circle(item, "circle", *c, 0.0, 360.0, pen, art);
    } else if (item.has("arc")) {
        if (const auto a = item.numbers("arc", 5, 5))
            circle(item, "arc", *a, (*a)[3], (*a)[4], pen, art);
    } else if (item.has("area")) {
        readArea(item, art);
    } else if (item.has("svg")) {
        readPicture(item, units, art);
    } else if (item.has("text")) {
        readText(item, units, art);
    } else {
        item.complain("art",
                      "one of line, polyline, rectangle, circle, arc, area, text, svg is needed");
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

std::vector<ArtItem> readArt(YamlFile &file, const YAML::Node &node, const std::string &what,
                             int units, Art &art)
{
    std::vector<ArtItem> items;
    if (!node.IsDefined()) return items;
    if (!node.IsSequence()) {
        file.complain(node, what, "art", "must be a list");
        return items;
    }
    for (const YAML::Node &one : node) {
        const std::size_t begin = art.size();
        Mapping item(file, one, what + ", art");
        readItem(item, units, art);
        items.push_back({{"", markOf(one)}, begin, art.size()});
    }
    return items;
}

} // namespace app::authoring
