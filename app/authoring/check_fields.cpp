#include "app/authoring/check_fields.h"

#include "app/authoring/check_labels.h"
#include "app/authoring/stored_order.h"
#include "app/authoring/words.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <set>
#include <utility>

namespace app::authoring {

namespace {

constexpr int kHighestLayer = 256;
constexpr int kHighestColor = 216;
constexpr double kSame = 1e-6;

std::size_t letters(const std::string &text) // characters of UTF-8
{
    return static_cast<std::size_t>(std::count_if(text.begin(), text.end(), [](char c) {
        return (static_cast<unsigned char>(c) & 0xc0) != 0x80;
    }));
}

// As a value is drawn whose first line has that many letters.
TextLook lookOf(const RecordTree &field, std::size_t length)
{
    TextLook look{field.text("text_font_name"), field.real("text_size"), field.real("text_aspect"),
                  field.real("char_space_factor"), field.real("line_space")};
    const auto longer = [&](const char *key) {
        const int most = field.integer(key);
        return most > 0 && length > static_cast<std::size_t>(most);
    };
    if (longer("alt_text_size_num_chars") && field.real("alt_text_size") != 0.0)
        look.size = field.real("alt_text_size");
    if (longer("alt_text_aspect_num_chars") && field.real("alt_text_aspect") != 0.0)
        look.aspect = field.real("alt_text_aspect");
    return look;
}

// What the box leaves to a text: from side to side, from top to bottom. One that starts at a margin has
// the rest of the box, one in the middle all of it.
TextExtent roomOf(const RecordTree &field, bool row)
{
    const int site = field.integer("text_site");
    const bool centred = site % 3 == 2, middle = site >= 4 && site <= 6;
    const double width = field.real("width"), height = field.real("height");
    return {width > 0 ? width - (centred ? 0.0 : field.real("margin_width")) : HUGE_VAL,
            !row && height > 0 ? height - (middle ? 0.0 : field.real("margin_height")) : HUGE_VAL};
}

// "it needs 61.2 of 56 from side to side"; empty when it fits.
std::string excess(const TextExtent &text, const TextExtent &room)
{
    std::string found;
    if (text.width > room.width + kSame)
        found = fmt::format("it needs {:.4g} of {:.4g} from side to side", text.width, room.width);
    if (text.height > room.height + kSame)
        found += fmt::format("{}{:.4g} of {:.4g} from top to bottom",
                             found.empty() ? "it needs " : " and ", text.height, room.height);
    return found;
}

class FieldCheck {
public:
    FieldCheck(const RecordTree &field, const Field *text, bool row, const std::string &where,
               TextRuler &ruler, Findings &findings)
        : m_field(field), m_text(text), m_row(row), m_where(where), m_ruler(ruler),
          m_findings(findings)
    {}

    void run()
    {
        if (m_text && !m_text->whole) checkLabel(*m_text, m_field, m_where, m_ruler, m_findings);
        checkColor(m_field, "text_color", m_where, m_findings);
        checkColor(m_field, "border_color", m_where, m_findings);
        checkFont(m_field, "text_font_name", m_where, m_ruler, m_findings);
        if (!(m_field.real("text_size") > 0)) {
            find("text_size", "must be greater than 0");
            return;
        }
        if (!(m_field.real("text_aspect") > 0)) {
            find("text_aspect", "must be greater than 0");
            return;
        }
        defaultText();
        recommendedLength();
    }

private:
    void find(const char *slot, const std::string &text)
    {
        m_findings.add(m_where, m_field, slot, text);
    }

    void defaultText()
    {
        if (m_field.integer("default_type") != kOwnText) return;
        const auto lines = m_field.texts("default_string");
        if (lines.empty() || (lines.size() == 1 && lines[0].empty())) return;
        if (lines.size() > 1 && m_field.integer("multiline") == 0)
            find("default_string", "the text has several lines and the field one: give it rows");
        const std::string over = excess(m_ruler.measure(lines, lookOf(m_field, letters(lines[0]))),
                                        roomOf(m_field, m_row));
        if (over.empty()) return;
        find("default_string",
             fmt::format("the text \"{}\" does not fit: {}; shorten it, make it smaller or "
                         "give the cell more room",
                         lines[0] + (lines.size() > 1 ? "..." : ""), over));
    }

    void recommendedLength()
    {
        if (!m_text || m_text->characters <= 0) return;
        const auto length = static_cast<std::size_t>(m_text->characters);
        const std::string over =
            excess(m_ruler.measure(m_text->characters, m_text->rows, lookOf(m_field, length)),
                   roomOf(m_field, m_row));
        if (over.empty()) return;
        find("characters",
             fmt::format("{} characters of average width do not fit: {}; widen the cell, choose a "
                         "smaller size or too-long: narrow",
                         length, over));
    }

