#include "app/authoring/library_reader.h"

#include "app/authoring/art_reader.h"
#include "app/authoring/block_reader.h"
#include "app/authoring/full_keys.h"
#include "app/authoring/record_text.h"
#include "app/authoring/sheet_family.h"
#include "app/authoring/words.h"
#include "app/authoring/yaml_errors.h"
#include "app/text_file.h"

#include <fmt/format.h>

namespace app::authoring {

namespace {

// A format as written, before its frames are drawn: they depend on the blocks that stand in them.
struct FormatText {
    Format format;
    std::vector<std::string> required;
    std::vector<Sheet> sheets;
};

class LibraryReader {
public:
    LibraryReader(const std::string &path, const std::string &language)
        : m_file{path, {}}, m_language(language)
    {}

    Library read(const std::string &text)
    {
        try {
            const std::vector<YAML::Node> documents = YAML::LoadAll(text);
            readFile(documents.empty() ? YAML::Node() : documents[0]);
            if (documents.size() > 1)
                m_file.complain(documents[1], "", "",
                                "a second document begins above: what follows a line of --- would "
                                "not be read; remove that line, or make it a file of its own");
        } catch (const YAML::ParserException &broken) {
            m_file.complaints.push_back(syntaxComplaint(m_file.path, text, broken));
        }
        if (!m_file.complaints.empty()) throw Complaints(m_file.complaints);
        return std::move(m_library);
    }

private:
    void readFile(const YAML::Node &root)
    {
        Mapping file(m_file, root, "the file");
        if (!file.has("formats") && !file.has("blocks") && !file.has("records"))
            m_file.complain("defines nothing: write units, formats and blocks, or start from an "
                            "example with 'qelfmt init FOLDER'");
        m_library.units = file.word("units", {{"mm", 1}, {"in", 2}}).value_or(1);
        Styles styles = readStyles(m_file, file.node("styles"), m_library.units);
        styles.try_emplace("value", plainStyle(m_library.units));
        CellContext context{styles, plainLabels(m_library.units), m_language, m_library.units, {}};
        readLabelStyle(file, context.labels);
        m_font = context.labels.font;
        readFormats(file.node("formats"));
        readBlocks(file.node("blocks"), context);
        drawFrames();
        if (file.has("records")) m_library.records = readRecords(m_file, file.node("records"));
    }

    void readLabelStyle(Mapping &file, LabelStyle &style)
    {
        if (!file.has("labels")) return;
        Mapping labels(m_file, file.node("labels"), "labels");
        style.size = labels.number("size").value_or(style.size);
        style.font = labels.text("font").value_or(style.font);
        if (const auto inset = labels.numbers("inset", 2, 2)) {
            style.fromLeft = (*inset)[0];
            style.fromTop = (*inset)[1];
        }
    }

    void readFormats(const YAML::Node &node)
    {
        if (!node.IsDefined()) return;
        Mapping formats(m_file, node, "formats");
        for (const auto &[id, value] : formats.entries()) {
            if (isWholeRecord(value)) {
                FormatText text;
                text.format.id = id;
                text.format.whole = readRecord(m_file, value, {"format"}, "format " + id);
                m_formats.push_back(std::move(text));
                continue;
            }
            Mapping mapping(m_file, value, "format " + id);
            readFormat(id, mapping);
        }
    }

    void readFormat(const std::string &id, Mapping &mapping)
    {
        FormatText text;
        requireFileName(m_file, mapping.origin().at, mapping.what(), id);
        text.format.id = id;
        SlotValues &slots = text.format.slots;
        slots.origin = mapping.origin();
        if (const auto category = mapping.text("category")) slots.strings["Category"] = *category;
        slots.strings["Description"] = mapping.text("description").value_or("");
        slots.strings["SuiteName"] = mapping.text("suite").value_or("");
        slots.ints["Units"] = m_library.units;
        slots.ints["Obsolete"] = mapping.word("obsolete", kYesNo).value_or(0);
        text.required = mapping.texts("required").value_or(std::vector<std::string>{});
        slots.lists["RequiredBlockIds"] = text.required;
        slots.origins["required_block_ids"] = mapping.origin("required");

        readFullFormatKeys(mapping, slots);
        readSizes(mapping, text);
        readSuites(mapping, text);
        m_formats.push_back(std::move(text));
    }

