#include "app/authoring/table_words.h"

#include "app/authoring/block_words.h"
#include "app/authoring/field_words.h"
#include "app/authoring/scalars.h"
#include "app/authoring/words.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <set>

namespace app::authoring {

namespace {

constexpr int kDrawn = 1; // the border policy of a line that is drawn

// As they are seen: with rows that grow up, the segment that is stored as the bottom one is the upper.
std::vector<std::string> bordersOf(const RecordTree &field, bool down)
{
    std::vector<std::string> borders;
    const auto add = [&](const char *key, const char *name) {
        if (field.integer(key) == kDrawn) borders.emplace_back(name);
    };
    add("left_border_policy", "left");
    add("right_border_policy", "right");
    add("top_border_policy", down ? "top" : "bottom");
    add("bottom_border_policy", down ? "bottom" : "top");
    add("middle_border_policy", "middle");
    return borders;
}

bool canBeColumn(const RecordTree &field)
{
    return field.real("width") > 0 && std::isfinite(field.real("width"));
}

class TableText {
public:
    TableText(Fold &table, const TableArt &art, const StyleBook &styles, const LabelStyle &labels,
              int units)
        : m_table(table), m_record(*table.record), m_art(art), m_styles(styles), m_labels(labels),
          m_units(units), m_fields(table.childrenOf("field"))
    {}

    std::string write()
    {
        for (Fold *field : m_fields) field->whole = field->whole || !canBeColumn(*field->record);
        line("at", flowList(std::vector{m_record.real("location_x"), m_record.real("location_y")}));
        const bool down = m_record.integer("direction") == kDown;
        line("direction", down ? "down" : "up");
        if (m_art.heading > 0) line("heading", realText(m_art.heading));
        line("row", realText(rowHeight()));
        const auto borders = commonBorders();
        if (!borders.empty()) line("borders", flowList(borders));
        symbol();
        if (!m_record.text("entry_list_string").empty())
            line("entry-list", quoted(m_record.text("entry_list_string")));
        for (const auto &[key, value] : m_table.slots) line(key, value);
        columns(borders, down);
        return std::move(m_text);
    }

private:
    void line(const std::string &key, const std::string &value)
    {
        m_text += "        " + key + ":" + (value.empty() ? "" : " ") + value + "\n";
    }

    // Of the first column: others name their own.
    double rowHeight() const
    {
        const double least = m_styles.value().size;
        for (const Fold *field : m_fields) {
            const double height = field->record->real("height");
            if (!field->whole && height >= least && std::isfinite(height)) return height;
        }
        return 2 * least;
    }

    std::vector<std::string> commonBorders() const
    {
        const bool down = m_record.integer("direction") == kDown;
        for (const Fold *field : m_fields)
            if (!field->whole) return bordersOf(*field->record, down);
        return {};
    }

    void symbol()
    {
        const RecordTree &r = m_record;
        const auto type = wordOf(kSymbols, r.integer("symbol_type"));
        if (!type) return; // none, or one that only its number names
        FlowMapping keys;
        keys.put("type", *type);
        std::vector<std::string> lines{r.text("symbol1_value"), r.text("symbol2_value")};
        if (lines[1].empty()) lines.pop_back();
        if (!lines[0].empty() || lines.size() > 1) keys.put("lines", flowList(lines));
        const auto number = [&](const char *key, const char *slot, double usual) {
            if (r.real(slot) != usual && std::isfinite(r.real(slot)))
                keys.putNumber(key, r.real(slot));
        };
        const auto integer = [&](const char *key, const char *slot, int usual) {
            if (r.integer(slot) != usual) keys.put(key, std::to_string(r.integer(slot)));
        };
        integer("id-type", "symbol_id_type", 0);
        integer("color", "symbol_color", 7);
        integer("layer", "symbol_layer", kTextLayer);
        number("size", "symbol_size", 0.0);
        number("text-size", "symbol_text_size", m_labels.size);
        number("aspect", "symbol_text_aspect", 1.0);
        if (r.text("symbol_font_name") != m_labels.font)
            keys.putText("font", r.text("symbol_font_name"));
        line("symbol", keys.text());
    }

    void columns(const std::vector<std::string> &borders, bool down)
    {
        line("columns", m_fields.empty() ? "{}" : "");
        std::set<std::string> taken;
        for (std::size_t i = 0; i < m_fields.size(); ++i) {
            const Fold &field = *m_fields[i];
            const std::string key = keyOf(field, taken);
            if (field.whole) {
                m_text += "          " + key + ":\n" + wholeText(*field.record, 3);
                continue;
            }
            FlowMapping keys;
            keys.putNumber("width", field.record->real("width"));
            if (i < m_art.labels.size() && !m_art.labels[i].empty())
                keys.putText("label", m_art.labels[i]);
            if (const auto own = bordersOf(*field.record, down); own != borders)
                keys.put("borders", own.empty() ? "none" : flowList(own));
            if (field.record->integer("zone_field") == 1) keys.put("zone", "yes");
            if (field.record->integer("multiline") == 1) keys.put("several-lines", "yes");
            if (field.record->integer("broadcast_table_type") == 1)
                keys.put("share-rows", "numbered");
            putFieldWords(field, m_styles, m_units, true, keys);
            m_text += "          " + key + ": " + keys.text() + "\n";
        }
    }

    Fold &m_table;
    const RecordTree &m_record;
    const TableArt &m_art;
    const StyleBook &m_styles;
    const LabelStyle &m_labels;
    int m_units;
    std::vector<Fold *> m_fields;
    std::string m_text;
};

} // namespace

TableShape shapeOf(const RecordTree &table)
{
    return {{table.real("location_x"), table.real("location_y")},
            table.integer("direction") == kDown ? kDown : kUp,
            table.childrenOf("field").size()};
}

std::string tableText(Fold &table, const std::string &key, const TableArt &art,
                      const StyleBook &styles, const LabelStyle &labels, int units)
{
    const bool placeable = std::isfinite(table.record->real("location_x")) &&
                           std::isfinite(table.record->real("location_y"));
    table.whole = table.whole || !placeable;
    const std::string head = "      " + key + ":\n";
    if (table.whole) return head + wholeText(*table.record, 2);
    return head + TableText(table, art, styles, labels, units).write();
}

} // namespace app::authoring
