#include "app/authoring/art_words.h"

#include "app/authoring/field_words.h"
#include "app/authoring/flow.h"
#include "app/authoring/pens.h"
#include "app/authoring/words.h"

#include <algorithm>
#include <cmath>

namespace app::authoring {

namespace {

constexpr double kSame = 1e-6;
constexpr int kUsualOutlinePen = 10, kUsualCellPen = 8; // 0.7 and 0.35 mm

bool same(const Shape &a, const Shape &b)
{
    const auto *one = std::get_if<ArtLine>(&a), *other = std::get_if<ArtLine>(&b);
    return one && other && one->from == other->from && one->to == other->to &&
           one->pen == other->pen;
}

bool sameBox(const Box &a, const Box &b)
{
    return a.x == b.x && a.y == b.y && a.width == b.width && a.height == b.height;
}

// The lines between cells, to ask whether an edge is drawn.
class DrawnLines {
public:
    void add(const ArtLine &line) { m_lines.push_back(line); }

    bool surrounds(const Box &box) const
    {
        const double right = box.x + box.width, top = box.y + box.height;
        return covers({box.x, box.y}, {right, box.y}) && covers({box.x, top}, {right, top}) &&
               covers({box.x, box.y}, {box.x, top}) && covers({right, box.y}, {right, top});
    }

private:
    // One line covers an edge, since lines that meet have been merged.
    bool covers(ArtPoint from, ArtPoint to) const
    {
        return std::any_of(m_lines.begin(), m_lines.end(), [&](const ArtLine &line) {
            const auto between = [](double a, double b, double value) {
                return value > std::min(a, b) - kSame && value < std::max(a, b) + kSame;
            };
            return between(line.from.x, line.to.x, from.x) &&
                   between(line.from.x, line.to.x, to.x) &&
                   between(line.from.y, line.to.y, from.y) && between(line.from.y, line.to.y, to.y);
        });
    }

    std::vector<ArtLine> m_lines;
};

class Dissection {
public:
    Dissection(const Art &art, const std::vector<std::optional<Box>> &cells,
               const std::vector<TableShape> &tables, const LabelStyle &labels)
        : m_art(art), m_cells(cells), m_tables(tables), m_labels(labels)
    {
        m_result.cells.resize(cells.size());
        m_result.tables.resize(tables.size());
    }

    std::optional<BlockArt> run()
    {
        if (takeOutline() && !takeCellLines()) return {};
        takeLabels();
        for (std::size_t i = 0; i < m_tables.size(); ++i)
            takeHeading(m_tables[i], m_result.tables[i]);
        m_result.rest.assign(m_art.begin() + static_cast<std::ptrdiff_t>(m_next), m_art.end());
        return std::move(m_result);
    }

private:
    const ArtLine *lineAt(std::size_t i) const
    {
        return i < m_art.size() ? std::get_if<ArtLine>(&m_art[i]) : nullptr;
    }

    // Four lines around the block, from its lower left corner.
    bool takeOutline()
    {
        const ArtLine *bottom = lineAt(0), *right = lineAt(1);
        if (!bottom || !right || !lineAt(2) || !lineAt(3)) return false;
        m_result.width = bottom->to.x;
        m_result.height = right->to.y;
        m_result.outlinePen = bottom->pen;
        Art outline;
        drawCellLines(outline, m_result.width, m_result.height, {}, bottom->pen, bottom->pen);
        if (!std::equal(outline.begin(), outline.end(), m_art.begin(), same)) {
            m_result.width = m_result.height = 0.0;
            return false;
        }
        m_result.lines = true;
        m_next = outline.size();
        return true;
    }

    bool takeCellLines()
    {
        DrawnLines drawn;
        for (std::size_t i = 0; const ArtLine *line = lineAt(i); ++i) drawn.add(*line);
        m_result.cellPen = lineAt(m_next) ? lineAt(m_next)->pen : kUsualCellPen;
        for (std::size_t i = 0; i < m_cells.size(); ++i)
            if (m_cells[i] && drawn.surrounds(*m_cells[i]) && !isDrawnAlready(*m_cells[i]))
                m_result.cells[i].lines = m_cells[i];
        joinCells(drawn);
        std::vector<Box> boxes;
        for (const CellArt &cell : m_result.cells)
            if (cell.lines) boxes.push_back(*cell.lines);
        if (boxes.size() < 2) m_result.cellPen = kUsualCellPen; // none of the lines is theirs
        Art lines;
        drawCellLines(lines, m_result.width, m_result.height, boxes, m_result.outlinePen,
                      m_result.cellPen);
        if (lines.size() > m_art.size() ||
            !std::equal(lines.begin(), lines.end(), m_art.begin(), same))
            return false;
        m_next = lines.size();
        return true;
    }

