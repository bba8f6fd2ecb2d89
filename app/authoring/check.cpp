#include "app/authoring/check.h"

#include "app/authoring/stored_order.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <map>
#include <set>

namespace app::authoring {

namespace {

constexpr int kHighestLayer = 256;
constexpr int kHighestColor = 216;
constexpr double kSame = 1e-6;
constexpr double kLetterWidth = 0.8; // of the height

struct FieldBox {
    double x, y, width, height;
};

// The box of a field from where its text stands in it.
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

std::size_t letters(const std::string &text) // characters of UTF-8
{
    return static_cast<std::size_t>(std::count_if(text.begin(), text.end(), [](char c) {
        return (static_cast<unsigned char>(c) & 0xc0) != 0x80;
    }));
}

class Check {
public:
    explicit Check(const std::vector<CheckedFile> &files) : m_files(files) {}

    std::vector<Finding> run()
    {
        collect();
        for (const CheckedFile &file : m_files) {
            m_file = &file;
            for (const RecordTree &record : file.records) {
                if (record.kind->word == "format") checkFormat(record);
                if (record.kind->word == "block") checkBlock(record);
            }
            if (file.library)
                for (const Block &block : file.library->blocks) checkTiling(block);
        }
        return std::move(m_findings);
    }

private:
    void find(const std::string &where, const std::string &text)
    {
        m_findings.push_back({m_file->name, where, text});
    }

    void collect()
    {
        std::map<std::string, std::string> owners; // identity -> file
        for (const CheckedFile &file : m_files) {
            m_file = &file;
            for (const RecordTree &record : file.records) {
                const std::string &word = record.kind->word;
                if (word != "format" && word != "block") {
                    find(identityOf(record), "belongs to no format and no block: nothing uses it");
                    continue;
                }
                if (record.text("id").empty())
                    find(word, "has no id: the definitions cannot be loaded");
                const auto [known, fresh] = owners.try_emplace(identityOf(record), file.name);
                if (!fresh)
                    find(identityOf(record),
                         fmt::format("stands in {} already: the first one found counts",
                                     known->second));
                if (word == "block")
                    m_blocks.try_emplace(record.text("id"), &record);
                else
                    m_formats.push_back(&record);
            }
        }
    }

    void checkFormat(const RecordTree &format)
    {
        const std::string where = identityOf(format);
        if (format.childrenOf("size").empty()) find(where, "has no size");
        checkUnique(format, "size", where);
        for (const std::string &id : format.texts("required_block_ids")) {
            const auto block = m_blocks.find(id);
            if (block == m_blocks.end()) {
                find(where,
                     fmt::format("requires the block \"{}\", which is in none of the files", id));
                continue;
            }
            for (const RecordTree *size : format.childrenOf("size"))
                if (!hasPlace(*block->second, format, *size))
                    find(where, fmt::format("requires the block {}, which has no place on size {}",
                                            id, size->text("id")));
        }
        for (const RecordTree *size : format.childrenOf("size")) {
            checkPattern(where + ", " + identityOf(*size), size->text("frame_name"));
            checkLayer(where + ", " + identityOf(*size), *size, "frame_layer");
            if (size->integer("ug_size_code") == 0 &&
                (!(size->real("height") > 0) || !(size->real("length") > 0)))
                find(where + ", " + identityOf(*size),
                     "has neither a size code nor height and length");
        }
    }

    static bool inSuite(const RecordTree &format, const std::string &name)
    {
        if (name == "Default" || name == format.text("id")) return true;
        if (name.empty()) return false;
        if (name == format.text("suite_name")) return true;
        for (const RecordTree *size : format.childrenOf("size"))
            if (name == size->text("suite_name")) return true;
        return false;
    }

    static bool fitsSize(const std::string &name, const RecordTree &format, const RecordTree &size)
    {
        const std::string suite = size.text("suite_name");
        return name == "Default" || name == size.text("id") ||
               (!name.empty() && name == (suite.empty() ? format.text("suite_name") : suite));
    }

