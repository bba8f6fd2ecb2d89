#include "app/authoring/block_reader.h"

#include "app/authoring/art_reader.h"
#include "app/authoring/full_keys.h"
#include "app/authoring/record_text.h"
#include "app/authoring/table_reader.h"
#include "app/authoring/words.h"

#include <fmt/format.h>

namespace app::authoring {

namespace {

constexpr int kOutlinePen = 10; // 0.7 mm
constexpr int kCellPen = 8;     // 0.35 mm

class BlockReader {
public:
    BlockReader(YamlFile &file, const std::string &id, const YAML::Node &node,
                const CellContext &context, int units)
        : m_file(file), m_mapping(file, node, "block " + id), m_context(context)
    {
        m_context.where = m_mapping.what();
        m_result.block.id = id;
        m_result.block.slots.ints["Units"] = units;
        m_result.block.slots.origin = m_mapping.origin();
    }

    BlockText read(const std::vector<std::string> &formatIds)
    {
        requireFileName(m_file, m_mapping.origin().at, m_mapping.what(), m_result.block.id);
        readSize();
        readProperties();
        readCells();
        readTables();
        readFullBlockKeys(m_mapping, m_result.block.slots);
        m_result.block.artItems = readArt(m_file, m_mapping.node("art"), m_mapping.what(),
                                          m_context.units, m_result.block.art);
        readPlaces(formatIds);
        return std::move(m_result);
    }

private:
    void readSize()
    {
        m_mapping.require("size", "the block's size: [width, height]");
        if (const auto size = m_mapping.numbers("size", 2, 2)) {
            m_result.width = (*size)[0];
            m_result.height = (*size)[1];
            if (!(m_result.width > 0 && m_result.height > 0))
                m_mapping.complain("size", "width and height must be greater than 0");
            m_result.block.width = m_result.width;
            m_result.block.height = m_result.height;
        }
    }

    void readProperties()
    {
        SlotValues &slots = m_result.block.slots;
        if (const auto category = m_mapping.text("category")) slots.strings["Category"] = *category;
        slots.strings["Description"] = m_mapping.text("description").value_or("");
        slots.strings["DialogName"] = m_mapping.text("dialog").value_or("");
        slots.lists["ExcludeBlockIds"] =
            m_mapping.texts("excludes").value_or(std::vector<std::string>{});
        slots.origins["exclude_block_ids"] = m_mapping.origin("excludes");
        slots.ints["Movable"] = yesOrNo("movable", false);
        slots.ints["CanDelete"] = yesOrNo("can-delete", false);
        slots.ints["PatternLayer"] = kPatternLayer;
        slots.ints["TextLayer"] = kTextLayer;
        if (!m_mapping.has("layers")) return;
        Mapping layers(m_file, m_mapping.node("layers"), m_mapping.what() + ", layers");
        if (const auto layer = layers.integer("pattern")) slots.ints["PatternLayer"] = *layer;
        if (const auto layer = layers.integer("text")) slots.ints["TextLayer"] = *layer;
        slots.origins["pattern_layer"] = layers.origin("pattern");
        slots.origins["text_layer"] = layers.origin("text");
    }

    int yesOrNo(const std::string &key, bool fallback)
    {
        const auto value = m_mapping.word(key, kYesNo);
        return value.value_or(fallback);
    }

    void readCells()
    {
        int outline = kOutlinePen, inner = kCellPen;
        bool drawn = true;
        if (m_mapping.has("lines")) {
            const YAML::Node lines = m_mapping.node("lines");
            drawn = !(lines.IsScalar() && lines.Scalar() == "none");
            if (drawn) {
                Mapping widths(m_file, lines, m_mapping.what() + ", lines");
                outline = readPen(widths, "outline", kOutlinePen);
                inner = readPen(widths, "cells", kCellPen);
            }
        }
        std::vector<Box> boxes;
        Art labels;
        Mapping cells(m_file, m_mapping.node("cells"), m_mapping.what() + ", cells");
        for (const auto &[id, node] : cells.entries()) {
            Cell cell = readCell(m_file, id, node, m_context);
            if (cell.lines) {
                const Box &box = *cell.lines;
                boxes.push_back(box);
                m_result.block.boxes.push_back({box.x, box.y, box.width, box.height, cell.box, id});
            }
            if (cell.label) labels.push_back(*cell.label);
            m_result.block.fields.push_back(std::move(cell.field));
        }
        Art &art = m_result.block.art;
        m_result.block.drawn = drawn;
        m_result.block.cells = m_mapping.origin("cells");
        if (drawn) drawCellLines(art, m_result.width, m_result.height, boxes, outline, inner);
        art.insert(art.end(), labels.begin(), labels.end());
    }

