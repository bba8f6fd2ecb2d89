#include "app/fill.h"

#include "app/csv.h"
#include "app/field_index.h"
#include "app/formats.h"
#include "app/problem.h"

#include "content/field.h"

#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <filesystem>
#include <fstream>
#include <optional>

namespace app {

namespace {

// --- values -----------------------------------------------------------------------------------

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

// --- JSON -------------------------------------------------------------------------------------

Json parseJson(const std::string &path)
{
    std::ifstream file(path);
    if (!file) throw Problem(path + ": cannot be opened: check the path");
    try {
        return Json::parse(file);
    } catch (const Json::parse_error &broken) {
        throw Problem(fmt::format("{}: is no JSON: {}", path, broken.what()));
    }
}

std::optional<std::size_t> asIndex(const std::string &text)
{
    std::size_t index = 0;
    const char *end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, index);
    if (error != std::errc() || stop != end) return {};
    return index;
}

Json recordOfJson(const Json &whole, const std::string &path, const std::string &record)
{
    if (record.empty()) return whole;
    if (whole.is_object() && whole.contains(record)) return whole[record];
    if (const auto index = asIndex(record); whole.is_array() && index && *index < whole.size())
        return whole[*index];
    throw Problem(fmt::format("{}: holds no record {}", path, record));
}

// --- CSV --------------------------------------------------------------------------------------

bool isFieldList(const CsvRow &header)
{
    return header.size() == 2 && header[0] == "field" && header[1] == "value";
}

// A name given twice has the values of both, line below line.
Json fieldList(const std::vector<CsvRow> &rows)
{
    Json values = Json::object();
    for (std::size_t i = 1; i < rows.size(); ++i) {
        Json &value = values[rows[i][0]];
        value = value.is_null() ? rows[i][1] : value.get<std::string>() + "\n" + rows[i][1];
    }
    return values;
}

const CsvRow &recordOfCsv(const std::vector<CsvRow> &rows, const std::string &path,
                          const std::string &record)
{
    if (record.empty()) {
        if (rows.size() == 2) return rows[1];
        throw Problem(fmt::format("{}: has {} records: choose one with --record and its {}", path,
                                  rows.size() - 1, rows[0][0]));
    }
    const auto found = std::find_if(rows.begin() + 1, rows.end(),
                                    [&](const CsvRow &row) { return row[0] == record; });
    if (found == rows.end())
        throw Problem(fmt::format("{}: holds no record whose {} is {}", path, rows[0][0], record));
    return *found;
}

Json valuesOfCsv(const std::string &path, const std::string &record)
{
    const std::vector<CsvRow> rows = readCsv(path);
    if (rows.empty())
        throw Problem(path + ": is empty: a first line with the field names is needed");
    if (isFieldList(rows[0]) && record.empty()) return fieldList(rows);
    const CsvRow &chosen = recordOfCsv(rows, path, record);
    Json values = Json::object();
    for (std::size_t i = 0; i < chosen.size(); ++i) {
        if (values.contains(rows[0][i]))
            throw Problem(fmt::format("{}: has two columns {}: remove one", path, rows[0][i]));
        values[rows[0][i]] = chosen[i];
    }
    return values;
}

// --- what is to be set ------------------------------------------------------------------------

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
        } catch (const Problem &problem) {
            m_problems.emplace_back(problem.what());
        }
    }

    const FieldIndex &m_fields;
    const std::string &m_path;
    const bool m_force;
    std::vector<WantedValue> m_values;
    std::vector<std::string> m_problems;
};

} // namespace

DataFile readData(const std::string &path, const std::string &record)
{
    if (std::filesystem::path(path).extension() == ".csv") return {path, valuesOfCsv(path, record)};
    DataFile data{path, recordOfJson(parseJson(path), path, record)};
    if (!data.values.is_object())
        throw Problem(path + ": must hold an object of field names to values" +
                      (data.values.is_array() ? ": choose one of the list with --record" : ""));
    return data;
}

FillReport fillIn(const Workspace &work, const SheetRef &sheet, const DataFile &data, bool force)
{
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
