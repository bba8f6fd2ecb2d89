#include "app/authoring/check_blocks.h"

#include "app/authoring/stored_order.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <set>

namespace app::authoring {

namespace {

constexpr double kSame = 1e-6;

// --- places -----------------------------------------------------------------------------------------

bool isLocation(const RecordTree &record)
{
    return record.kind->word == "block_location" || record.kind->word == "block_location_v1";
}

bool inSuite(const RecordTree &format, const std::string &name)
{
    if (name == "Default" || name == format.text("id")) return true;
    if (name.empty()) return false;
    if (name == format.text("suite_name")) return true;
    for (const RecordTree *size : format.childrenOf("size"))
        if (name == size->text("suite_name")) return true;
    return false;
}

bool fitsSize(const std::string &name, const RecordTree &format, const RecordTree &size)
{
    const std::string suite = size.text("suite_name");
    return name == "Default" || name == size.text("id") ||
           (!name.empty() && name == (suite.empty() ? format.text("suite_name") : suite));
}

// The first location that is for the format decides.
const RecordTree *locationFor(const RecordTree &block, const RecordTree &format)
{
    for (const RecordTree &location : block.children)
        if (isLocation(location) && inSuite(format, location.text("format_id"))) return &location;
    return nullptr;
}

bool hasPlace(const RecordTree &location, const RecordTree &format, const RecordTree &size)
{
    if (location.kind->word == "block_location_v1") {
        const auto names = location.texts("size_names");
        return std::any_of(names.begin(), names.end(),
                           [&](const std::string &name) { return fitsSize(name, format, size); });
    }
    for (const RecordTree *one : location.childrenOf("size_location"))
        if (fitsSize(one->text("size_id"), format, size))
            return !one->childrenOf("location").empty();
    return false;
}

void checkHiddenSizes(const RecordTree &location, const std::string &where, Findings &findings)
{
    bool all = false;
    for (const RecordTree *size : location.childrenOf("size_location")) {
        if (all)
            findings.add(where, *size, "size_id",
                         fmt::format("the places for \"{}\" stand behind those for Default, which "
                                     "always fit: they are never used; put them first",
                                     size->text("size_id")));
        all = all || size->text("size_id") == "Default";
    }
}

void checkSizes(const RecordTree &block, const RecordTree &format, const std::string &where,
                Findings &findings)
{
    const RecordTree *location = locationFor(block, format);
    const auto required = format.texts("required_block_ids");
    if (!location) {
        if (std::count(required.begin(), required.end(), block.text("id")))
            findings.add(where, block, "place",
                         fmt::format("the format {} requires it, and it has no place there: add "
                                     "one for it",
                                     format.text("id")));
        return;
    }
    for (const RecordTree *size : format.childrenOf("size"))
        if (!hasPlace(*location, format, *size))
            findings.add(where, *location, "place",
                         fmt::format("there is none on size {} of format {}: the block would come "
                                     "to the sheet's corner; add {}: {{corner: ..., inset: "
                                     "[x, y]}}",
                                     size->text("id"), format.text("id"), size->text("id")));
}

// --- cells ------------------------------------------------------------------------------------------

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

} // namespace

void checkPlaces(const RecordTree &block, const std::vector<const RecordTree *> &formats,
                 const std::string &where, Findings &findings)
{
    bool any = false;
    for (const RecordTree &location : block.children) {
        if (!isLocation(location)) continue;
        any = true;
        const std::string id = location.text("format_id");
        if (std::none_of(formats.begin(), formats.end(),
                         [&](const RecordTree *format) { return inSuite(*format, id); }))
            findings.add(where, location, "format_id",
                         fmt::format("\"{}\" is no format and no suite of the files: name one, or "
                                     "the file that defines it too",
                                     id));
        checkHiddenSizes(location, where + ", " + identityOf(location), findings);
    }
    if (!any)
        findings.add(where, block, "place",
                     "is missing: the block cannot be placed; place: {corner: ..., inset: [x, y]}");
    for (const RecordTree *format : formats) checkSizes(block, *format, where, findings);
}

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
    double left = HUGE_VAL, low = HUGE_VAL, right = -HUGE_VAL, top = -HUGE_VAL;
    const auto add = [&](double x, double y) {
        left = std::min(left, x);
        right = std::max(right, x);
        low = std::min(low, y);
        top = std::max(top, y);
    };
    for (const Shape &shape : art) {
        if (const auto *line = std::get_if<ArtLine>(&shape)) {
            add(line->from.x, line->from.y);
            add(line->to.x, line->to.y);
        } else if (const auto *arc = std::get_if<ArtArc>(&shape)) {
            add(arc->centre.x - arc->radius, arc->centre.y - arc->radius);
            add(arc->centre.x + arc->radius, arc->centre.y + arc->radius);
        }
    }
    if (!(left < right && low < top)) return {};
    return FieldBox{left, low, right - left, top - low};
}

} // namespace app::authoring
