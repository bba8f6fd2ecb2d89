#include "app/fleet/check_drawing.h"

#include "app/fleet/wide_pattern.h"
#include "app/values.h"

#include "content/entry.h"
#include "content/field.h"
#include "content/table.h"
#include "drawing/block.h"
#include "drawing/drawing.h"
#include "drawing/format.h"

#include "uf_draw.h"
#include "ug_exception.hxx"

#include <fmt/format.h>

#include <algorithm>
#include <filesystem>
#include <optional>
#include <set>

namespace app::fleet {

namespace {

// --- what stands there --------------------------------------------------------------------------

SeenValue seen(const std::string &block, const boost::shared_ptr<TrFieldBase> &field)
{
    return {block, "", 0, field->GetFieldDefName(), joined(field->GetValue(), "\n"), field};
}

void addRows(SeenSheet &sheet, const std::string &block, TrTableBase &table)
{
    const std::string id = table.GetTableDefName();
    sheet.tables.push_back(block + "." + id);
    int row = -1;
    for (const auto &entry : table.getEntries()) {
        ++row; // hidden ones too: so do the other verbs
        if (entry->GetHideEntry() != 0) continue;
        for (const auto &field : entry->getFields()) {
            sheet.values.push_back(seen(block, field));
            sheet.values.back().table = id;
            sheet.values.back().row = row;
        }
    }
}

SeenSheet seen(const SheetRef &ref, bool legacy)
{
    SeenSheet sheet{ref, "", "", legacy, {}, {}};
    const auto drawing = TrDrawing::getDrawing(ref.tag);
    if (!drawing->hasFormat()) return sheet;
    const auto format = drawing->format();
    sheet.format = format->GetFormatDefName();
    sheet.size = format->GetSizeName();
    for (const auto &block : format->getBlocks()) {
        const std::string id = block->GetBlockDefName();
        for (const auto &field : block->getFields()) sheet.values.push_back(seen(id, field));
        for (const auto &table : block->getTables()) addRows(sheet, id, *table);
    }
    return sheet;
}

SeenDrawing seen(const Workspace &work)
{
    SeenDrawing drawing{std::filesystem::path(work.path()).stem().string(), {}};
    const std::vector<SheetRef> sheets = work.sheets();
    std::set<tag_t> legacy; // looking at one sheet may convert what is old on another
    for (const SheetRef &sheet : sheets)
        if (hasLegacyRecords(sheet.tag)) legacy.insert(sheet.tag);
    for (const SheetRef &sheet : sheets)
        drawing.sheets.push_back(seen(sheet, legacy.count(sheet.tag) > 0));
    return drawing;
}

// --- states -----------------------------------------------------------------------------------

// The first differences say enough to know what has happened.
std::string summaryOf(const SheetDrift &drift)
{
    constexpr std::size_t kShown = 3;
    std::vector<std::string> texts;
    const auto add = [&](const std::string &owner, const Differences &differences) {
        for (const Difference &one : differences)
            texts.push_back(fmt::format("{}{}{}: {} is {}, now {}", owner,
                                        one.where.empty() ? "" : ", ", one.where, one.what,
                                        one.stored.empty() ? "nothing" : one.stored,
                                        one.disk.empty() ? "nothing" : one.disk));
    };
    add("format " + drift.format, drift.definition);
    add("format " + drift.format, drift.placed);
    for (const BlockDrift &block : drift.blocks) {
        add("block " + block.id, block.definition);
        add("block " + block.id, block.placed);
    }
    const std::size_t more = texts.size() > kShown ? texts.size() - kShown : 0;
    texts.resize(texts.size() - more);
    std::string text = joined(texts, "; ");
    if (more > 0) text += fmt::format("; and {} more", more);
    return text;
}

std::string missingDefinitions(const SheetDrift &drift)
{
    std::vector<std::string> missing;
    if (drift.orphan) missing.push_back("format " + drift.format);
    for (const BlockDrift &block : drift.blocks)
        if (block.orphan) missing.push_back("block " + block.id);
    return joined(missing, ", ");
}

std::string miswired(const SheetDrift &drift)
{
    std::vector<std::string> names;
    for (const BlockDrift &block : drift.blocks)
        for (const std::string &field : block.miswired) names.push_back(block.id + "." + field);
    return joined(names, ", ");
}

// A word that a shell takes as it is, or in quotes.
std::string shellWord(const std::string &text)
{
    const bool plain =
        !text.empty() && text.find_first_not_of("ABCDEFGHIJKLMNOPQRSTUVWXYZ"
                                                "abcdefghijklmnopqrstuvwxyz"
                                                "0123456789_./+-=:,@%") == std::string::npos;
    if (plain) return text;
    std::string quoted = "'";
    for (const char c : text) quoted += c == '\'' ? std::string("'\\''") : std::string(1, c);
    return quoted + "'";
}

struct StateText {
    std::string message;
    std::string remedy;
};

StateText textOf(const SheetDrift &drift, const std::string &path)
{
    const std::string update = fmt::format("run 'qelfmt update {}'", shellWord(path));
    switch (drift.state) {
    case SheetState::legacy:
        return {"holds records of an older generation", update};
    case SheetState::orphan:
        return {fmt::format("has no definition of {}", missingDefinitions(drift)),
                "add it to the definitions (--defs), or give the sheet another format with 'qelfmt "
                "format replace'"};
    case SheetState::miswired:
        return {fmt::format("shows {} by the definition of another field", miswired(drift)),
                update};
    case SheetState::drifted:
        return {fmt::format("is not as the definitions say: {}", summaryOf(drift)), update};
    case SheetState::none:
    case SheetState::current:
        break;
    }
    return {};
}

// --- findings -----------------------------------------------------------------------------------

class Check {
public:
    Check(const Workspace &work, const Rules &rules)
        : m_work(work), m_rules(rules), m_drawing(seen(work))
    {}

