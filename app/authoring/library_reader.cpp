#include "app/authoring/library_reader.h"

#include "app/authoring/block_reader.h"
#include "app/authoring/iso_sheets.h"
#include "app/authoring/record_text.h"

#include <fmt/format.h>

#include <algorithm>

namespace app::authoring {

namespace {

constexpr int kFrameLayer = 100;

// A format as written, before its frames are drawn: they depend on the blocks that stand in them.
struct FormatText {
    Format format;
    std::vector<std::string> required;
    std::vector<const IsoSheet *> sheets;
};

class LibraryReader {
public:
    LibraryReader(const std::string &path, const std::string &language)
        : m_file{path, {}}, m_language(language)
    {}

    Library read()
    {
        try {
            readFile(YAML::LoadFile(m_file.path));
        } catch (const YAML::BadFile &) {
            m_file.complaints.push_back({m_file.path, 0, 0, "cannot be opened: check the path"});
        } catch (const YAML::ParserException &broken) {
            m_file.complaints.push_back(
                {m_file.path, broken.mark.line + 1, broken.mark.column + 1, broken.msg});
        }
        if (!m_file.complaints.empty()) throw Complaints(m_file.complaints);
        return std::move(m_library);
    }

private:
    void readFile(const YAML::Node &root)
    {
        Mapping file(m_file, root, "the file");
        m_library.units = file.word("units", {{"mm", 1}, {"in", 2}}).value_or(1);
        Styles styles = readStyles(m_file, file.node("styles"));
        styles.try_emplace("value");
        CellContext context{styles, {}, m_language};
        readLabelStyle(file, context.labels);
        readFormats(file.node("formats"));
        readBlocks(file.node("blocks"), context);
        drawFrames(context.labels.font);
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
            Mapping mapping(m_file, value, "format " + id);
            readFormat(id, mapping);
        }
    }

    void readFormat(const std::string &id, Mapping &mapping)
    {
        FormatText text;
        text.format.id = id;
        SlotValues &slots = text.format.slots;
        if (const auto category = mapping.text("category")) slots.strings["Category"] = *category;
        slots.strings["Description"] = mapping.text("description").value_or("");
        slots.strings["SuiteName"] = mapping.text("suite").value_or("");
        slots.ints["Units"] = m_library.units;
        slots.ints["Obsolete"] =
            mapping.word("obsolete", {{"yes", 1}, {"no", 0}, {"true", 1}, {"false", 0}})
                .value_or(0);
        text.required = mapping.texts("required").value_or(std::vector<std::string>{});
        slots.lists["RequiredBlockIds"] = text.required;

        mapping.require("sheets", "the family of its sheets: sheets: iso");
        mapping.word("sheets", {{"iso", 1}});
        if (m_library.units != 1) mapping.complain("sheets", "the family iso needs units: mm");
        mapping.require("sizes", "a list of sizes: " + isoSheetIds());
        for (const std::string &size :
             mapping.texts("sizes").value_or(std::vector<std::string>{})) {
            if (const IsoSheet *sheet = isoSheet(size))
                text.sheets.push_back(sheet);
            else
                mapping.complain("sizes", fmt::format("\"{}\" is none of {}", size, isoSheetIds()));
        }
        m_formats.push_back(std::move(text));
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

    // Where a required block stands on a sheet, if the file says so.
    void occupy(const FormatText &format, const IsoSheet &sheet, const BlockText &text,
                std::vector<Rectangle> &occupied) const
    {
        for (const BlockLocation &location : text.block.locations) {
            if (location.formatId != format.format.id) continue;
            for (const SizeLocation &size : location.sizes) {
                if (size.sizeId != sheet.id && size.sizeId != "Default") continue;
                const Location &place = size.locations.front();
                ArtPoint low = place.at;
                if (place.offsetType == 2 || place.offsetType == 3) low.x = sheet.width - low.x;
                if (place.offsetType == 1 || place.offsetType == 3) low.y = sheet.height - low.y;
                occupied.push_back({low, {low.x + text.width, low.y + text.height}});
                return;
            }
        }
    }

    void drawFrames(const std::string &font)
    {
        for (FormatText &format : m_formats) {
            for (const IsoSheet *sheet : format.sheets) {
                std::vector<Rectangle> occupied;
                for (const BlockText &text : m_blocks) {
                    if (std::count(format.required.begin(), format.required.end(), text.block.id))
                        occupy(format, *sheet, text, occupied);
                }
                Size size = isoSize(*sheet, kFrameLayer);
                size.frame = isoFrame(*sheet, font, occupied);
                format.format.sizes.push_back(std::move(size));
            }
            m_library.formats.push_back(std::move(format.format));
        }
        for (BlockText &text : m_blocks) m_library.blocks.push_back(std::move(text.block));
    }

    YamlFile m_file;
    std::string m_language;
    std::vector<FormatText> m_formats;
    std::vector<BlockText> m_blocks;
    Library m_library;
};

} // namespace

Library readLibrary(const std::string &path, const std::string &language)
{
    return LibraryReader(path, language).read();
}

} // namespace app::authoring