    void readTables()
    {
        if (!m_mapping.has("tables")) return;
        Mapping tables(m_file, m_mapping.node("tables"), m_mapping.what() + ", tables");
        for (const auto &[id, node] : tables.entries()) {
            TableText text = readTable(m_file, id, node, m_context);
            Art &art = m_result.block.art;
            art.insert(art.end(), text.heading.begin(), text.heading.end());
            m_result.block.tables.push_back(std::move(text.table));
        }
    }

    // corner and inset, or a point from the lower left corner.
    Location readPlace(Mapping &place)
    {
        Location location;
        location.name = place.text("name").value_or("Default");
        if (place.has("at") && (place.has("corner") || place.has("inset")))
            place.complain("at", "stands beside corner and inset, which say the same in another "
                                 "way: remove one of them");
        if (const auto at = place.numbers("at", 2, 2)) {
            location.at = {(*at)[0], (*at)[1]};
            return location;
        }
        location.offsetType = place.word("corner", kCorners).value_or(0);
        if (!place.has("corner"))
            place.complain("corner", "is missing: bottom-left, bottom-right, top-left or "
                                     "top-right; or at: [x, y]");
        const auto inset = place.numbers("inset", 2, 2).value_or(std::vector{0.0, 0.0});
        // The stored point is where the block's lower left corner comes, measured from the sheet's corner.
        const bool fromRight = location.offsetType == 2 || location.offsetType == 3;
        const bool fromTop = location.offsetType == 1 || location.offsetType == 3;
        location.at.x = inset[0] + (fromRight ? m_result.width : 0.0);
        location.at.y = inset[1] + (fromTop ? m_result.height : 0.0);
        return location;
    }

    // The place itself and those that can be chosen in its stead.
    std::vector<Location> readChoices(Mapping &place)
    {
        std::vector<Location> choices{readPlace(place)};
        const YAML::Node also = place.node("also");
        if (also.IsDefined() && !also.IsSequence())
            place.complain("also", "must be a list of places, each with a name");
        if (!also.IsSequence()) return choices;
        for (const YAML::Node &one : also) {
            Mapping choice(m_file, one, place.what() + ", also");
            choice.require("name", "by which it is chosen");
            choices.push_back(readPlace(choice));
        }
        return choices;
    }

    void readPlaces(const std::vector<std::string> &formatIds)
    {
        m_mapping.require("place", "where the block stands: place: {corner: ..., inset: [x, y]}");
        const YAML::Node node = m_mapping.node("place");
        if (!node.IsSequence()) {
            readFormatPlaces(node, formatIds);
            return;
        }
        for (const YAML::Node &one : node) readFormatPlaces(one, formatIds);
    }

    void readFormatPlaces(const YAML::Node &node, const std::vector<std::string> &formatIds)
    {
        if (isWholeRecord(node)) {
            BlockLocation location;
            location.whole = readRecord(m_file, node, {"block_location", "block_location_v1"},
                                        m_mapping.what() + ", place");
            m_result.block.locations.push_back(std::move(location));
            return;
        }
        Mapping place(m_file, node, m_mapping.what() + ", place");
        const auto formats = place.texts("formats").value_or(formatIds);
        std::vector<SizeLocation> sizes;
        bool rule = false; // or exceptions alone
        for (const char *key : {"at", "corner", "inset", "name", "also"})
            rule = place.has(key) || rule;
        const auto everywhere = rule ? readChoices(place) : std::vector<Location>();
        for (const std::string &key : place.unasked()) {
            // What holds no place is a key written wrong, not a size: it stays unknown.
            if (!place.holdsMapping(key)) continue;
            Mapping exception(m_file, place.node(key), m_mapping.what() + ", place, " + key);
            sizes.push_back({key, readChoices(exception), place.origin(key)});
        }
        // The first size that matches wins: exceptions stand before the rule.
        if (rule) sizes.push_back({"Default", everywhere, m_mapping.origin("place")});
        if (sizes.empty() && m_mapping.has("place"))
            place.complain("corner", "is missing: corner: bottom-right, inset: [10, 10], or at: "
                                     "[x, y]");
        for (const std::string &format : formats)
            m_result.block.locations.push_back({format, sizes, m_mapping.origin("place"), {}});
    }

    YamlFile &m_file;
    Mapping m_mapping;
    CellContext m_context;
    BlockText m_result;
};

} // namespace

BlockText readBlock(YamlFile &file, const std::string &id, const YAML::Node &node,
                    const CellContext &context, const std::vector<std::string> &formatIds,
                    int units)
{
    if (!isWholeRecord(node)) return BlockReader(file, id, node, context, units).read(formatIds);
    BlockText text;
    text.block.id = id;
    text.block.whole = readRecord(file, node, {"block"}, "block " + id);
    return text;
}

} // namespace app::authoring
