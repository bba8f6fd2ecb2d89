// The lines round a field.
#include "content/field.h"
#include "content/new_object.h"
#include "definitions/block_def.h"
#include "definitions/field_def.h"
#include "drawing/block.h"
#include "drawing/sheet_view.h"

#include "uf_obj.h"
#include "ug_exception.hxx"
#include "ug_line.hxx"

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>

namespace {

constexpr int kBorders = 5; // bottom, left, middle, right, top

using Def = TrFieldDefV1;
using Flags = std::array<bool, kBorders>;

Flags switchedOn(const LumUg::UDO &field)
{
    const LumUg::Record record(field);
    return {
        record.get(FieldSlots::kHasBottomBorder) != 0, record.get(FieldSlots::kHasLeftBorder) != 0,
        record.get(FieldSlots::kHasMiddleBorder) != 0, record.get(FieldSlots::kHasRightBorder) != 0,
        record.get(FieldSlots::kHasTopBorder) != 0};
}

struct Segment {
    Point3 start, end;
};

Point3 halfway(const Point3 &a, const Point3 &b) { return {a[0], a[1] - (a[1] - b[1]) * 0.5, 0.0}; }

// "Bottom" is the side away from the base point: below it where the height is negative.
Segment segmentOf(const Rect &rect, int which)
{
    switch (which) {
    case 0:
        return {rect.p3, rect.p2};
    case 1:
        return {rect.p0, rect.p3};
    case 2:
        return {halfway(rect.p0, rect.p3), halfway(rect.p1, rect.p2)};
    case 3:
        return {rect.p1, rect.p2};
    default:
        return {rect.p0, rect.p1};
    }
}

// Near enough that a line between them would be refused as one of no length.
bool same(const Point3 &a, const Point3 &b)
{
    constexpr double kNear = 1e-6;
    return std::abs(a[0] - b[0]) < kNear && std::abs(a[1] - b[1]) < kNear &&
           std::abs(a[2] - b[2]) < kNear;
}

// The two ends move one after the other, and the platform refuses a line of no length in between. A
// line that stays on its height moves its end first; where that order would meet the other end,
// which happens when a box moves by its own height, the other order is taken.
void moveLine(UgLine &line, const Segment &to)
{
    const Point3 start = line.getStartPoint();
    const Point3 end = line.getEndPoint();
    const bool endFirstMeets = same(to.end, start);
    const bool startFirstMeets = same(to.start, end);
    if (endFirstMeets && startFirstMeets) { // turned round: it takes a step aside
        line.setEndPoint(Point3(end[0] + 1.0, end[1] + 2.0, end[2]));
        line.setStartPoint(to.start);
        line.setEndPoint(to.end);
        return;
    }
    const bool endFirst = start[1] == to.start[1] ? !endFirstMeets : startFirstMeets;
    if (endFirst) line.setEndPoint(to.end);
    line.setStartPoint(to.start);
    if (!endFirst) line.setEndPoint(to.end);
}

} // namespace

bool TrFieldBase::hasBorders() const
{
    const Flags on = switchedOn(*this);
    return std::find(on.begin(), on.end(), true) != on.end();
}

// What the five sides of one field have in common, read once.
struct TrFieldBase::Borders {
    // How a line that is drawn anew looks, and where it goes.
    struct Style {
        tag_t view; // NULL_TAG: where new lines go anyway
        std::optional<int> layer;
        int color;
    };

    explicit Borders(const TrFieldBase &field) : on(switchedOn(field)), lines(field.GetBorders()) {}

    Flags on;
    std::vector<UgLine *> lines; // in the order of the sides that are switched on
    std::optional<Style> style;  // when first needed
};

// A box without a width or a height has no sides that could be drawn: the lines there are stay.
void TrFieldBase::UpdateBorders(double h)
{
    const TrFieldDefV1 definition = GetDefinition();
    if (definition.IsNull()) return;
    const LumUg::Record def(definition);
    const double w = def.get(Def::kWidth);
    if (h == 0.0 || w == 0.0) return;
    Borders borders(*this);
    if (borders.on == Flags{} && borders.lines.empty()) return;

    const std::vector<double> base = baseLocation();
    const double x = def.get(Def::kLocationX) + base[0];
    const double y = def.get(Def::kLocationY) + base[1];
    const Rect rect{{x, y, 0.0}, {x + w, y, 0.0}, {x + w, y + h, 0.0}, {x, y + h, 0.0}};
    m_borders = &borders;
    try {
        for (int which = 0; which < kBorders; ++which)
            if (borders.on[which]) ModifyBorder(rect, which);
    } catch (...) {
        m_borders = nullptr;
        throw;
    }
    m_borders = nullptr;
    deleteSurplusBorders(borders);
}

// The text of the upper three sites hangs below its point, and the box with it.
void TrFieldBase::fitBorders()
{
    if (!hasBorders() && GetBorders().empty()) return;
    const LumUg::Record def(GetDefinition());
    const double cell = def.get(Def::kHeight);
    const double height = cell != 0.0 ? cell : CalcHeight();
    const int site = def.get(Def::kTextSite);
    UpdateBorders(site >= 1 && site <= 3 ? -height : height);
}

// Lines are told apart by their number among those that are switched on: one that was switched off
// leaves a line too many at the end.
void TrFieldBase::deleteSurplusBorders(const Borders &borders)
{
    const auto wanted =
        static_cast<std::size_t>(std::count(borders.on.begin(), borders.on.end(), true));
    for (std::size_t i = wanted; i < borders.lines.size(); ++i) {
        const tag_t line = borders.lines[i]->getTag();
        DeleteOwnedObject(borders.lines[i]);
        UgException::throwOnFailure(UF_OBJ_delete_object(line));
    }
}

void TrFieldV1::ModifyBorder(const Rect &rect, int which)
{
    if (!m_borders) { // one side alone
        Borders borders(*this);
        return modifyBorder(borders, rect, which);
    }
    modifyBorder(*m_borders, rect, which);
}

void TrFieldV1::modifyBorder(Borders &borders, const Rect &rect, int which)
{
    const Flags &on = borders.on;
    if (which < 0 || which >= kBorders || !on[which]) return;
    const auto index = static_cast<std::size_t>(std::count(on.begin(), on.begin() + which, true));
    const Segment segment = segmentOf(rect, which);
    if (index < borders.lines.size())
        moveLine(*borders.lines[index], segment);
    else
        drawBorder(borders, segment.start, segment.end);
}

void TrFieldV1::drawBorder(Borders &borders, const Point3 &start, const Point3 &end)
{
    UgLine *line = UgLine::create(start, end);
    QelFmt::NewObject fresh(line->getTag());
    if (!borders.style) chooseStyle(borders);
    putInView(borders.style->view, line->getTag());
    if (borders.style->layer) line->setLayer(*borders.style->layer);
    line->setColor(static_cast<UgColor>(borders.style->color));
    line->setLineFont(0);
    line->setLineWidth(1);
    AddOwnedObjects({line});
    fresh.keep();
    borders.lines.push_back(line);
}

void TrFieldV1::chooseStyle(Borders &borders) const
{
    borders.style = {otherSheetsView(*this), {}, GetDefinition().GetBorderColor()};
    const auto block = GetBlock();
    if (!block) return;
    const auto def = block->GetDefinition();
    if (!def->IsNull()) borders.style->layer = def->GetPatternLayer();
}
