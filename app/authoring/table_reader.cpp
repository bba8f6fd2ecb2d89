#include "app/authoring/table_reader.h"

#include "app/authoring/full_keys.h"
#include "app/authoring/pens.h"
#include "app/authoring/record_text.h"
#include "app/authoring/words.h"

#include <fmt/format.h>

#include <algorithm>
#include <set>

namespace app::authoring {

namespace {

constexpr int kDrawn = 1; // the border policy of a line that is drawn

class TableReader {
public:
    TableReader(YamlFile &file, const std::string &id, const YAML::Node &node,
                const CellContext &context)
        : m_file(file), m_mapping(file, node, context.where + ", table " + id), m_context(context)
    {
        slots().strings["Id"] = id;
        slots().origin = m_mapping.origin();
    }

    TableText read()
    {
        readOrigin();
        readSymbol();
        m_style = namedStyle(m_mapping, m_context);
        m_row = m_mapping.number("row").value_or(2 * m_style.size);
        if (m_row < m_style.size)
            m_mapping.complain("row", "must be at least the size of its text");
        m_borders = borderNames(m_mapping);
        readColumns();
        drawHeading();
        readFullTableKeys(m_mapping, m_result.table.slots);
        return std::move(m_result);
    }

private:
    SlotValues &slots() { return m_result.table.slots; }

    void readOrigin()
    {
        m_mapping.require("at",
                          "where the first row starts: at: [x, y], its upper left corner when "
                          "rows grow down, its lower left one when they grow up");
        if (const auto at = m_mapping.numbers("at", 2, 2)) m_at = {(*at)[0], (*at)[1]};
        slots().doubles["LocationX"] = m_at.x;
        slots().doubles["LocationY"] = m_at.y;
        slots().origins["direction"] = m_mapping.origin("direction");
        slots().origins["location_x"] = slots().origins["location_y"] = m_mapping.origin("at");
        m_mapping.require("direction", "which way rows grow: direction: up or down");
        m_direction = m_mapping.word("direction", kDirections).value_or(kDown);
        slots().ints["Direction"] = m_direction;
        if (const auto list = m_mapping.text("entry-list"))
            slots().strings["EntryListString"] = *list;
    }

    void readSymbol()
    {
        if (!m_mapping.has("symbol")) return;
        Mapping symbol(m_file, m_mapping.node("symbol"), m_mapping.what() + ", symbol");
        SlotValues &s = slots();
        s.ints["SymbolType"] = symbol.word("type", kSymbols).value_or(UF_DRF_sym_circle);
        s.ints["SymbolIdType"] = symbol.integer("id-type").value_or(0);
        s.ints["SymbolColor"] = symbol.integer("color").value_or(7);
        s.ints["SymbolLayer"] = symbol.integer("layer").value_or(102);
        s.doubles["SymbolSize"] = symbol.number("size").value_or(0.0);
        s.doubles["SymbolTextSize"] = symbol.number("text-size").value_or(m_context.labels.size);
        s.doubles["SymbolTextAspect"] = symbol.number("aspect").value_or(1.0);
        s.strings["SymbolFontName"] = symbol.text("font").value_or(m_context.labels.font);
        for (const auto &[key, slot] :
             {std::pair{"color", "symbol_color"}, std::pair{"layer", "symbol_layer"},
              std::pair{"font", "symbol_font_name"}})
            s.origins[slot] = symbol.origin(key);
        const auto lines = symbol.texts("lines").value_or(std::vector<std::string>{});
        if (lines.size() > 2) symbol.complain("lines", "a symbol has one or two lines");
        if (!lines.empty()) s.strings["Symbol1Value"] = lines[0];
        if (lines.size() > 1) s.strings["Symbol2Value"] = lines[1];
    }

    void readColumns()
    {
        m_mapping.require("columns", "the fields of a row, from left to right");
        Mapping columns(m_file, m_mapping.node("columns"), m_mapping.what() + ", columns");
        for (const auto &[id, node] : columns.entries()) readColumn(id, node);
    }

    void readColumn(const std::string &id, const YAML::Node &node)
    {
        if (isWholeRecord(node)) {
            readWholeColumn(id, node);
            return;
        }
        Mapping column(m_file, node, m_mapping.what() + ", column " + id);
        column.require("width", "how wide it is");
        const double width = column.number("width").value_or(1.0);
        if (width <= 0) column.complain("width", "must be greater than 0");
        Style style = column.has("style") ? styleOf(column, m_context) : m_style;
        if (!column.has("style")) readStyle(column, style);

        Field field;
        field.slots.origin = column.origin();
        field.slots.origins["width"] = column.origin("width");
        field.slots.strings["Id"] = id;
        field.characters = charactersOf(column);
        if (column.has("characters"))
            field.slots.origins["characters"] = column.origin("characters");
        field.slots.ints["Multiline"] = column.word("several-lines", kYesNo).value_or(0);
        field.slots.ints["ZoneField"] = column.word("zone", kYesNo).value_or(0);
        placeText(width, style, field.slots);
        dressText(width, style, field.slots);
        sourceOf(column, field.slots);
        sharing(column, field.slots);
        const auto numbered = column.word("share-rows", {{"one", 0}, {"numbered", 1}});
        field.slots.ints["BroadcastTableType"] = numbered.value_or(0);
        readBorders(column, field.slots);
        readFullFieldKeys(column, field.slots);
        m_labels.push_back({labelText(column, m_context), m_width, width});
        if (!m_labels.back().text.empty())
            field.label = {
                m_labels.back().text,  m_context.labels.size, m_context.labels.font, width, {},
                column.origin("label")};
        m_result.table.fields.push_back(std::move(field));
        m_width += width;
    }