    bool isDrawnAlready(const Box &box) const
    {
        return std::any_of(m_result.cells.begin(), m_result.cells.end(), [&](const CellArt &cell) {
            return cell.lines && sameBox(*cell.lines, box);
        });
    }

    // Cells that share one box: the first of them has it.
    void joinCells(const DrawnLines &drawn)
    {
        std::vector<bool> joined(m_cells.size());
        for (std::size_t i = 0; i < m_cells.size(); ++i) {
            if (!m_cells[i] || m_result.cells[i].lines || joined[i]) continue;
            Box box = *m_cells[i];
            std::vector<std::size_t> parts;
            for (std::size_t k = i + 1; k < m_cells.size(); ++k) {
                if (!m_cells[k] || m_result.cells[k].lines || joined[k]) continue;
                const Box both = around(box, *m_cells[k]);
                const double area = box.width * box.height + m_cells[k]->width * m_cells[k]->height;
                if (std::abs(both.width * both.height - area) > kSame * area) continue;
                box = both;
                parts.push_back(k);
            }
            if (parts.empty() || !drawn.surrounds(box)) continue;
            m_result.cells[i].lines = box;
            for (const std::size_t k : parts) joined[k] = true;
        }
    }

    static Box around(const Box &a, const Box &b)
    {
        const double x = std::min(a.x, b.x), y = std::min(a.y, b.y);
        return {x, y, std::max(a.x + a.width, b.x + b.width) - x,
                std::max(a.y + a.height, b.y + b.height) - y};
    }

    // Labels stand in the order of the cells.
    void takeLabels()
    {
        for (std::size_t i = 0; i < m_cells.size(); ++i) {
            const ArtText *text = textAt(m_next);
            if (!text || !m_cells[i]) continue;
            CellArt &cell = m_result.cells[i];
            const Box &box = cell.lines ? *cell.lines : *m_cells[i];
            if (!isLabel(*text, m_labels) || !within(text->at, box)) continue;
            cell.label = text->text;
            const auto left = addendOf(text->at.x, box.x);
            const double top = box.y + box.height;
            const auto down = subtrahendOf(top, text->at.y);
            if (!left || !down) return;
            if (box.x + m_labels.fromLeft != text->at.x || top - m_labels.fromTop != text->at.y)
                cell.labelInset = std::vector{*left, *down};
            ++m_next;
        }
    }

    const ArtText *textAt(std::size_t i) const
    {
        return i < m_art.size() ? std::get_if<ArtText>(&m_art[i]) : nullptr;
    }

    // Two lines along it, one at its left, then each column's right line and label.
    void takeHeading(const TableShape &table, TableArt &heading)
    {
        const ArtLine *low = lineAt(m_next), *high = lineAt(m_next + 1), *left = lineAt(m_next + 2);
        if (!low || !high || !left || low->from.y != low->to.y || high->from.y != high->to.y ||
            left->from.x != table.at.x || low->from.x != table.at.x || low->pen != kRowPen)
            return;
        const double edge = table.direction == kDown ? low->from.y : high->from.y;
        if (edge != table.at.y) return;
        const auto height = table.direction == kDown ? addendOf(high->from.y, low->from.y)
                                                     : subtrahendOf(high->from.y, low->from.y);
        if (!height || *height <= 0) return;
        std::size_t next = m_next + 3;
        std::vector<std::string> labels;
        for (std::size_t i = 0; i < table.columns; ++i) {
            if (!lineAt(next++)) return;
            const ArtText *text = textAt(next);
            const bool isIt = text && text->site == 5;
            labels.push_back(isIt ? text->text : "");
            next += isIt;
        }
        heading = {*height, labels};
        m_next = next;
    }

    static bool isLabel(const ArtText &text, const LabelStyle &labels)
    {
        return text.site == 1 && text.size == labels.size && text.font == labels.font &&
               text.aspect == 1.0 && text.angle == 0.0;
    }

    static bool within(ArtPoint p, const Box &box)
    {
        return p.x >= box.x && p.x <= box.x + box.width && p.y >= box.y &&
               p.y <= box.y + box.height;
    }