    // The first location that is for the format decides.
    static bool hasPlace(const RecordTree &block, const RecordTree &format, const RecordTree &size)
    {
        for (const RecordTree &location : block.children) {
            const std::string &word = location.kind->word;
            if (word != "block_location" && word != "block_location_v1") continue;
            if (!inSuite(format, location.text("format_id"))) continue;
            if (word == "block_location_v1") {
                const auto names = location.texts("size_names");
                return std::any_of(names.begin(), names.end(), [&](const std::string &name) {
                    return fitsSize(name, format, size);
                });
            }
            for (const RecordTree *one : location.childrenOf("size_location"))
                if (fitsSize(one->text("size_id"), format, size))
                    return !one->childrenOf("location").empty();
            return false;
        }
        return false;
    }

    void checkBlock(const RecordTree &block)
    {
        const std::string where = identityOf(block);
        checkPattern(where, block.text("pattern_name"));
        checkLayer(where, block, "pattern_layer");
        checkLayer(where, block, "text_layer");
        checkUnique(block, "field", where);
        checkUnique(block, "table", where);
        for (const std::string &id : block.texts("exclude_block_ids"))
            if (!id.empty() && !m_blocks.contains(id))
                find(where,
                     fmt::format("excludes the block \"{}\", which is in none of the files", id));
        checkPlaces(block, where);
        checkOverlaps(block, where);
        for (const RecordTree *field : block.childrenOf("field"))
            checkField(*field, where + ", " + identityOf(*field));
        for (const RecordTree *table : block.childrenOf("table"))
            checkTable(*table, where + ", " + identityOf(*table));
    }

    void checkUnique(const RecordTree &record, const std::string &word, const std::string &where)
    {
        std::set<std::string> seen;
        for (const RecordTree *child : record.childrenOf(word))
            if (!seen.insert(child->text("id")).second)
                find(where, fmt::format("has two {}s \"{}\": the first one counts", word,
                                        child->text("id")));
    }

    void checkPlaces(const RecordTree &block, const std::string &where)
    {
        bool any = false;
        for (const RecordTree &location : block.children) {
            const std::string &word = location.kind->word;
            if (word != "block_location" && word != "block_location_v1") continue;
            any = true;
            const std::string id = location.text("format_id");
            if (std::none_of(m_formats.begin(), m_formats.end(),
                             [&](const RecordTree *format) { return inSuite(*format, id); }))
                find(where,
                     fmt::format("has a place for \"{}\", which is no format and no suite", id));
            if (word == "block_location")
                checkHiddenSizes(location, where + ", " + identityOf(location));
        }
        if (!any) find(where, "has no place on any format: it cannot be placed");
    }

    void checkHiddenSizes(const RecordTree &location, const std::string &where)
    {
        bool all = false;
        for (const RecordTree *size : location.childrenOf("size_location")) {
            if (all)
                find(where,
                     fmt::format("the places for \"{}\" stand behind those for Default, which "
                                 "always fit: they are never used",
                                 size->text("size_id")));
            all = all || size->text("size_id") == "Default";
        }
    }

    void checkOverlaps(const RecordTree &block, const std::string &where)
    {
        const auto fields = block.childrenOf("field");
        for (std::size_t i = 0; i < fields.size(); ++i)
            for (std::size_t k = i + 1; k < fields.size(); ++k)
                if (fields[i]->integer("relative_offset_type") == 0 &&
                    fields[k]->integer("relative_offset_type") == 0 &&
                    overlap(boxOf(*fields[i]), boxOf(*fields[k])))
                    find(where, fmt::format("the fields {} and {} overlap", fields[i]->text("id"),
                                            fields[k]->text("id")));
    }