    void readSizes(Mapping &mapping, FormatText &text)
    {
        const auto family = mapping.word("sheets", {{"iso", static_cast<int>(SheetFamily::iso)},
                                                    {"asme", static_cast<int>(SheetFamily::asme)}});
        if (family && familyUnits(static_cast<SheetFamily>(*family)) != m_library.units)
            mapping.complain("sheets", *family == static_cast<int>(SheetFamily::iso)
                                           ? "the family iso needs units: mm"
                                           : "the family asme needs units: in");
        mapping.require("sizes", "a list of sizes of the family, and of sizes of its own as "
                                 "NAME: {sheet: [width, height], frame: [...]}");
        const YAML::Node list = mapping.node("sizes");
        if (list.IsDefined() && !list.IsSequence()) mapping.complain("sizes", "must be a list");
        if (!list.IsSequence()) return;
        for (const YAML::Node &one : list) {
            if (one.IsMap())
                for (const auto &own : one)
                    text.sheets.push_back(
                        readOwnSize(mapping.what(), own.first.Scalar(), own.second));
            else
                readFamilySize(mapping, family, one, text);
        }
    }

    void readFamilySize(Mapping &mapping, std::optional<int> family, const YAML::Node &node,
                        FormatText &text)
    {
        const std::string id = node.IsScalar() ? node.Scalar() : "";
        if (!family) {
            if (!mapping.has("sheets"))
                m_file.complain(
                    node, mapping.what(), "sizes",
                    fmt::format("\"{}\" is of no family: add sheets: iso or sheets: asme", id));
            return;
        }
        const auto which = static_cast<SheetFamily>(*family);
        if (auto sheet = familySheet(which, id, m_font)) {
            sheet->size.slots.origin = {"sizes", markOf(node)};
            text.sheets.push_back(std::move(*sheet));
        } else {
            m_file.complain(node, mapping.what(), "sizes",
                            fmt::format("\"{}\" is none of {}", id, familyIds(which)));
        }
    }

    // A size of no family: its sheet, its frame as art, its zones.
    Sheet readOwnSize(const std::string &format, const std::string &id, const YAML::Node &node)
    {
        Sheet sheet;
        Size &size = sheet.size;
        if (isWholeRecord(node)) {
            size.slots.strings["Id"] = id;
            size.whole = readRecord(m_file, node, {"size"}, format + ", size " + id);
            sheet.frame = [](const auto &) { return Art(); };
            return sheet;
        }
        Mapping mapping(m_file, node, format + ", size " + id);
        requireFileName(m_file, mapping.origin().at, mapping.what(), id);
        size.slots.origin = mapping.origin();
        mapping.require("sheet", "its size: sheet: [width, height]");
        const auto extent = mapping.numbers("sheet", 2, 2).value_or(std::vector{1.0, 1.0});
        size.width = extent[0];
        size.height = extent[1];
        size.slots.strings = {{"Id", id},
                              {"Label", mapping.text("label").value_or(id)},
                              {"Description", mapping.text("description").value_or("")}};
        size.slots.doubles = {{"Height", size.height}, {"Length", size.width}};
        size.slots.ints = {{"FrameLayer", kFrameLayer}, {"UgSizeCode", 0}};
        readZones(mapping, size.slots);
        readFullSizeKeys(mapping, size.slots);
        Art art;
        readArt(m_file, mapping.node("frame"), mapping.what() + ", frame", m_library.units, art);
        sheet.frame = [art](const auto &) { return art; };
        return sheet;
    }