    Json run()
    {
        int sheets = 0;
        for (const SeenSheet &sheet : m_drawing.sheets) {
            if (!sheet.hasFormat()) continue;
            ++sheets;
            UgException::throwOnFailure(UF_DRAW_open_drawing(sheet.ref.tag));
            checkState(sheet);
            for (std::size_t i = 0; i < m_rules.rules.size(); ++i) checkRule(i, sheet);
        }
        return {{"sheets", sheets}, {"matched", m_matched}, {"findings", std::move(m_findings)}};
    }

private:
    void checkState(const SeenSheet &sheet)
    {
        if (m_rules.states.empty()) return;
        SheetDrift drift = driftOf(sheet.ref.tag);
        if (sheet.legacy) drift.state = SheetState::legacy;
        const auto severity = m_rules.states.find(drift.state);
        if (severity == m_rules.states.end()) return;
        const StateText text = textOf(drift, m_work.path());
        m_findings.push_back({{"sheet", sheet.ref.name},
                              {"rule", nameOf(drift.state)},
                              {"severity", nameOf(severity->second)},
                              {"message", text.message},
                              {"remedy", text.remedy}});
    }

    void checkRule(std::size_t index, const SeenSheet &sheet)
    {
        const Rule &rule = m_rules.rules[index];
        if (!rule.holdsFor(sheet)) return;
        for (const SeenValue &value : sheet.values) {
            if (!rule.matches(value)) continue;
            m_matched.insert(index);
            const auto complaint = complaintOf(rule, {m_drawing, sheet, value});
            if (!complaint) continue;
            m_findings.push_back({{"sheet", sheet.ref.name},
                                  {"block", value.block},
                                  {"field", value.fieldName()},
                                  {"value", toJson(splitLines(value.text))},
                                  {"rule", index},
                                  {"severity", nameOf(rule.severity)},
                                  {"message", complaint->message},
                                  {"remedy", complaint->remedy}});
        }
    }

    // A value that a rule's pattern cannot be held against spoils neither the others nor the drawing.
    static std::optional<StateText> complaintOf(const Rule &rule, const Place &place)
    {
        try {
            const auto complaint = rule.question->complaint(place);
            if (!complaint) return {};
            return StateText{*complaint, rule.remedy};
        } catch (const PatternTooComplex &) {
            return StateText{"cannot be held against the rule's pattern: it would take too long",
                             "simplify the pattern: no repetition inside another one"};
        }
    }

    const Workspace &m_work;
    const Rules &m_rules;
    const SeenDrawing m_drawing;
    std::set<std::size_t> m_matched;
    Json m_findings = Json::array();
};

} // namespace

Json checkDrawing(Workspace &work, const Rules &rules) { return Check(work, rules).run(); }

} // namespace app::fleet