    // It takes the room that its record says, and has no label.
    void readWholeColumn(const std::string &id, const YAML::Node &node)
    {
        Field field;
        field.whole = readRecord(m_file, node, {"field"}, m_mapping.what() + ", column " + id);
        if (field.whole) {
            m_labels.push_back({"", m_width, field.whole->real("width")});
            m_width += field.whole->real("width");
        }
        m_result.table.fields.push_back(std::move(field));
    }

    // The box of a row hangs below its base when rows grow down and stands on it when they grow up, and
    // the text starts at the base: sites at the top for the one, at the bottom for the other.
    void placeText(double width, const Style &style, SlotValues &s) const
    {
        const int column = (style.site - 1) % 3;
        s.ints["TextSite"] = (m_direction == kDown ? 1 : 7) + column;
        s.ints["TextJustification"] = column + 1;
        s.doubles["LocationX"] = m_width;
        s.doubles["LocationY"] = 0.0;
        s.doubles["Width"] = width;
        s.doubles["Height"] = m_row;
        s.doubles["MarginWidth"] = style.marginWidth;
        s.doubles["MarginHeight"] = std::max(0.0, (m_row - style.size) / 2);
    }

    // Names of the lines as they are seen. With rows that grow up, the segment that is stored as the
    // bottom one is the upper one.
    void readBorders(Mapping &column, SlotValues &s)
    {
        for (const std::string &name : column.has("borders") ? borderNames(column) : m_borders) {
            if (name == "left")
                s.ints["LeftBorderPolicy"] = kDrawn;
            else if (name == "right")
                s.ints["RightBorderPolicy"] = kDrawn;
            else if (name == "middle")
                s.ints["MiddleBorderPolicy"] = kDrawn;
            else if (name != "none")
                s.ints[(name == "bottom") == (m_direction == kDown) ? "BottomBorderPolicy"
                                                                    : "TopBorderPolicy"] = kDrawn;
        }
    }

    // Of the table for all its columns, or of one column.
    static std::vector<std::string> borderNames(Mapping &mapping)
    {
        static const std::set<std::string> known{"left",   "right",  "top",
                                                 "bottom", "middle", "none"};
        std::vector<std::string> names;
        for (const std::string &name :
             mapping.texts("borders").value_or(std::vector<std::string>{})) {
            if (known.contains(name))
                names.push_back(name);
            else
                mapping.complain("borders", fmt::format("\"{}\" is none of left, right, top, "
                                                        "bottom, middle, none",
                                                        name));
        }
        return names;
    }

    void line(ArtPoint from, ArtPoint to)
    {
        m_result.heading.push_back(ArtLine{from, to, kRowPen});
    }

    // As wide as the borders of rows: above the first row when rows grow down, below it when they grow up.
    void drawHeading()
    {
        const double height = m_mapping.number("heading").value_or(0.0);
        m_result.table.heading = height;
        m_result.table.headingLabels = m_context.labels.size;
        m_result.table.headingOrigin = m_mapping.origin("heading");
        if (height <= 0) return;
        const double low = m_direction == kDown ? m_at.y : m_at.y - height;
        const double high = low + height, right = m_at.x + m_width;
        line({m_at.x, low}, {right, low});
        line({m_at.x, high}, {right, high});
        line({m_at.x, low}, {m_at.x, high});
        for (const Label &label : m_labels) {
            const double x = m_at.x + label.x;
            line({x + label.width, low}, {x + label.width, high});
            if (!label.text.empty())
                m_result.heading.push_back(ArtText{label.text,
                                                   {x + label.width / 2, (low + high) / 2},
                                                   5,
                                                   m_context.labels.size,
                                                   m_context.labels.font,
                                                   1.0,
                                                   0.0,
                                                   m_mapping.origin("heading")});
        }
    }

    struct Label {
        std::string text;
        double x;
        double width;
    };

    YamlFile &m_file;
    Mapping m_mapping;
    const CellContext &m_context;
    TableText m_result;
    ArtPoint m_at;
    int m_direction = kDown;
    Style m_style;
    double m_row = 0.0;
    double m_width = 0.0; // of the columns so far
    std::vector<std::string> m_borders;
    std::vector<Label> m_labels;
};

} // namespace

TableText readTable(YamlFile &file, const std::string &id, const YAML::Node &node,
                    const CellContext &context)
{
    if (!isWholeRecord(node)) return TableReader(file, id, node, context).read();
    TableText text;
    text.table.whole = readRecord(file, node, {"table"}, context.where + ", table " + id);
    return text;
}

} // namespace app::authoring
