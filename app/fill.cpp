#include "app/fill.h"

#include "app/field_index.h"
#include "app/formats.h"
#include "app/problem.h"

#include "content/field.h"

#include <fmt/format.h>

#include <algorithm>

namespace app {

namespace {

Lines linesOf(const Json &value, const std::string &where)
{
    if (value.is_string()) return splitLines(value.get<std::string>());
    if (value.is_number() || value.is_boolean()) return {value.dump()};
    if (value.is_null()) return {""};
    Lines lines;
    if (value.is_array()) {
        for (const Json &line : value) {
            if (!line.is_string()) break;
            lines.push_back(line.get<std::string>());
        }
        if (lines.size() == value.size()) return lines;
    }
    throw Problem(where + ": a value must be a text, a number or a list of texts");
}

// A file of several records, with none chosen, names no field of the sheet at its top.
void requireOneRecord(const Workspace &work, const SheetRef &sheet, const DataFile &data)
{
    if (data.isRecord || data.values.empty()) return;
    const std::vector<std::string> blocks = blocksOf(work, sheet);
    std::vector<std::string> records;
    for (const auto &[name, member] : data.values.items()) {
        if (!member.is_object() || std::count(blocks.begin(), blocks.end(), name) > 0) return;
        records.push_back(name);
    }
    throw Problem(fmt::format("{}: holds {} {}: choose with --record, as in --record {}", data.path,
                              records.size() == 1 ? "the record" : "the records",
                              shortList(records), records.front()));
}

struct WantedValue {
    const IndexedField *field;
    Lines lines;
};

class Wanted {
public:
    Wanted(const FieldIndex &fields, const DataFile &data, bool force)
        : m_fields(fields), m_path(data.path), m_force(force)
    {
        for (const auto &[key, value] : data.values.items()) {
            if (!value.is_object()) {
                add(key, value);
                continue;
            }
            for (const auto &[field, inner] : value.items()) add(key + "." + field, inner);
        }
        if (!m_unknown.empty()) m_problems.insert(m_problems.begin(), unknownFields());
        if (!m_problems.empty()) throw Problem(joined(m_problems, "\n"));
    }

    const std::vector<WantedValue> &values() const { return m_values; }
    bool names(const IndexedField &field) const
    {
        return std::any_of(m_values.begin(), m_values.end(),
                           [&](const WantedValue &value) { return value.field == &field; });
    }

private:
    void add(const std::string &text, const Json &value)
    {
        try {
            const IndexedField &field = m_fields.find(text);
            if (!m_force) m_fields.requireEditable(field);
            m_values.push_back({&field, linesOf(value, m_path + ", " + text)});
        } catch (const UnknownField &) {
            m_unknown.push_back(text);
        } catch (const Problem &problem) {
            m_problems.emplace_back(problem.what());
        }
    }

    // What there is instead is said once.
    std::string unknownFields() const
    {
        return fmt::format("{}: no {} {} on {}; {}", m_path,
                           m_unknown.size() == 1 ? "field" : "fields", joined(m_unknown, ", "),
                           m_fields.place(), m_fields.choices());
    }

    const FieldIndex &m_fields;
    const std::string &m_path;
    const bool m_force;
    std::vector<WantedValue> m_values;
    std::vector<std::string> m_unknown;
    std::vector<std::string> m_problems;
};

} // namespace

FillReport fillIn(const Workspace &work, const SheetRef &sheet, const DataFile &data, bool force)
{
    requireOneRecord(work, sheet, data);
    const FieldIndex fields(work, sheet);
    const Wanted wanted(fields, data, force);
    FillReport report;
    for (const WantedValue &value : wanted.values()) {
        fields.set(*value.field, value.lines);
        report.set.push_back(value.field->name);
        if (const auto misfit = misfitOf(*value.field->record))
            report.misfits.push_back({value.field->name, *misfit});
    }
    for (const IndexedField &field : fields.fields())
        if (!wanted.names(field)) report.missing.push_back(field.name);
    return report;
}

void printMisfits(const Options &options, const std::string &place,
                  const std::vector<MisfitReport> &misfits)
{
    for (const MisfitReport &report : misfits)
        printNote(options,
                  fmt::format("{}, {}: {}", place, display(report.name), describe(report.misfit)));
}

} // namespace app
