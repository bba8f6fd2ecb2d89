#include "app/authoring/check.h"

#include "app/authoring/check_blocks.h"
#include "app/authoring/check_fields.h"
#include "app/authoring/check_layout.h"
#include "app/authoring/check_places.h"
#include "app/authoring/check_records.h"
#include "app/authoring/record_builder.h"
#include "app/authoring/stored_order.h"

#include <fmt/format.h>

#include <algorithm>
#include <map>
#include <set>

namespace app::authoring {

namespace {

class Check {
public:
    explicit Check(const std::vector<CheckedFile> &files) : m_files(files) {}

    std::vector<Complaint> run()
    {
        collect();
        for (const CheckedFile &file : m_files) {
            m_file = &file;
            m_findings.inFile(file.name);
            for (const RecordTree &record : file.records) {
                checkRecord(record, identityOf(record), record.integer("units"), m_findings);
                if (record.kind->word == "format") checkFormat(record);
                if (record.kind->word == "block") checkBlock(record);
            }
            if (file.library) checkText(*file.library);
        }
        checkLayout(m_layoutFormats, m_layoutBlocks, m_findings);
        return m_findings.take();
    }

private:
    void find(const std::string &where, const RecordTree &record, const std::string &slot,
              const std::string &text)
    {
        m_findings.add(where, record, slot, text);
    }

    // The ids of all files: what one names may stand in another.
    void collect()
    {
        std::map<std::string, std::string> owners; // identity -> file
        for (const CheckedFile &file : m_files) {
            m_findings.inFile(file.name);
            for (const RecordTree &record : file.records) {
                const std::string &word = record.kind->word;
                if (word != "format" && word != "block") {
                    find(identityOf(record), record, "kind",
                         "belongs to no format and no block: nothing uses it");
                    continue;
                }
                if (record.text("id").empty())
                    find(word, record, "id",
                         "is missing: without it the definitions cannot be loaded");
                const auto [known, fresh] = owners.try_emplace(identityOf(record), file.name);
                if (!fresh)
                    find(identityOf(record), record, "id",
                         fmt::format("stands in {} already: the first one found counts; rename "
                                     "one of them",
                                     known->second));
                if (word == "block")
                    m_blocks.try_emplace(record.text("id"), &record);
                else
                    m_formats.push_back(&record);
            }
        }
    }

    // --- formats --------------------------------------------------------------------------------

    void checkFormat(const RecordTree &format)
    {
        const std::string where = identityOf(format);
        if (format.childrenOf("size").empty())
            find(where, format, "sizes", "are missing: no sheet can have it");
        checkUnique(format, "size", where);
        for (const std::string &id : format.texts("required_block_ids"))
            if (!m_blocks.contains(id))
                find(where, format, "required_block_ids",
                     fmt::format("the block \"{}\" is in none of the files: define it, or name "
                                 "the file that does too",
                                 id));
        for (const RecordTree *size : format.childrenOf("size"))
            checkSize(*size, where + ", " + identityOf(*size));
        m_layoutFormats.push_back({&format, [this, file = m_file](const RecordTree &size) {
                                       return frameOf(*file, size);
                                   }});
    }

    // As the text draws it, or of a part as its pattern does.
    std::optional<Art> frameOf(const CheckedFile &file, const RecordTree &size) const
    {
        const std::string name = size.text("frame_name");
        if (name.empty()) return {};
        if (file.library)
            for (const Format &format : file.library->formats)
                for (const Size &one : format.sizes)
                    if (!one.whole && authoring::frameOf(format, one, file.library->units) == name)
                        return one.frame;
        return file.artOf ? file.artOf(name) : std::nullopt;
    }

    void checkSize(const RecordTree &size, const std::string &where)
    {
        checkPattern(size, "frame_name", where);
        checkLayer(size, "frame_layer", where, m_findings);
        if (size.integer("ug_size_code") == 0 &&
            (!(size.real("height") > 0) || !(size.real("length") > 0)))
            find(where, size, "ug_size_code",
                 "is 0 and height and length are not given: sheet: [width, height]");
    }

    // --- blocks ---------------------------------------------------------------------------------

