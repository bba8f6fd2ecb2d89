#include "app/authoring/cells_text.h"

#include "app/authoring/block_words.h"
#include "app/authoring/field_words.h"
#include "app/authoring/library_reader.h"
#include "app/authoring/pattern_writer.h"
#include "app/authoring/record_builder.h"
#include "app/authoring/record_text.h"
#include "app/authoring/scalars.h"
#include "app/authoring/table_words.h"

#include <fmt/format.h>

#include <map>
#include <set>

namespace app::authoring {

namespace {

// Each try names more slots or falls back one step; no record needs more of them than this.
constexpr int kMostTries = 16;

class CellsText {
public:
    CellsText(const RecordFile &file, const PatternArt &patterns)
        : m_file(file), m_patterns(patterns)
    {
        for (const RecordTree &record : file.records) m_folds.emplace_back(record);
        split();
        gather();
    }

    std::string write()
    {
        for (int i = 0; i < kMostTries; ++i) {
            const std::string text = compose();
            bool changed = false;
            const auto back = recordsOf(parseLibrary(text, "text"));
            for (std::size_t k = 0; k < m_folds.size(); ++k)
                changed = refine(m_folds[k], back[k]) || changed;
            if (!changed) return text;
        }
        for (Fold &fold : m_folds) fold.whole = true;
        return compose();
    }

private:
    // The cell form writes formats, then blocks. What stands behind those in another order, and what
    // belongs to none, follows under `records:`.
    void split()
    {
        const auto runOf = [&](const char *word, std::set<std::string> &taken) {
            while (m_end < m_folds.size() && m_folds[m_end].record->kind->word == word) {
                const std::string id = m_folds[m_end].record->text("id");
                if (id.empty() || !taken.insert(id).second) return;
                ++m_end;
            }
        };
        std::set<std::string> formats, blocks;
        runOf("format", formats);
        m_blocks = m_end;
        if (m_end == m_folds.size() || m_folds[m_end].record->kind->word == "block")
            runOf("block", blocks);
    }

    std::optional<Art> artOf(const RecordTree &block) const
    {
        const std::string name = block.text("pattern_name");
        if (name.empty()) return Art();
        auto art = m_patterns(name);
        if (art && patternName(block.text("id"), *art, m_file.units) != name) art.reset();
        return art;
    }

    // What the blocks have in common: styles, the look of labels.
    void gather()
    {
        std::vector<Style> styles;
        const bool column = true;
        for (std::size_t i = m_blocks; i < m_end; ++i) {
            const RecordTree &block = *m_folds[i].record;
            std::vector<std::optional<Box>> cells;
            for (const RecordTree *field : block.childrenOf("field")) {
                styles.push_back(styleOf(*field, m_file.units, !column));
                cells.push_back(cellOf(*field));
            }
            for (const RecordTree *table : block.childrenOf("table"))
                for (const RecordTree *field : table->childrenOf("field"))
                    styles.push_back(styleOf(*field, m_file.units, column));
            m_art.push_back(artOf(block));
            if (m_art.back()) m_votes.count(*m_art.back(), cells);
        }
        m_styles.emplace(styles, m_file.units);
        m_labels = m_votes.winner(plainLabels(m_file.units));
        for (std::size_t i = 0; i < m_blocks; ++i) planSizes(m_folds[i], family(), m_labels.font);
    }

    SheetFamily family() const { return m_file.units == 1 ? SheetFamily::iso : SheetFamily::asme; }

    std::string compose()
    {
        std::string text = fmt::format("units: {}\n{}labels: {{size: {}, font: {}, inset: {}}}\n",
                                       m_file.units == 1 ? "mm" : "in", m_styles->text(),
                                       realText(m_labels.size), quoted(m_labels.font),
                                       flowList(std::vector{m_labels.fromLeft, m_labels.fromTop}));
        std::set<std::string> formatKeys, blockKeys;
        if (m_blocks > 0) text += "formats:\n";
        for (std::size_t i = 0; i < m_blocks; ++i)
            text += formatText(m_folds[i], keyOf(m_folds[i], formatKeys), family(), m_file.units,
                               m_patterns);
        if (m_end > m_blocks) text += "blocks:\n";
        const BlockWords words{m_file.units, *m_styles, m_labels};
        for (std::size_t i = m_blocks; i < m_end; ++i)
            text += blockText(m_folds[i], keyOf(m_folds[i], blockKeys), m_art[i - m_blocks], words);
        if (m_end < m_folds.size() || m_folds.empty())
            text += m_folds.empty() ? "records: []\n" : "records:\n";
        for (std::size_t i = m_end; i < m_folds.size(); ++i)
            text += recordToText(*m_folds[i].record, 0);
        return text;
    }

    const RecordFile &m_file;
    const PatternArt &m_patterns;
    std::vector<Fold> m_folds;
    std::size_t m_blocks = 0;              // index of the first block
    std::size_t m_end = 0;                 // and of what stands under `records:`
    std::vector<std::optional<Art>> m_art; // of the blocks
    LabelVotes m_votes;
    LabelStyle m_labels;
    std::optional<StyleBook> m_styles;
};

} // namespace

std::string cellsToText(const RecordFile &file, const PatternArt &patterns)
{
    return CellsText(file, patterns).write();
}

} // namespace app::authoring
