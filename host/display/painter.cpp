#include "display/painter.h"

#include <algorithm>
#include <cmath>

#include "display/render.h"

namespace host::display {

namespace {

struct Paragraph { // consecutive lines of one note
    std::vector<const TextItem *> lines;
    double x() const { return lines.front()->origin.x; }
    double y() const { return lines.front()->origin.y; }
    double size() const { return lines.front()->size; }
};

std::vector<Paragraph> paragraphsOf(const DisplayList &list)
{
    std::vector<Paragraph> paragraphs;
    for (const Item &item : list.items) {
        const auto *text = std::get_if<TextItem>(&item);
        if (!text) continue;
        if (paragraphs.empty() || text->group == 0 ||
            paragraphs.back().lines.front()->group != text->group)
            paragraphs.emplace_back();
        paragraphs.back().lines.push_back(text);
    }
    return paragraphs;
}

} // namespace

std::vector<const TextItem *> readingOrder(const DisplayList &list)
{
    auto paragraphs = paragraphsOf(list);
    std::stable_sort(paragraphs.begin(), paragraphs.end(),
                     [](const Paragraph &a, const Paragraph &b) { return a.y() > b.y(); });
    for (auto row = paragraphs.begin(); row != paragraphs.end();) {
        // A row reaches half a letter below its first baseline.
        const double floor = row->y() - 0.5 * row->size();
        const auto end =
            std::find_if(row, paragraphs.end(), [&](const Paragraph &p) { return p.y() < floor; });
        std::stable_sort(row, end,
                         [](const Paragraph &a, const Paragraph &b) { return a.x() < b.x(); });
        row = end;
    }
    std::vector<const TextItem *> order;
    for (const Paragraph &paragraph : paragraphs)
        order.insert(order.end(), paragraph.lines.begin(), paragraph.lines.end());
    return order;
}

namespace {

// A part file may hold anything; a picture holds what can be drawn.
struct Drawable {
    bool operator()(const LineItem &line) const { return finite(line.start) && finite(line.end); }
    bool operator()(const ArcItem &arc) const
    {
        return finite(arc.centre) && arc.radius > 0.0 && arc.radius < kHuge &&
               std::abs(arc.startAngle) < kTurns && std::abs(arc.endAngle) < kTurns;
    }
    bool operator()(const FillItem &fill) const
    {
        return std::all_of(fill.outlines.begin(), fill.outlines.end(), [](const auto &outline) {
            return std::all_of(outline.begin(), outline.end(), finite);
        });
    }
    bool operator()(const TextItem &text) const
    {
        return finite(text.origin) && text.size > 0.0 && text.size < kHuge && text.aspect > 0.0 &&
               text.aspect < kHuge && std::abs(text.charSpace) < kHuge &&
               std::abs(text.angle) < kTurns;
    }

private:
    static constexpr double kHuge = 1e6;
    static constexpr double kTurns = 1e6; // degrees
    static bool finite(const Place &place)
    {
        return std::abs(place.x) < kHuge && std::abs(place.y) < kHuge;
    }
};

void checkSize(const DisplayList &list)
{
    constexpr double longest = 100'000.0;
    if (list.width > 0.0 && list.height > 0.0 && list.width <= longest && list.height <= longest)
        return;
    throw RenderError("The sheet " + list.sheet + " has no size that can be drawn (" +
                      std::to_string(list.width) + " x " + std::to_string(list.height) +
                      " mm); give it one.");
}

} // namespace

Page shaped(const DisplayList &list, Shaper &shaper)
{
    checkSize(list);
    Page page{&list, {}};
    for (const TextItem *text : readingOrder(list))
        if (Drawable()(*text)) page.texts.push_back(shaper.shape(*text));
    return page;
}

void paint(const Page &page, Painter &painter)
{
    for (const Item &item : page.list->items) {
        if (!std::visit(Drawable(), item)) continue;
        if (const auto *line = std::get_if<LineItem>(&item)) painter.line(*line);
        if (const auto *arc = std::get_if<ArcItem>(&item)) painter.arc(*arc);
        if (const auto *fill = std::get_if<FillItem>(&item)) painter.fill(*fill);
    }
    for (const ShapedText &text : page.texts) painter.text(text);
}

Stroke strokeOf(const Pen &pen, bool monochrome)
{
    Stroke stroke{pen.width, {}, monochrome ? Rgb{} : rgbOf(pen.color)};
    for (const double share : dashesOf(pen.lineFont)) stroke.dashes.push_back(share * pen.width);
    return stroke;
}

} // namespace host::display