    const RecordTree &m_field;
    const Field *m_text;
    bool m_row;
    const std::string &m_where;
    TextRuler &m_ruler;
    Findings &m_findings;
};

// One row of a table: its box begins at the row's base, hangs below it when rows grow down and stands on
// it when they grow up, and is as high as the highest field with its margins.
class RowCheck {
public:
    RowCheck(const RecordTree &table, const std::string &where, TextRuler &ruler,
             Findings &findings)
        : m_down(table.integer("direction") == kDown), m_where(where), m_ruler(ruler),
          m_findings(findings), m_fields(table.childrenOf("field"))
    {
        for (const RecordTree *field : m_fields)
            m_height = std::max(m_height, textHeight(*field) + 2 * field->real("margin_height"));
    }

    void run()
    {
        for (const RecordTree *field : m_fields) {
            const std::string here = m_where + ", " + identityOf(*field);
            if (field->integer("relative_offset_type") != 0) {
                m_findings.add(here, *field, "relative_offset_type",
                               "counts from the sheet: every row's text would stand at one point; "
                               "use 0");
                continue;
            }
            text(*field, here);
            borders(*field, here);
        }
        columns();
    }

private:
    struct Span {
        double low, high;
    };

    Span rowSpan() const { return m_down ? Span{-m_height, 0.0} : Span{0.0, m_height}; }

    double textHeight(const RecordTree &field) const
    {
        auto lines = field.texts("default_string");
        if (lines.empty() || field.integer("default_type") != kOwnText) lines = {"X"};
        return m_ruler.measure(lines, lookOf(field, letters(lines[0]))).height;
    }

    // Where the text stands, from the row's base.
    Span textSpan(const RecordTree &field) const
    {
        const double height = textHeight(field), y = field.real("location_y");
        const double margin = field.real("width") != 0.0 ? field.real("margin_height") : 0.0;
        const int site = field.integer("text_site");
        if (site >= 1 && site <= 3) return {y - margin - height, y - margin};
        if (site >= 7 && site <= 9) return {y + margin, y + margin + height};
        // A middle site is half the text and a margin above the base, and a first note, which is placed
        // before it has a height, the margin alone.
        return {y + margin - height / 2, y + margin + height};
    }

    void text(const RecordTree &field, const std::string &where)
    {
        const Span span = textSpan(field), row = rowSpan();
        if (span.low >= row.low - kSame && span.high <= row.high + kSame) return;
        m_findings.add(where, field, "text_site",
                       fmt::format("the text leaves its row: it stands from {:.4g} to {:.4g} of a "
                                   "row from {:.4g} to {:.4g}; rows that grow {} need a site of {} "
                                   "and a location_y of 0",
                                   span.low, span.high, row.low, row.high, m_down ? "down" : "up",
                                   m_down ? "1 to 3" : "7 to 9"));
    }

    void borders(const RecordTree &field, const std::string &where)
    {
        bool drawn = false;
        for (const char *side : {"bottom", "left", "middle", "right", "top"}) {
            const int policy = field.integer(std::string(side) + "_border_policy");
            drawn = drawn || policy == 1 || policy == 4;
        }
        if (!drawn || std::abs(field.real("location_y")) <= kSame) return;
        m_findings.add(where, field, "location_y",
                       fmt::format("the borders leave their row: they begin {:.4g} {} its base; "
                                   "use 0",
                                   std::abs(field.real("location_y")),
                                   field.real("location_y") > 0 ? "above" : "below"));
    }

    // Fields of one row stand side by side.
    void columns()
    {
        for (std::size_t i = 0; i < m_fields.size(); ++i) {
            for (std::size_t k = i + 1; k < m_fields.size(); ++k) {
                const RecordTree &a = *m_fields[i], &b = *m_fields[k];
                const double left = std::max(a.real("location_x"), b.real("location_x"));
                const double right = std::min(a.real("location_x") + a.real("width"),
                                              b.real("location_x") + b.real("width"));
                if (right - left <= kSame) continue;
                m_findings.add(
                    m_where + ", " + identityOf(b), b, "width",
                    fmt::format("overlaps the column {} by {:.4g}", a.text("id"), right - left));
            }
        }
    }

