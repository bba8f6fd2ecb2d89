#include "app/fleet/report_rows.h"

#include "app/csv.h"
#include "app/fleet/paths.h"
#include "app/fleet/report_output.h"
#include "app/problem.h"
#include "app/read_text.h"
#include "app/text_file.h"

#include <fmt/format.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <set>

namespace app::fleet {

namespace {

bool isCsv(const std::string &path) { return std::filesystem::path(path).extension() == ".csv"; }

bool isFixed(const std::string &column)
{
    const auto &fixed = fixedColumns();
    return std::find(fixed.begin(), fixed.end(), column) != fixed.end();
}

bool namesField(const std::string &column)
{
    const std::size_t dot = column.find('.');
    return dot != std::string::npos && dot > 0 && dot + 1 < column.size();
}

class Rows {
public:
    explicit Rows(std::string path) : m_path(std::move(path)) {}

    void add(const std::string &file, ReportRow row)
    {
        if (file.empty()) return complain(row.place, "names no file");
        std::vector<ReportRow> &rows = m_rows[spelling(file)];
        const auto same = [&](const ReportRow &other) { return other.sheet == row.sheet; };
        if (std::any_of(rows.begin(), rows.end(), same))
            return complain(row.place, fmt::format("sheet {} of {} stands there twice: remove one",
                                                   row.sheet, file));
        rows.push_back(std::move(row));
    }
    void complain(const std::string &place, const std::string &text)
    {
        m_problems.push_back(place + ": " + text);
    }
    RowsOfFiles finish()
    {
        if (!m_problems.empty()) throw Problem(joined(m_problems, "\n"));
        return std::move(m_rows);
    }
    const std::string &path() const { return m_path; }

private:
    // One drawing has one, whatever path leads to it: the first.
    const std::string &spelling(const std::string &file)
    {
        return m_spellings
            .emplace(canonicalPath(file), std::filesystem::path(file).lexically_normal().string())
            .first->second;
    }

    std::string m_path;
    std::map<std::string, std::string> m_spellings;
    RowsOfFiles m_rows;
    std::vector<std::string> m_problems;
};

// --- CSV ----------------------------------------------------------------------------------------

void checkHeader(Rows &rows, const CsvRow &header)
{
    const std::string place = rows.path() + ", row 1";
    std::set<std::string> seen;
    for (const std::string &column : header) {
        if (!seen.insert(column).second)
            rows.complain(place, fmt::format("two columns \"{}\": remove one", column));
        else if (!isFixed(column) && !namesField(column))
            rows.complain(place,
                          fmt::format("unknown column \"{}\": a value is in a column BLOCK.FIELD, "
                                      "as in TITLE.number; else there are {}",
                                      column, joined(fixedColumns(), ", ")));
    }
}

void readCsvReport(Rows &rows)
{
    const std::vector<CsvRow> table = readCsv(rows.path());
    const CsvRow &header = table.front();
    checkHeader(rows, header);
    for (std::size_t i = 1; i < table.size(); ++i) {
        ReportRow row;
        row.place = fmt::format("{}, row {}", rows.path(), i + 1);
        std::string file;
        for (std::size_t column = 0; column < header.size(); ++column) {
            const std::string &name = header[column];
            const std::string &cell = table[i][column];
            if (name == "file")
                file = cell;
            else if (name == "sheet")
                row.sheet = cell;
            else
                (isFixed(name) ? row.fixed : row.values).emplace_back(name, cell);
            row.failed = row.failed || (name == "state" && cell == "failed");
        }
        rows.add(file, std::move(row));
    }
}

// --- JSON -----------------------------------------------------------------------------------------

bool isValue(const Json &value)
{
    return value.is_string() ||
           (value.is_array() && std::all_of(value.begin(), value.end(),
                                            [](const Json &line) { return line.is_string(); }));
}

void readValues(Rows &rows, ReportRow &row, const Json &values)
{
    if (!values.is_object())
        return rows.complain(row.place, "values: must be an object of BLOCK.FIELD to values");
    for (const auto &[name, value] : values.items()) {
        if (!namesField(name))
            rows.complain(row.place, fmt::format("values: \"{}\" names no field: write "
                                                 "BLOCK.FIELD, as in TITLE.number",
                                                 name));
        else if (!isValue(value))
            rows.complain(
                row.place,
                fmt::format("values: {}: a value must be a text or a list of texts", name));
        else
            row.values.emplace_back(name, cellOf(value));
    }
}

void readMember(Rows &rows, ReportRow &row, const std::string &key, const Json &value)
{
    if (key == "values") return readValues(rows, row, value);
    if (key == "tables") {
        row.tables = value;
    } else if (key == "error") {
        row.failed = true;
    } else if (!isFixed(key) || key == "rows") {
        rows.complain(row.place,
                      fmt::format("unknown key \"{}\": values stand below \"values\"", key));
    } else if (!isValue(value)) {
        rows.complain(row.place, key + ": must be as the report wrote it");
    } else if (key == "sheet") {
        row.sheet = fixedCell({{key, value}}, key);
    } else if (key != "file") {
        row.fixed.emplace_back(key, fixedCell({{key, value}}, key));
    }
}

void readJsonReport(Rows &rows)
{
    std::size_t number = 0;
    for (const Json &object : readJson(rows.path())) {
        ReportRow row;
        row.place = fmt::format("{}, row {}", rows.path(), ++number);
        if (!object.is_object()) {
            rows.complain(row.place, "must be an object with file, sheet and values");
            continue;
        }
        for (const auto &[key, value] : object.items()) readMember(rows, row, key, value);
        const bool named = object.contains("file") && object["file"].is_string();
        rows.add(named ? object["file"].get<std::string>() : "", std::move(row));
    }
}

std::string firstLine(const std::string &path)
{
    std::ifstream file(path, std::ios::binary);
    std::string line;
    std::getline(file, line);
    return line;
}

} // namespace

bool isReport(const std::string &path)
{
    if (isCsv(path)) {
        // A header that is broken is said to be so where the file is read.
        std::vector<CsvRow> rows;
        try {
            rows = parseCsv(firstLine(path), path);
        } catch (const Problem &) {
            return false;
        }
        return !rows.empty() && rows[0].size() >= 2 &&
               std::count(rows[0].begin(), rows[0].end(), "file") > 0 &&
               std::count(rows[0].begin(), rows[0].end(), "sheet") > 0;
    }
    std::string why; // told where the file is read
    const auto text = readTextFile(path, why);
    const Json whole = Json::parse(text.value_or(""), nullptr, false);
    return whole.is_array() && !whole.empty() && whole[0].is_object() && whole[0].contains("file");
}

RowsOfFiles readReport(const std::string &path)
{
    Rows rows(path);
    if (isCsv(path))
        readCsvReport(rows);
    else
        readJsonReport(rows);
    return rows.finish();
}

} // namespace app::fleet