    const Art &m_art;
    const std::vector<std::optional<Box>> &m_cells;
    const std::vector<TableShape> &m_tables;
    const LabelStyle &m_labels;
    std::size_t m_next = 0; // of the art, not taken yet
    BlockArt m_result;
};

// --- items ------------------------------------------------------------------------------------------

bool putPen(int pen, FlowMapping &keys)
{
    const auto width = widthOfPen(pen);
    if (!width) return false;
    if (pen != kUsualCellPen) keys.putNumber("width", *width);
    return true;
}

bool isFinite(ArtPoint p) { return std::isfinite(p.x) && std::isfinite(p.y); }

std::string pointText(ArtPoint p) { return flowList(std::vector{p.x, p.y}); }

std::string outlineText(const std::vector<ArtPoint> &points)
{
    std::string text;
    for (const ArtPoint &p : points) text += (text.empty() ? "" : ", ") + pointText(p);
    return "[" + text + "]";
}

bool putShape(const ArtLine &line, int, FlowMapping &keys)
{
    keys.put("line", flowList(std::vector{line.from.x, line.from.y, line.to.x, line.to.y}));
    return isFinite(line.from) && isFinite(line.to) && putPen(line.pen, keys);
}

bool putShape(const ArtArc &arc, int, FlowMapping &keys)
{
    if (arc.start == 0.0 && arc.end == 360.0)
        keys.put("circle", flowList(std::vector{arc.centre.x, arc.centre.y, arc.radius}));
    else
        keys.put("arc",
                 flowList(std::vector{arc.centre.x, arc.centre.y, arc.radius, arc.start, arc.end}));
    return putPen(arc.pen, keys);
}

bool putShape(const ArtArea &area, int, FlowMapping &keys)
{
    std::string text;
    for (const auto &outline : area.outlines)
        text += (text.empty() ? "" : ", ") + outlineText(outline);
    keys.put("area", area.outlines.size() == 1 ? text : "[" + text + "]");
    return true;
}

bool putShape(const ArtText &text, int units, FlowMapping &keys)
{
    const Style plain = plainStyle(units);
    keys.putText("text", text.text);
    keys.put("where", pointText(text.at));
    const auto site = wordOf(kSites, text.site);
    if (text.site != plain.site && site) keys.put("at", *site);
    if (text.size != plain.size) keys.putNumber("size", text.size);
    if (text.font != plain.font) keys.putText("font", text.font);
    if (text.aspect != plain.aspect) keys.putNumber("aspect", text.aspect);
    if (text.angle != 0.0) keys.putNumber("angle", text.angle);
    return site.has_value();
}

} // namespace

void LabelVotes::count(const Art &art, const std::vector<std::optional<Box>> &cells)
{
    for (const Shape &shape : art) {
        const auto *text = std::get_if<ArtText>(&shape);
        if (!text || text->site != 1) continue;
        for (const auto &cell : cells) {
            if (!cell) continue;
            const auto left = addendOf(text->at.x, cell->x);
            const auto down = subtrahendOf(cell->y + cell->height, text->at.y);
            if (!left || !down || *left < 0 || *down < 0 || *left > cell->width ||
                *down > cell->height)
                continue;
            const LabelStyle style{text->size, text->font, *left, *down};
            const auto known = std::find_if(votes.begin(), votes.end(), [&](const auto &vote) {
                const LabelStyle &other = vote.first;
                return other.size == style.size && other.font == style.font &&
                       other.fromLeft == style.fromLeft && other.fromTop == style.fromTop;
            });
            if (known == votes.end())
                votes.emplace_back(style, 1);
            else
                ++known->second;
        }
    }
}

LabelStyle LabelVotes::winner(const LabelStyle &fallback) const
{
    const auto best =
        std::max_element(votes.begin(), votes.end(),
                         [](const auto &a, const auto &b) { return a.second < b.second; });
    return best == votes.end() ? fallback : best->first;
}

std::optional<BlockArt> takeApart(const Art &art, const std::vector<std::optional<Box>> &cells,
                                  const std::vector<TableShape> &tables, const LabelStyle &labels)
{
    return Dissection(art, cells, tables, labels).run();
}

std::optional<std::string> artItems(const Art &art, int units, const std::string &indent)
{
    std::string text;
    for (const Shape &shape : art) {
        FlowMapping keys;
        const bool said =
            std::visit([&](const auto &one) { return putShape(one, units, keys); }, shape);
        if (!said) return {};
        text += indent + "- " + keys.text() + "\n";
    }
    return text;
}

} // namespace app::authoring