    bool m_down;
    const std::string &m_where;
    TextRuler &m_ruler;
    Findings &m_findings;
    std::vector<const RecordTree *> m_fields;
    double m_height = 0.0;
};

// Columns that reach out of the block at its sides.
void checkInside(const RecordTree &table, const FieldBox &extent, const std::string &where,
                 Findings &findings)
{
    for (const RecordTree *column : table.childrenOf("field")) {
        const double left = table.real("location_x") + column->real("location_x");
        const double right = left + column->real("width");
        if (left > extent.x - kSame && right < extent.x + extent.width + kSame) continue;
        findings.add(where + ", " + identityOf(*column), *column, "width",
                     fmt::format("the column stands from {:.6g} to {:.6g}, and its block from "
                                 "{:.6g} to {:.6g}: make it narrower, or widen the block",
                                 left, right, extent.x, extent.x + extent.width));
    }
}

void checkHeadingInside(const RecordTree &table, const Table &text, const FieldBox &extent,
                        const std::string &where, Findings &findings)
{
    if (text.heading <= 0) return;
    const double base = table.real("location_y");
    const bool down = table.integer("direction") == kDown;
    const double low = down ? base : base - text.heading;
    if (low > extent.y - kSame && low + text.heading < extent.y + extent.height + kSame) return;
    findings.add(where, text.headingOrigin,
                 fmt::format("stands from {:.6g} to {:.6g}, and the block from {:.6g} to {:.6g}: "
                             "rows begin {} it; move at, or make the block higher",
                             low, low + text.heading, extent.y, extent.y + extent.height,
                             down ? "below" : "above"));
}

// With rows that grow up the segment that is stored as the bottom one is the upper one, which the words
// of `borders` know and a slot that is named does not.
void checkUpperBorder(const RecordTree &table, const Field &text, const RecordTree &field,
                      const std::string &where, Findings &findings)
{
    if (table.integer("direction") == kDown || text.whole) return;
    for (const auto &[slot, drawn] :
         {std::pair{"bottom_border_policy", "upper"}, std::pair{"top_border_policy", "lower"}})
        if (text.slots.origins.contains(slot) && field.integer(slot) == 1)
            findings.add(where + ", " + identityOf(field), field, slot,
                         fmt::format("draws the {} line, since rows grow up: write borders: [{}], "
                                     "or the other slot",
                                     drawn, drawn == std::string("upper") ? "top" : "bottom"));
}

} // namespace

FieldBox boxOf(const RecordTree &field)
{
    const int site = field.integer("text_site");
    FieldBox box{field.real("location_x"), field.real("location_y"), field.real("width"),
                 field.real("height")};
    if (site >= 1 && site <= 3) box.y -= box.height;
    return box;
}

bool overlap(const FieldBox &a, const FieldBox &b)
{
    return a.x + kSame < b.x + b.width && b.x + kSame < a.x + a.width &&
           a.y + kSame < b.y + b.height && b.y + kSame < a.y + a.height;
}

void checkLayer(const RecordTree &record, const std::string &slot, const std::string &where,
                Findings &findings)
{
    const int layer = record.integer(slot);
    if (layer < 1 || layer > kHighestLayer)
        findings.add(where, record, slot,
                     fmt::format("is {}: layers are 1 to {}", layer, kHighestLayer));
}

void checkColor(const RecordTree &record, const std::string &slot, const std::string &where,
                Findings &findings)
{
    const int color = record.integer(slot);
    if (color < 0 || color > kHighestColor)
        findings.add(where, record, slot,
                     fmt::format("is {}: colours are 0 to {}", color, kHighestColor));
}

void checkFont(const RecordTree &record, const std::string &slot, const std::string &where,
               TextRuler &ruler, Findings &findings)
{
    const std::string font = record.text(slot);
    if (font.empty())
        findings.add(where, record, slot, "names no font: write osifont");
    else if (!ruler.knowsFont(font))
        findings.add(where, record, slot,
                     fmt::format("the font \"{}\" is missing: texts would not be drawn as "
                                 "meant; write osifont",
                                 font));
}

void checkField(const RecordTree &field, const Field *text, bool row, const std::string &where,
                TextRuler &ruler, Findings &findings)
{
    FieldCheck(field, text, row, where, ruler, findings).run();
}

void checkTable(const RecordTree &table, const Table *text, const std::optional<FieldBox> &extent,
                const std::string &where, TextRuler &ruler, Findings &findings)
{
    const auto fields = table.childrenOf("field");
    if (fields.empty())
        findings.add(where, table, "columns", "has no field: its rows have no height; add columns");
    if (table.integer("symbol_type") != 0) {
        checkLayer(table, "symbol_layer", where, findings);
        checkColor(table, "symbol_color", where, findings);
        checkFont(table, "symbol_font_name", where, ruler, findings);
    }
    for (std::size_t i = 0; i < fields.size(); ++i)
        checkField(*fields[i], text && i < text->fields.size() ? &text->fields[i] : nullptr, true,
                   where + ", " + identityOf(*fields[i]), ruler, findings);
    RowCheck(table, where, ruler, findings).run();
    if (extent) checkInside(table, *extent, where, findings);
    if (!text) return;
    checkHeading(*text, where, findings);
    if (extent) checkHeadingInside(table, *text, *extent, where, findings);
    for (std::size_t i = 0; i < std::min(fields.size(), text->fields.size()); ++i)
        checkUpperBorder(table, text->fields[i], *fields[i], where, findings);
}

} // namespace app::authoring