    void checkBlock(const RecordTree &block)
    {
        const std::string where = identityOf(block);
        checkPattern(block, "pattern_name", where);
        checkLayer(block, "pattern_layer", where, m_findings);
        checkLayer(block, "text_layer", where, m_findings);
        checkUnique(block, "field", where);
        checkUnique(block, "table", where);
        for (const std::string &id : block.texts("exclude_block_ids"))
            if (!id.empty() && !m_blocks.contains(id))
                find(where, block, "exclude_block_ids",
                     fmt::format("the block \"{}\" is in none of the files: define it, or name "
                                 "the file that does too",
                                 id));
        checkPlaces(block, m_formats, where, m_findings);
        const auto extent = extentOf(block);
        checkCells(block, extent, where, m_findings);
        m_layoutBlocks.push_back({m_file->name, &block, extent});

        const Block *text = textOf(block);
        const auto fields = block.childrenOf("field"), tables = block.childrenOf("table");
        for (std::size_t i = 0; i < fields.size(); ++i)
            checkField(*fields[i], text && i < text->fields.size() ? &text->fields[i] : nullptr,
                       false, where + ", " + identityOf(*fields[i]), m_ruler, m_findings);
        for (std::size_t i = 0; i < tables.size(); ++i) {
            checkUnique(*tables[i], "field", where + ", " + identityOf(*tables[i]));
            checkTable(*tables[i], text && i < text->tables.size() ? &text->tables[i] : nullptr,
                       extent, where + ", " + identityOf(*tables[i]), m_ruler, m_findings);
        }
    }

    // The block of the cell form that the record was made of.
    const Block *textOf(const RecordTree &block) const
    {
        if (!m_file->library) return nullptr;
        for (const Block &one : m_file->library->blocks)
            if (!one.whole && one.id == block.text("id")) return &one;
        return nullptr;
    }

    // As the text says; of a part what its pattern's lines take up.
    std::optional<FieldBox> extentOf(const RecordTree &block) const
    {
        if (const Block *text = textOf(block)) return FieldBox{0.0, 0.0, text->width, text->height};
        const std::string pattern = block.text("pattern_name");
        if (pattern.empty() || !m_file->artOf) return {};
        const auto art = m_file->artOf(pattern);
        return art ? linesExtent(*art) : std::nullopt;
    }

    void checkUnique(const RecordTree &record, const std::string &word, const std::string &where)
    {
        std::set<std::string> seen;
        for (const RecordTree *child : record.childrenOf(word))
            if (!seen.insert(child->text("id")).second)
                find(where + ", " + identityOf(*child), *child, "id",
                     fmt::format("stands here twice: the first {} counts; rename one of them",
                                 word));
    }

    void checkPattern(const RecordTree &record, const std::string &slot, const std::string &where)
    {
        const std::string pattern = record.text(slot);
        if (m_file->hasPattern && !pattern.empty() && !m_file->hasPattern(pattern))
            find(where, record, slot,
                 fmt::format("the pattern \"{}\" is missing: no lines would be drawn; put {}.prt "
                             "into the folder patterns",
                             pattern, pattern));
    }

    // --- what only a text says --------------------------------------------------------------------

    void checkText(const Library &library)
    {
        for (const Format &format : library.formats)
            for (const Size &size : format.sizes)
                checkArt(size.frame, "format " + format.id, m_ruler, m_findings);
        for (const Block &block : library.blocks) {
            checkArt(block.art, "block " + block.id, m_ruler, m_findings);
            checkOwnArt(block, m_ruler, m_findings);
            checkTiling(block, m_findings);
        }
    }

    const std::vector<CheckedFile> &m_files;
    const CheckedFile *m_file = nullptr;
    TextRuler m_ruler;
    std::map<std::string, const RecordTree *> m_blocks;
    std::vector<const RecordTree *> m_formats;
    std::vector<LaidOutFormat> m_layoutFormats;
    std::vector<LaidOutBlock> m_layoutBlocks;
    Findings m_findings;
};

} // namespace

std::vector<Complaint> checkDefinitions(const std::vector<CheckedFile> &files)
{
    return Check(files).run();
}

} // namespace app::authoring
