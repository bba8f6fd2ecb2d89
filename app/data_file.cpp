#include "app/data_file.h"

#include "app/csv.h"
#include "app/problem.h"
#include "app/read_text.h"

#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <filesystem>
#include <optional>

namespace app {

namespace {

// --- JSON -------------------------------------------------------------------------------------

std::optional<std::size_t> asIndex(const std::string &text)
{
    std::size_t index = 0;
    const char *end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, index);
    if (error != std::errc() || stop != end) return {};
    return index;
}

// What --record can be: the members that are objects, or the places in the list.
std::vector<std::string> recordsOfJson(const Json &whole)
{
    std::vector<std::string> records;
    if (whole.is_object())
        for (const auto &[name, member] : whole.items())
            if (member.is_object()) records.push_back(name);
    if (whole.is_array())
        for (std::size_t i = 0; i < whole.size(); ++i)
            if (whole[i].is_object()) records.push_back(std::to_string(i));
    return records;
}

std::string described(const std::vector<std::string> &records)
{
    return records.empty() ? "it holds none" : "it holds " + shortList(records);
}

DataFile recordOfJson(const std::string &path, const std::string &record)
{
    const Json whole = readJson(path);
    if (record.empty()) {
        if (whole.is_object()) return {path, whole, false};
        throw Problem(path + (whole.is_array()
                                  ? ": is a list of records: choose one with --record; " +
                                        described(recordsOfJson(whole))
                                  : ": must hold an object of field names to values"));
    }
    if (whole.is_object() && whole.contains(record) && whole[record].is_object())
        return {path, whole[record], true};
    if (const auto index = asIndex(record);
        whole.is_array() && index && *index < whole.size() && whole[*index].is_object())
        return {path, whole[*index], true};
    throw Problem(
        fmt::format("{}: no record {}; {}", path, record, described(recordsOfJson(whole))));
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

std::vector<std::string> recordsOfCsv(const std::vector<CsvRow> &rows)
{
    std::vector<std::string> records;
    for (std::size_t i = 1; i < rows.size(); ++i) records.push_back(rows[i][0]);
    return records;
}

const CsvRow &recordOfCsv(const std::vector<CsvRow> &rows, const std::string &path,
                          const std::string &record)
{
    if (rows.size() == 1)
        throw Problem(path + ": holds no record: below the field names, a row of values is needed");
    if (record.empty()) {
        if (rows.size() == 2) return rows[1];
        throw Problem(fmt::format("{}: has {} records: choose one with --record and its {}; {}",
                                  path, rows.size() - 1, rows[0][0],
                                  described(recordsOfCsv(rows))));
    }
    const auto found = std::find_if(rows.begin() + 1, rows.end(),
                                    [&](const CsvRow &row) { return row[0] == record; });
    if (found == rows.end())
        throw Problem(fmt::format("{}: no record whose {} is {}; {}", path, rows[0][0], record,
                                  described(recordsOfCsv(rows))));
    return *found;
}

DataFile valuesOfCsv(const std::string &path, const std::string &record)
{
    const std::vector<CsvRow> rows = readCsv(path);
    if (rows.empty())
        throw Problem(path + ": is empty: a first line with the field names is needed");
    if (isFieldList(rows[0]) && record.empty()) return {path, fieldList(rows), false};
    const CsvRow &chosen = recordOfCsv(rows, path, record);
    Json values = Json::object();
    for (std::size_t i = 0; i < chosen.size(); ++i) {
        if (values.contains(rows[0][i]))
            throw Problem(fmt::format("{}: has two columns {}: remove one", path, rows[0][i]));
        values[rows[0][i]] = chosen[i];
    }
    return {path, values, true};
}

} // namespace

std::string shortList(const std::vector<std::string> &names)
{
    constexpr std::size_t kMost = 20;
    if (names.size() <= kMost) return joined(names, ", ");
    const std::vector<std::string> first(names.begin(), names.begin() + kMost);
    return fmt::format("{} and {} more", joined(first, ", "), names.size() - kMost);
}

DataFile readData(const std::string &path, const std::string &record)
{
    const bool csv = std::filesystem::path(path).extension() == ".csv";
    return csv ? valuesOfCsv(path, record) : recordOfJson(path, record);
}

} // namespace app
