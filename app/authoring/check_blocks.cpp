#include "app/authoring/check_blocks.h"

#include "app/authoring/stored_order.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <numbers>
#include <set>

namespace app::authoring {

namespace {

constexpr double kSame = 1e-6;

// Of the rectangles between the edges of all boxes, the first that no box covers.
std::optional<FieldBox> gapOf(const Block &block)
{
    std::set<double> xs{0.0, block.width}, ys{0.0, block.height};
    for (const BlockBox &box : block.boxes) {
        xs.insert({box.x, box.x + box.width});
        ys.insert({box.y, box.y + box.height});
    }
    for (auto y = ys.begin(); std::next(y) != ys.end(); ++y) {
        for (auto x = xs.begin(); std::next(x) != xs.end(); ++x) {
            const FieldBox one{*x, *y, *std::next(x) - *x, *std::next(y) - *y};
            if (one.width < kSame || one.height < kSame || one.x < -kSame || one.y < -kSame ||
                one.x > block.width - kSame || one.y > block.height - kSame)
                continue;
            const double middleX = one.x + one.width / 2, middleY = one.y + one.height / 2;
            const bool covered =
                std::any_of(block.boxes.begin(), block.boxes.end(), [&](const BlockBox &box) {
                    return middleX > box.x && middleX < box.x + box.width && middleY > box.y &&
                           middleY < box.y + box.height;
                });
            if (!covered) return one;
        }
    }
    return {};
}

std::string boxText(double x, double y, double width, double height)
{
    return fmt::format("[{:.6g}, {:.6g}, {:.6g}, {:.6g}]", x, y, width, height);
}

// The box around shapes.
class Extent {
public:
    void add(ArtPoint p)
    {
        m_left = std::min(m_left, p.x);
        m_right = std::max(m_right, p.x);
        m_low = std::min(m_low, p.y);
        m_top = std::max(m_top, p.y);
    }
    void add(const ArtLine &line)
    {
        add(line.from);
        add(line.to);
    }
    // Of its ends, and of the quarters that it passes.
    void add(const ArtArc &arc)
    {
        constexpr double kQuarter = 90.0;
        add(onCircle(arc, arc.start));
        add(onCircle(arc, arc.end));
        for (double at = std::ceil(arc.start / kQuarter) * kQuarter; at < arc.end; at += kQuarter)
            add(onCircle(arc, at));
    }

    std::optional<FieldBox> box() const
    {
        if (!(m_left < m_right && m_low < m_top)) return {};
        return FieldBox{m_left, m_low, m_right - m_left, m_top - m_low};
    }
    std::optional<FieldBox> anyBox() const // also of one line
    {
        if (!(m_left <= m_right && m_low <= m_top)) return {};
        return FieldBox{m_left, m_low, m_right - m_left, m_top - m_low};
    }

private:
    static ArtPoint onCircle(const ArtArc &arc, double degrees)
    {
        const double angle = degrees * std::numbers::pi / 180.0;
        return {arc.centre.x + arc.radius * std::cos(angle),
                arc.centre.y + arc.radius * std::sin(angle)};
    }

