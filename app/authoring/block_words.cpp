#include "app/authoring/block_words.h"

#include "app/authoring/field_words.h"
#include "app/authoring/pens.h"
#include "app/authoring/record_text.h"
#include "app/authoring/scalars.h"
#include "app/authoring/table_words.h"
#include "app/authoring/words.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <set>
#include <sstream>

namespace app::authoring {

namespace {

class BlockText {
public:
    BlockText(Fold &block, const std::optional<Art> &art, const BlockWords &words)
        : m_block(block), m_record(*block.record), m_art(art), m_words(words),
          m_fields(block.childrenOf("field")), m_tables(block.childrenOf("table"))
    {
        for (Fold *field : m_fields)
            m_cells.push_back(field->whole ? std::nullopt : cellOf(*field->record));
    }

    std::string write()
    {
        for (std::size_t i = 0; i < m_fields.size(); ++i)
            if (!m_cells[i]) m_fields[i]->whole = true;
        takeArtApart();
        measure();
        properties();
        places();
        if (m_parts.lines)
            line("lines", FlowMapping(lineWidths()).text());
        else
            line("lines", "none");
        artLines();
        cells();
        tables();
        return std::move(m_text);
    }

private:
    void line(const std::string &key, const std::string &value)
    {
        m_text += "    " + key + ":" + (value.empty() ? "" : " ") + value + "\n";
    }

    void takeArtApart()
    {
        m_parts.cells.resize(m_cells.size());
        m_parts.tables.resize(m_tables.size());
        if (!m_art) m_block.plan = kByName;
        if (m_block.plan == kByName) {
            if (!m_record.text("pattern_name").empty())
                m_block.slots.emplace("pattern_name", quoted(m_record.text("pattern_name")));
            return;
        }
        std::optional<BlockArt> parts;
        if (m_block.plan == 0) {
            std::vector<TableShape> shapes;
            for (const Fold *table : m_tables) shapes.push_back(shapeOf(*table->record));
            parts = takeApart(*m_art, m_cells, shapes, m_words.labels);
            if (parts && parts->lines &&
                (!widthOfPen(parts->outlinePen) || !widthOfPen(parts->cellPen)))
                parts.reset();
        }
        if (parts)
            m_parts = std::move(*parts);
        else
            m_parts.rest = *m_art;
    }

    // The outline's; without one what the fields and the art take up, so that no place is far off.
    void measure()
    {
        double right = m_parts.width, top = m_parts.height;
        if (!(right > 0 && top > 0)) {
            for (const auto &cell : m_cells) {
                if (!cell) continue;
                right = std::max(right, cell->x + cell->width);
                top = std::max(top, cell->y + cell->height);
            }
            for (const Fold *table : m_tables) {
                const TableShape shape = shapeOf(*table->record);
                right = std::max(right, shape.at.x);
                top = std::max(top, shape.at.y);
                for (const RecordTree *column : table->record->childrenOf("field"))
                    right = std::max(right, shape.at.x + column->real("location_x") +
                                                column->real("width"));
            }
            // The headings of tables, too.
            for (const Shape &shape : m_art ? *m_art : Art()) {
                const auto *drawn = std::get_if<ArtLine>(&shape);
                if (!drawn) continue;
                right = std::max(right, std::max(drawn->from.x, drawn->to.x));
                top = std::max(top, std::max(drawn->from.y, drawn->to.y));
            }
        }
        m_width = std::isfinite(right) && right > 0 ? right : 1.0;
        m_height = std::isfinite(top) && top > 0 ? top : 1.0;
    }

