#include "app/fleet/report_output.h"

#include "app/csv.h"
#include "app/fleet/json_text.h"

#include <fmt/format.h>

#include <algorithm>
#include <filesystem>
#include <map>
#include <set>
#include <unordered_map>
#include <unordered_set>

namespace app::fleet {

namespace {

void put(std::FILE *to, const std::string &text) { std::fwrite(text.data(), 1, text.size(), to); }

// Fields in the order in which they are met.
std::vector<std::string> valueColumns(const RowSource &rows)
{
    std::vector<std::string> columns;
    std::set<std::string> seen;
    rows([&](const Json &row) {
        if (!row.contains("values")) return;
        for (const auto &[name, value] : row["values"].items())
            if (seen.insert(name).second) columns.push_back(name);
    });
    return columns;
}

std::vector<std::string> chosenFixed(const Columns &columns)
{
    std::vector<std::string> chosen;
    for (const std::string &column : fixedColumns())
        if (column == "file" || column == "sheet" || columns.holds(column))
            chosen.push_back(column);
    return chosen;
}

void writeCsvReport(const Columns &columns, const RowSource &rows, std::FILE *to)
{
    const std::vector<std::string> fixed = chosenFixed(columns);
    const std::vector<std::string> values = valueColumns(rows);
    CsvRow header = fixed;
    header.insert(header.end(), values.begin(), values.end());
    put(to, writeCsv({header}));
    rows([&](const Json &row) {
        CsvRow cells;
        for (const std::string &column : fixed) cells.push_back(fixedCell(row, column));
        for (const std::string &column : values) {
            const bool has = row.contains("values") && row["values"].contains(column);
            cells.push_back(has ? cellOf(row["values"][column]) : std::string());
        }
        put(to, writeCsv({cells}));
    });
}

void writeJsonReport(const RowSource &rows, std::FILE *to)
{
    bool first = true;
    put(to, "[");
    rows([&](const Json &row) {
        put(to, (first ? "\n" : ",\n") + compact(row));
        first = false;
    });
    put(to, "\n]\n");
}

// A record each, by a name that no other has: "d1" or, of a drawing with several sheets, "d1/SHEET2". Drawings
// of one name are told apart by their paths.
class RecordNames {
public:
    explicit RecordNames(const DrawingSource &drawings)
    {
        drawings([&](const std::string &file, std::string_view) { ++m_drawings[stemOf(file)]; });
    }

    std::string nameOf(const std::string &file, const std::string &sheet, bool several)
    {
        const std::string stem = stemOf(file);
        const std::string below = several ? "/" + sheet : "";
        std::string name = (m_drawings[stem] > 1 ? pathOf(file) : stem) + below;
        if (m_taken.count(name))
            name = file + "/" + sheet; // of "a" a sheet "b", and a drawing "a/b"
        for (int i = 2; m_taken.count(name); ++i) name = fmt::format("{}/{} ({})", file, sheet, i);
        m_taken.insert(name);
        return name;
    }

private:
    static std::string stemOf(const std::string &file)
    {
        return std::filesystem::path(file).stem().string();
    }
    static std::string pathOf(const std::string &file)
    {
        return std::filesystem::path(file).replace_extension().string();
    }

    std::unordered_map<std::string, int> m_drawings; // by the name without folder and ending
    std::unordered_set<std::string> m_taken;
};

std::string recordOf(const Json &values)
{
    std::map<std::string, int> uses; // a field that two blocks have keeps its block
    const auto alone = [](const std::string &full) { return full.substr(full.find('.') + 1); };
    for (const auto &[full, value] : values.items()) ++uses[alone(full)];
    Json record = Json::object();
    for (const auto &[full, value] : values.items())
        record[uses[alone(full)] == 1 ? alone(full) : full] = value;
    return compact(record);
}

std::string filled(const Json &row)
{
    if (!row.contains("values")) return "";
    std::size_t count = 0;
    for (const auto &[name, value] : row["values"].items()) count += !cellOf(value).empty();
    return fmt::format("{}/{}", count, row["values"].size());
}

void writeTableReport(const Columns &columns, const RowSource &rows)
{
    const std::string values = "filled";
    std::vector<std::string> header = chosenFixed(columns);
    header.insert(header.end() - (header.back() == "rows"), values);
    std::vector<std::vector<std::string>> table;
    rows([&](const Json &row) {
        std::vector<std::string> cells;
        for (const std::string &column : header)
            cells.push_back(column == values ? filled(row) : fixedCell(row, column));
        table.push_back(std::move(cells));
    });
    if (!table.empty()) printTable(header, table);
}

} // namespace

std::string compact(const Json &json)
{
    return json.dump(-1, ' ', false, Json::error_handler_t::replace);
}

std::string cellOf(const Json &value)
{
    if (value.is_string()) return value.get<std::string>();
    std::string text;
    for (const Json &line : value) {
        if (&line != &value.front()) text += '\n';
        text += line.get<std::string>();
    }
    return text;
}

std::string fixedCell(const Json &row, const std::string &column)
{
    if (column == "rows") {
        std::vector<std::string> counts;
        if (row.contains("tables"))
            for (const auto &[name, rows] : row["tables"].items())
                counts.push_back(fmt::format("{} {}", name, rows.size()));
        return joined(counts, "; ");
    }
    if (!row.contains(column)) return "";
    const Json &cell = row[column];
    return cell.is_array() ? joined(cell.get<std::vector<std::string>>(), " ")
                           : cell.get<std::string>();
}

std::string drawingText(ReportForm form, const Json &rows)
{
    if (form != ReportForm::records) return compact(rows);
    std::string lines;
    for (const Json &row : rows)
        if (row.contains("values"))
            lines += fmt::format("{}\t{}\n", compact(row["sheet"]), recordOf(row["values"]));
    return lines;
}

void writeRecords(const DrawingSource &drawings, std::FILE *to)
{
    RecordNames names(drawings);
    const char *before = "{\n";
    drawings([&](const std::string &file, std::string_view text) {
        const bool several = text.find('\n') + 1 < text.size();
        while (!text.empty()) {
            const std::size_t tab = text.find('\t'), end = text.find('\n');
            const std::string sheet = Json::parse(text.substr(0, tab));
            std::string record = before;
            appendJson(record, names.nameOf(file, sheet, several));
            record.append(1, ':').append(text.substr(tab + 1, end - tab - 1));
            put(to, record);
            before = ",\n";
            text.remove_prefix(end + 1);
        }
    });
    put(to, before[0] == '{' ? "{\n}\n" : "\n}\n");
}

void writeReport(ReportForm form, const Columns &columns, const RowSource &rows, std::FILE *to)
{
    switch (form) {
    case ReportForm::table:
        return writeTableReport(columns, rows);
    case ReportForm::csv:
        return writeCsvReport(columns, rows, to);
    case ReportForm::json:
        return writeJsonReport(rows, to);
    case ReportForm::records:
        break;
    }
}

} // namespace app::fleet
