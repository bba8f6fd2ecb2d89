#include "app/authoring/format_words.h"

#include "app/authoring/art_words.h"
#include "app/authoring/block_words.h"
#include "app/authoring/field_words.h"
#include "app/authoring/pattern_writer.h"
#include "app/authoring/scalars.h"
#include "app/authoring/words.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <map>
#include <set>

namespace app::authoring {

namespace {

constexpr int kOfFamily = 0, kWithArt = 1;

class FormatText {
public:
    FormatText(Fold &format, SheetFamily family, int units, const PatternArt &patterns)
        : m_format(format), m_record(*format.record), m_family(family), m_units(units),
          m_patterns(patterns)
    {}

    std::string write()
    {
        if (!m_record.text("description").empty())
            line("description", quoted(m_record.text("description")));
        if (std::any_of(m_record.attributes.begin(), m_record.attributes.end(),
                        [](const auto &one) { return one.first == "CATEGORY"; }))
            line("category", quoted(m_record.text("category")));
        if (!m_record.text("suite_name").empty())
            line("suite", quoted(m_record.text("suite_name")));
        if (m_record.integer("obsolete") == 1) line("obsolete", "yes");
        if (const auto ids = m_record.texts("required_block_ids"); !ids.empty())
            line("required", flowList(ids));
        for (const auto &[key, value] : m_format.slots) line(key, value);
        suites();
        sizes();
        return std::move(m_text);
    }

private:
    void line(const std::string &key, const std::string &value)
    {
        m_text += "    " + key + ":" + (value.empty() ? "" : " ") + value + "\n";
    }

    void suites()
    {
        std::map<std::string, std::vector<std::string>> suites;
        for (const Fold *size : m_format.childrenOf("size"))
            if (const std::string name = size->record->text("suite_name"); !name.empty())
                suites[quoted(name)].push_back(size->record->text("id"));
        FlowMapping keys;
        for (const auto &[name, ids] : suites)
            if (!name.starts_with('!')) keys.put(name, flowList(ids));
        if (!keys.empty()) line("suites", keys.text());
    }

    void sizes()
    {
        const auto folds = m_format.childrenOf("size");
        const auto ofFamily = [](const Fold *size) {
            return !size->whole && size->plan == kOfFamily;
        };
        if (std::any_of(folds.begin(), folds.end(), ofFamily))
            line("sheets", m_family == SheetFamily::iso ? "iso" : "asme");
        if (std::all_of(folds.begin(), folds.end(), ofFamily)) {
            std::vector<std::string> ids;
            for (const Fold *size : folds) ids.push_back(size->record->text("id"));
            line("sizes", flowList(ids));
            return;
        }
        line("sizes", "");
        std::set<std::string> taken;
        for (Fold *size : folds) {
            const std::string key = keyOf(*size, taken);
            if (ofFamily(size))
                m_text += "      - " + key + "\n";
            else if (size->whole || !canBeSheet(*size->record))
                whole(*size, key);
            else
                own(*size, key);
        }
    }

    static bool canBeSheet(const RecordTree &size)
    {
        return std::isfinite(size.real("height")) && std::isfinite(size.real("length"));
    }

    void whole(Fold &size, const std::string &key)
    {
        size.whole = true;
        m_text += "      - " + key + ":\n" + wholeText(*size.record, 3);
    }

    void own(Fold &size, const std::string &key)
    {
        const RecordTree &record = *size.record;
        const std::string indent(10, ' ');
        m_text += "      - " + key + ":\n";
        const auto put = [&](const std::string &name, const std::string &value) {
            m_text += indent + name + ": " + value + "\n";
        };
        put("sheet", flowList(std::vector{record.real("length"), record.real("height")}));
        put("label", quoted(record.text("label")));
        if (!record.text("description").empty())
            put("description", quoted(record.text("description")));
        if (const FlowMapping keys = zones(record); !keys.empty()) put("zones", keys.text());
        std::optional<std::string> items;
        if (size.plan == kWithArt)
            if (const auto art = m_patterns(record.text("frame_name")))
                items = artItems(*art, m_units, indent + "  ");
        if (items) {
            m_text += indent + "frame:\n" + *items;
        } else {
            size.plan = kByName;
            size.slots.emplace("frame_name", quoted(record.text("frame_name")));
        }
        for (const auto &[name, value] : size.slots) put(name, value);
    }

    static FlowMapping zones(const RecordTree &size)
    {
        FlowMapping keys;
        const auto integer = [&](const char *key, const char *slot) {
            if (size.integer(slot) != 0) keys.put(key, std::to_string(size.integer(slot)));
        };
        const auto number = [&](const char *key, const char *slot) {
            if (size.real(slot) != 0.0 && std::isfinite(size.real(slot)))
                keys.putNumber(key, size.real(slot));
        };
        integer("columns", "number_horz_zones");
        integer("rows", "number_vert_zones");
        number("width", "horz_zone_length");
        number("height", "vert_zone_length");
        number("right-offset", "right_offset");
        if (const auto word = wordOf(kZoneLabels, size.integer("horz_zone_type")))
            keys.put("column-labels", *word);
        if (const auto word = wordOf(kZoneLabels, size.integer("vert_zone_type")))
            keys.put("row-labels", *word);
        return keys;
    }

    Fold &m_format;
    const RecordTree &m_record;
    SheetFamily m_family;
    int m_units;
    const PatternArt &m_patterns;
    std::string m_text;
};

} // namespace

void planSizes(Fold &format, SheetFamily family, const std::string &font)
{
    std::set<std::string> seen;
    for (Fold *size : format.childrenOf("size")) {
        const std::string id = size->record->text("id");
        if (!seen.insert(id).second || !familySheet(family, id, font)) size->plan = kWithArt;
    }
}

std::string formatText(Fold &format, const std::string &key, SheetFamily family, int units,
                       const PatternArt &patterns)
{
    const std::string head = "  " + key + ":\n";
    if (format.whole) return head + wholeText(*format.record, 1);
    return head + FormatText(format, family, units, patterns).write();
}

} // namespace app::authoring