    void properties()
    {
        line("size", flowList(std::vector{m_width, m_height}));
        const auto text = [&](const char *key, const char *slot) {
            if (!m_record.text(slot).empty()) line(key, quoted(m_record.text(slot)));
        };
        text("description", "description");
        if (std::any_of(m_record.attributes.begin(), m_record.attributes.end(),
                        [](const auto &one) { return one.first == "CATEGORY"; }))
            line("category", quoted(m_record.text("category")));
        text("dialog", "dialog_name");
        if (const auto ids = m_record.texts("exclude_block_ids"); !ids.empty())
            line("excludes", flowList(ids));
        if (m_record.integer("movable") == 1) line("movable", "yes");
        if (m_record.integer("can_delete") == 1) line("can-delete", "yes");
        FlowMapping layers;
        const auto layer = [&](const char *key, const char *slot, int usual) {
            if (m_record.integer(slot) != usual)
                layers.put(key, std::to_string(m_record.integer(slot)));
        };
        layer("pattern", "pattern_layer", kPatternLayer);
        layer("text", "text_layer", kTextLayer);
        if (!layers.empty()) line("layers", layers.text());
        for (const auto &[key, value] : m_block.slots) line(key, value);
    }

    FlowMapping lineWidths() const
    {
        FlowMapping widths;
        widths.putNumber("outline", *widthOfPen(m_parts.outlinePen));
        widths.putNumber("cells", *widthOfPen(m_parts.cellPen));
        return widths;
    }

    // --- places ---------------------------------------------------------------------------------

    bool putPlace(const RecordTree &place, FlowMapping &keys) const
    {
        const auto corner = wordOf(kCorners, place.integer("offset_type"));
        if (!corner) return false;
        const bool right = corner->ends_with("right"), top = corner->starts_with("top");
        const auto x = addendOf(place.real("x"), right ? m_width : 0.0);
        const auto y = addendOf(place.real("y"), top ? m_height : 0.0);
        if (!x || !y || !std::isfinite(*x) || !std::isfinite(*y)) return false;
        if (place.text("name") != "Default") keys.putText("name", place.text("name"));
        keys.put("corner", *corner);
        keys.put("inset", flowList(std::vector{*x, *y}));
        return true;
    }

    bool putChoices(const RecordTree &size, FlowMapping &keys) const
    {
        const auto places = size.childrenOf("location");
        if (places.empty() || !putPlace(*places[0], keys)) return false;
        std::string also;
        for (std::size_t i = 1; i < places.size(); ++i) {
            FlowMapping other;
            // A name is asked for there, the usual one too.
            if (places[i]->text("name") == "Default") other.putText("name", "Default");
            if (!putPlace(*places[i], other)) return false;
            also += (also.empty() ? "" : ", ") + other.text();
        }
        if (!also.empty()) keys.put("also", "[" + also + "]");
        return true;
    }

    // All but its format; empty when the cell form cannot say it.
    std::optional<FlowMapping> placesOf(const RecordTree &location) const
    {
        FlowMapping keys, exceptions;
        const auto sizes = location.childrenOf("size_location");
        static const std::set<std::string> words{"formats", "at",   "corner",
                                                 "inset",   "name", "also"};
        std::set<std::string> seen;
        for (const RecordTree *size : sizes) {
            const std::string id = size->text("size_id");
            if (!seen.insert(id).second) return {};
            if (id == "Default") {
                if (size != sizes.back() || !putChoices(*size, keys)) return {};
                continue;
            }
            FlowMapping exception;
            const std::string key = quoted(id);
            if (id.empty() || key.starts_with('!') || words.contains(id) ||
                !putChoices(*size, exception))
                return {};
            exceptions.put(key, exception.text());
        }
        if (sizes.empty()) return {};
        for (const auto &[key, value] : exceptions.entries()) keys.put(key, value);
        return keys;
    }

    // A whole record, with its dash under those of the short items.
    static std::string placeItem(const RecordTree &location)
    {
        const int depth = 2, tooDeep = 4 * depth - 6;
        std::string text;
        std::istringstream lines(recordToText(location, depth));
        for (std::string line; std::getline(lines, line);) text += line.substr(tooDeep) + "\n";
        return text;
    }