    double m_left = HUGE_VAL, m_low = HUGE_VAL, m_right = -HUGE_VAL, m_top = -HUGE_VAL;
};

// A text stands with one of nine points at its place; one that is turned counts by that point alone.
void addText(const ArtText &text, TextRuler &ruler, Extent &extent)
{
    extent.add(text.at);
    if (text.angle != 0.0 || !ruler.knowsFont(text.font)) return;
    const TextExtent size = ruler.measure({text.text}, {text.font, text.size, text.aspect});
    const int column = (text.site - 1) % 3, row = (text.site - 1) / 3;
    const double left = text.at.x - column * size.width / 2;
    const double low = text.at.y - (2 - row) * size.height / 2;
    extent.add(ArtPoint{left, low});
    extent.add(ArtPoint{left + size.width, low + size.height});
}

std::optional<FieldBox> extentOfArt(const Art &art, TextRuler &ruler)
{
    Extent extent;
    for (const Shape &shape : art) {
        if (const auto *line = std::get_if<ArtLine>(&shape)) extent.add(*line);
        if (const auto *arc = std::get_if<ArtArc>(&shape)) extent.add(*arc);
        if (const auto *text = std::get_if<ArtText>(&shape)) addText(*text, ruler, extent);
        if (const auto *area = std::get_if<ArtArea>(&shape))
            for (const auto &outline : area->outlines)
                for (const ArtPoint &point : outline) extent.add(point);
    }
    return extent.anyBox();
}

} // namespace

void checkCells(const RecordTree &block, const std::optional<FieldBox> &extent,
                const std::string &where, Findings &findings)
{
    std::vector<const RecordTree *> fields;
    for (const RecordTree *field : block.childrenOf("field"))
        if (field->integer("relative_offset_type") == 0) fields.push_back(field);
    for (std::size_t i = 0; i < fields.size(); ++i) {
        const FieldBox box = boxOf(*fields[i]);
        const std::string here = where + ", " + identityOf(*fields[i]);
        for (std::size_t k = 0; k < i; ++k)
            if (overlap(box, boxOf(*fields[k])))
                findings.add(here, *fields[i], "location_x",
                             fmt::format("overlaps the field {}: move one of them, or make it "
                                         "smaller",
                                         fields[k]->text("id")));
        if (extent && (box.x < extent->x - kSame || box.y < extent->y - kSame ||
                       box.x + box.width > extent->x + extent->width + kSame ||
                       box.y + box.height > extent->y + extent->height + kSame))
            findings.add(here, *fields[i], "location_x",
                         fmt::format("the field {} leaves its block, which is {}: move it, or "
                                     "widen the block",
                                     boxText(box.x, box.y, box.width, box.height),
                                     boxText(extent->x, extent->y, extent->width, extent->height)));
    }
}

void checkTiling(const Block &block, Findings &findings)
{
    if (block.boxes.empty() || !block.drawn) return;
    const std::string where = "block " + block.id;
    for (const BlockBox &box : block.boxes)
        if (box.origin.key == "box" && // of a cell that is its own box its field tells
            (box.x < -kSame || box.y < -kSame || box.x + box.width > block.width + kSame ||
             box.y + box.height > block.height + kSame))
            findings.add(where + ", cell " + box.cell, box.origin,
                         fmt::format("leaves the block, which is {} x {}: move it, or widen the "
                                     "block",
                                     block.width, block.height));
    for (std::size_t i = 0; i < block.boxes.size(); ++i) {
        for (std::size_t k = 0; k < i; ++k) {
            const BlockBox &a = block.boxes[i], &b = block.boxes[k];
            const bool told = a.origin.key != "box" && b.origin.key != "box"; // as fields
            if (!told && overlap({a.x, a.y, a.width, a.height}, {b.x, b.y, b.width, b.height}))
                findings.add(
                    where + ", cell " + a.cell, a.origin,
                    fmt::format("its lines cross the cell {}: box: none draws none", b.cell));
        }
    }
    if (const auto gap = gapOf(block))
        findings.add(where, block.cells,
                     fmt::format("do not tile the block: none covers {}; widen a cell, or add "
                                 "one with value: \"\"",
                                 boxText(gap->x, gap->y, gap->width, gap->height)));
}

void checkOwnArt(const Block &block, TextRuler &ruler, Findings &findings)
{
    if (!(block.width > 0 && block.height > 0)) return;
    for (const ArtItem &item : block.artItems) {
        const Art shapes(block.art.begin() + static_cast<std::ptrdiff_t>(item.begin),
                         block.art.begin() + static_cast<std::ptrdiff_t>(item.end));
        const auto box = extentOfArt(shapes, ruler);
        if (!box ||
            (box->x > -kSame && box->y > -kSame && box->x + box->width < block.width + kSame &&
             box->y + box->height < block.height + kSame))
            continue;
        findings.add("block " + block.id + ", art", item.origin,
                     fmt::format("{} leaves the block, which is {} x {}: move it, make it smaller, "
                                 "or widen the block",
                                 boxText(box->x, box->y, box->width, box->height), block.width,
                                 block.height));
    }
}

void checkArt(const Art &art, const std::string &where, TextRuler &ruler, Findings &findings)
{
    std::set<std::string> told;
    for (const Shape &shape : art) {
        const auto *text = std::get_if<ArtText>(&shape);
        if (!text || ruler.knowsFont(text->font) || !told.insert(text->font).second) continue;
        findings.add(where, text->origin,
                     fmt::format("the font \"{}\" is missing: texts would not be drawn as meant; "
                                 "write osifont",
                                 text->font));
    }
}

std::optional<FieldBox> linesExtent(const Art &art)
{
    Extent extent;
    for (const Shape &shape : art) {
        if (const auto *line = std::get_if<ArtLine>(&shape)) extent.add(*line);
        if (const auto *arc = std::get_if<ArtArc>(&shape)) extent.add(*arc);
    }
    return extent.box();
}

} // namespace app::authoring