    void checkField(const RecordTree &field, const std::string &where)
    {
        for (const char *key : {"text_color", "border_color"})
            if (field.integer(key) < 0 || field.integer(key) > kHighestColor)
                find(where, fmt::format("{} is {}: colours are 0 to {}", key, field.integer(key),
                                        kHighestColor));
        if (!(field.real("text_size") > 0)) find(where, "text_size must be greater than 0");
        if (field.text("text_font_name").empty()) find(where, "text_font_name names no font");
        const double width = field.real("width") - 2 * field.real("margin_width");
        if (field.integer("default_type") != 0 || !(field.real("width") > 0)) return;
        const auto lines = field.texts("default_string");
        for (const std::string &line : lines)
            if (lengthOf(line, field) > width + kSame)
                find(where,
                     fmt::format("the default text \"{}\" does not fit: it needs {:.4g} of {:.4g}",
                                 line, lengthOf(line, field), width));
        if (lines.size() > 1 && field.integer("multiline") == 0)
            find(where, "the default text has several lines and multiline is 0");
    }

    // With the size and aspect that a line of that length gets.
    static double lengthOf(const std::string &line, const RecordTree &field)
    {
        const auto longer = [&](const char *key) {
            const int most = field.integer(key);
            return most > 0 && letters(line) > static_cast<std::size_t>(most);
        };
        double size = field.real("text_size"), aspect = field.real("text_aspect");
        if (longer("alt_text_size_num_chars") && field.real("alt_text_size") > 0)
            size = field.real("alt_text_size");
        if (longer("alt_text_aspect_num_chars") && field.real("alt_text_aspect") > 0)
            aspect = field.real("alt_text_aspect");
        return kLetterWidth * size * aspect * static_cast<double>(letters(line));
    }

    // Rows hang below their base with direction 0 and stand on it with any other.
    void checkTable(const RecordTree &table, const std::string &where)
    {
        const bool down = table.integer("direction") == 0;
        checkUnique(table, "field", where);
        if (table.childrenOf("field").empty()) find(where, "has no field: its rows have no height");
        if (table.integer("symbol_type") != 0) checkLayer(where, table, "symbol_layer");
        for (const RecordTree *field : table.childrenOf("field")) {
            const int site = field->integer("text_site");
            const bool atTop = site >= 1 && site <= 3, atBottom = site >= 7 && site <= 9;
            const std::string here = where + ", " + identityOf(*field);
            if (down ? !atTop : !atBottom)
                find(here,
                     fmt::format("text_site {} puts the text out of its row: rows that grow {} "
                                 "need a site of {}",
                                 site, down ? "down" : "up", down ? "1 to 3" : "7 to 9"));
            checkField(*field, here);
        }
    }

    void checkPattern(const std::string &where, const std::string &pattern)
    {
        if (m_file->hasPattern && !pattern.empty() && !m_file->hasPattern(pattern))
            find(where, fmt::format("the pattern \"{}\" is not in the folder patterns", pattern));
    }

    void checkLayer(const std::string &where, const RecordTree &record, const std::string &key)
    {
        const int layer = record.integer(key);
        if (layer < 1 || layer > kHighestLayer)
            find(where, fmt::format("{} is {}: layers are 1 to {}", key, layer, kHighestLayer));
    }

    // Cells with lines of their own fill the block, once.
    void checkTiling(const Block &block)
    {
        double area = 0.0;
        for (const BlockBox &box : block.boxes) {
            area += box.width * box.height;
            if (box.x < -kSame || box.y < -kSame || box.x + box.width > block.width + kSame ||
                box.y + box.height > block.height + kSame)
                find("block " + block.id,
                     fmt::format("the cell [{}, {}, {}, {}] leaves the block, which is {} x {}",
                                 box.x, box.y, box.width, box.height, block.width, block.height));
        }
        const double whole = block.width * block.height;
        if (block.boxes.size() > 1 && std::abs(area - whole) > kSame * whole)
            find("block " + block.id,
                 fmt::format("the cells do not tile the block: they cover {:.6g} "
                             "of {:.6g}",
                             area, whole));
    }

    const std::vector<CheckedFile> &m_files;
    const CheckedFile *m_file = nullptr;
    std::map<std::string, const RecordTree *> m_blocks;
    std::vector<const RecordTree *> m_formats;
    std::vector<Finding> m_findings;
};

} // namespace

std::vector<Finding> checkDefinitions(const std::vector<CheckedFile> &files)
{
    return Check(files).run();
}

} // namespace app::authoring