    // Neighbours with the same places are told together.
    void places()
    {
        std::vector<Fold *> locations;
        for (Fold &child : m_block.children)
            if (child.record->kind->word.starts_with("block_location")) locations.push_back(&child);
        std::vector<std::pair<std::vector<std::string>, std::string>> groups; // formats, places
        std::vector<std::string> items;
        const auto flush = [&] {
            for (const auto &[formats, text] : groups) {
                FlowMapping keys;
                keys.put("formats", formats.size() == 1 ? quoted(formats[0]) : flowList(formats));
                std::string all = keys.text();
                all.pop_back();
                items.push_back("      - " + all + ", " + text.substr(1) + "\n");
            }
            groups.clear();
        };
        for (Fold *location : locations) {
            const auto keys = location->whole || location->record->kind->word != "block_location"
                                  ? std::nullopt
                                  : placesOf(*location->record);
            if (!keys) {
                location->whole = true;
                flush();
                items.push_back(placeItem(*location->record));
                continue;
            }
            const std::string format = location->record->text("format_id");
            if (groups.empty() || groups.back().second != keys->text())
                groups.push_back({{}, keys->text()});
            groups.back().first.push_back(format);
        }
        flush();
        line("place", items.empty() ? "[]" : "");
        for (const std::string &item : items) m_text += item;
    }

    // --- what stands in it ----------------------------------------------------------------------

    void artLines()
    {
        if (m_parts.rest.empty()) return;
        const auto items = artItems(m_parts.rest, m_words.units, "      ");
        if (items) {
            line("art", "");
            m_text += *items;
            return;
        }
        m_block.plan = kByName; // a pen or the like that has no word
    }

    void cells()
    {
        line("cells", m_fields.empty() ? "{}" : "");
        std::set<std::string> taken;
        for (std::size_t i = 0; i < m_fields.size(); ++i) {
            Fold &field = *m_fields[i];
            const std::string key = keyOf(field, taken);
            if (field.whole) {
                m_text += "      " + key + ":\n" + wholeText(*field.record, 2);
                continue;
            }
            FlowMapping keys;
            const Box &box = *m_cells[i];
            keys.put("cell", flowList(std::vector{box.x, box.y, box.width, box.height}));
            putArtWords(i, keys);
            if (field.record->integer("multiline") == 1)
                keys.put("rows", std::to_string(std::max<std::size_t>(
                                     2, field.record->texts("default_string").size())));
            putFieldWords(field, m_words.styles, m_words.units, false, keys);
            m_text += "      " + key + ": " + keys.text() + "\n";
        }
    }

    void putArtWords(std::size_t i, FlowMapping &keys) const
    {
        const CellArt &art = m_parts.cells[i];
        const Box &box = *m_cells[i];
        if (m_parts.lines) {
            if (!art.lines)
                keys.put("box", "none");
            else if (art.lines->x != box.x || art.lines->y != box.y ||
                     art.lines->width != box.width || art.lines->height != box.height)
                keys.put("box", flowList(std::vector{art.lines->x, art.lines->y, art.lines->width,
                                                     art.lines->height}));
        }
        if (art.label) keys.putText("label", *art.label);
        if (art.labelInset) keys.put("label-inset", flowList(*art.labelInset));
    }

    void tables()
    {
        if (m_tables.empty()) return;
        line("tables", "");
        std::set<std::string> taken;
        for (std::size_t i = 0; i < m_tables.size(); ++i)
            m_text += tableText(*m_tables[i], keyOf(*m_tables[i], taken), m_parts.tables[i],
                                m_words.styles, m_words.labels, m_words.units);
    }

    Fold &m_block;
    const RecordTree &m_record;
    const std::optional<Art> &m_art;
    const BlockWords &m_words;
    std::vector<Fold *> m_fields;
    std::vector<Fold *> m_tables;
    std::vector<std::optional<Box>> m_cells;
    BlockArt m_parts;
    double m_width = 0.0, m_height = 0.0;
    std::string m_text;
};

} // namespace

std::string wholeText(const RecordTree &record, int depth)
{
    std::string text = recordToText(record, depth);
    text.replace(text.find('-'), 1, " "); // the first one begins a list's element
    return text;
}

std::string blockText(Fold &block, const std::string &key, const std::optional<Art> &art,
                      const BlockWords &words)
{
    const std::string head = "  " + key + ":\n";
    if (block.whole) return head + wholeText(*block.record, 1);
    return head + BlockText(block, art, words).write();
}

} // namespace app::authoring