    void readZones(Mapping &mapping, SlotValues &slots)
    {
        if (!mapping.has("zones")) return;
        Mapping zones(m_file, mapping.node("zones"), mapping.what() + ", zones");
        slots.ints["NumberHorzZones"] = zones.integer("columns").value_or(0);
        slots.ints["NumberVertZones"] = zones.integer("rows").value_or(0);
        slots.doubles["HorzZoneLength"] = zones.number("width").value_or(0.0);
        slots.doubles["VertZoneLength"] = zones.number("height").value_or(0.0);
        slots.doubles["RightOffset"] = zones.number("right-offset").value_or(0.0);
        slots.ints["HorzZoneType"] = zones.word("column-labels", kZoneLabels).value_or(2);
        slots.ints["VertZoneType"] = zones.word("row-labels", kZoneLabels).value_or(1);
    }

    // NAME: [sizes], so that a place can be given for several sizes at once.
    void readSuites(Mapping &mapping, FormatText &text)
    {
        if (!mapping.has("suites")) return;
        Mapping suites(m_file, mapping.node("suites"), mapping.what() + ", suites");
        for (const auto &[name, node] : suites.entries()) {
            for (const std::string &id : suites.texts(name).value_or(std::vector<std::string>{})) {
                bool found = false;
                for (Sheet &sheet : text.sheets) {
                    if (sheet.size.slots.strings.at("Id") != id) continue;
                    sheet.size.slots.strings["SuiteName"] = name;
                    found = true;
                }
                if (!found)
                    suites.complain(name, fmt::format("\"{}\" is no size of the format", id));
            }
        }
    }

    void readBlocks(const YAML::Node &node, const CellContext &context)
    {
        if (!node.IsDefined()) return;
        std::vector<std::string> ids;
        for (const FormatText &format : m_formats) ids.push_back(format.format.id);
        Mapping blocks(m_file, node, "blocks");
        for (const auto &[id, value] : blocks.entries())
            m_blocks.push_back(readBlock(m_file, id, value, context, ids, m_library.units));
    }

    // Where a block stands on a sheet, if the file says so.
    void occupy(const Format &format, const Size &sheet, const BlockText &text,
                std::vector<Rectangle> &occupied) const
    {
        const auto named = [](const SlotValues &slots, const char *name) {
            const auto found = slots.strings.find(name);
            return found == slots.strings.end() ? std::string() : found->second;
        };
        const std::string suite = named(format.slots, "SuiteName"), id = named(sheet.slots, "Id");
        const std::string sizeSuite = named(sheet.slots, "SuiteName");
        for (const BlockLocation &location : text.block.locations) {
            if (location.formatId != format.id && (suite.empty() || location.formatId != suite))
                continue;
            for (const SizeLocation &size : location.sizes) {
                if (size.sizeId != id && size.sizeId != "Default" &&
                    (sizeSuite.empty() || size.sizeId != sizeSuite))
                    continue;
                const Location &place = size.locations.front();
                ArtPoint low = place.at;
                if (place.offsetType == 2 || place.offsetType == 3) low.x = sheet.width - low.x;
                if (place.offsetType == 1 || place.offsetType == 3) low.y = sheet.height - low.y;
                occupied.push_back({low, {low.x + text.width, low.y + text.height}});
                return;
            }
        }
    }

    void drawFrames()
    {
        for (FormatText &format : m_formats) {
            for (Sheet &sheet : format.sheets) {
                std::vector<Rectangle> occupied;
                for (const BlockText &text : m_blocks)
                    occupy(format.format, sheet.size, text, occupied);
                sheet.size.frame = sheet.frame(occupied);
                format.format.sizes.push_back(std::move(sheet.size));
            }
            m_library.formats.push_back(std::move(format.format));
        }
        for (BlockText &text : m_blocks) m_library.blocks.push_back(std::move(text.block));
    }

    YamlFile m_file;
    std::string m_language;
    std::string m_font; // of grid labels
    std::vector<FormatText> m_formats;
    std::vector<BlockText> m_blocks;
    Library m_library;
};

} // namespace

Library readLibrary(const std::string &path, const std::string &language)
{
    std::string why;
    const auto text = readTextFile(path, why);
    if (!text) throw Complaints({{path, {}, "", "", why}});
    return parseLibrary(*text, path, language);
}

Library parseLibrary(const std::string &text, const std::string &name, const std::string &language)
{
    return LibraryReader(name, language).read(text);
}

} // namespace app::authoring
