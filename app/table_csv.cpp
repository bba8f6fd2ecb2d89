// Rows from and to CSV files, a column a field.
#include "app/csv.h"
#include "app/output.h"
#include "app/problem.h"
#include "app/table_verbs.h"

#include "content/entry.h"
#include "content/symbol.h"

#include <fmt/format.h>

#include <algorithm>
#include <fstream>
#include <numeric>

namespace app {

namespace {

std::vector<CsvRow> readRows(const std::string &path)
{
    std::vector<CsvRow> rows = readCsv(path);
    if (rows.empty())
        throw Problem(path + ": is empty: a first line with the names of the fields is needed");
    return rows;
}

// Everything that can be wrong is said before a row is made.
void requireColumns(const TableRows &table, const std::string &path, const CsvRow &header)
{
    std::vector<std::string> problems;
    for (auto column = header.begin(); column != header.end(); ++column) {
        const auto &fields = table.fields();
        if (std::count(fields.begin(), fields.end(), *column) == 0)
            problems.push_back(fmt::format("{}, line 1: {} has no field \"{}\"; it has {}", path,
                                           display(table.name()), *column, joined(fields, ", ")));
        if (std::count(header.begin(), column, *column) > 0)
            problems.push_back(
                fmt::format("{}, line 1: two columns \"{}\": remove one", path, *column));
    }
    if (!problems.empty()) throw Problem(joined(problems, "\n"));
}

// How many symbols went with the rows.
std::size_t removeAll(const TableRows &table)
{
    std::size_t symbols = 0;
    std::vector<int> all(static_cast<std::size_t>(table.count()));
    std::iota(all.begin(), all.end(), 0);
    for (const int row : all) symbols += table.row(row)->getSymbols().size();
    table.remove(all);
    return symbols;
}

// A carriage return in a value was put there by another program.
void noteCarriageReturn(const Options &options, const TableRows &table, int row,
                        const std::string &field, const Lines &lines)
{
    for (const std::string &line : lines)
        if (line.find('\r') != std::string::npos)
            return printNote(options,
                             fmt::format("{}, row {}, {}: a carriage return in the value will be "
                                         "read as a line break",
                                         table.place(), row, field));
}

void writeFile(const std::string &path, const std::string &text)
{
    std::ofstream file(path, std::ios::binary);
    file << text;
    file.close();
    if (!file) throw Problem(path + ": cannot be written: check the folder");
}

} // namespace

int importRows(const Options &options, const TableArguments &arguments)
{
    const std::vector<CsvRow> rows = readRows(arguments.file);
    return changeTable(options, arguments, [&](const TableRows &table) {
        const CsvRow &header = rows.front();
        requireColumns(table, arguments.file, header);
        const std::size_t symbols = arguments.replace ? removeAll(table) : 0;
        for (std::size_t i = 1; i < rows.size(); ++i) {
            const TableRow row = table.append();
            for (std::size_t column = 0; column < header.size(); ++column)
                setRowValue(options, arguments, table, row, header[column],
                            splitLines(rows[i][column]));
        }
        if (symbols > 0)
            printNote(options, fmt::format("{}: {} {} deleted with the rows that were replaced",
                                           table.place(), symbols,
                                           symbols == 1 ? "symbol was" : "symbols were"));
        if (options.json) {
            Json json{{"appended", rows.size() - 1}, {"rows", table.count()}};
            if (arguments.replace) json["symbols_deleted"] = symbols;
            return printJson(json);
        }
        printNote(options, fmt::format("{}: {} rows appended", table.place(), rows.size() - 1));
    });
}

int exportRows(const Options &options, const TableArguments &arguments)
{
    return readTable(options, arguments, [&](const TableRows &table) {
        std::vector<CsvRow> rows{table.fields()};
        for (int row = 0; row < table.count(); ++row) {
            if (arguments.visible && table.row(row)->GetHideEntry() != 0) continue;
            CsvRow cells;
            for (const std::string &field : table.fields()) {
                const Lines lines = table.value(row, field);
                noteCarriageReturn(options, table, row, field, lines);
                cells.push_back(joined(lines, "\n"));
            }
            rows.push_back(cells);
        }
        const std::string text = writeCsv(rows);
        if (arguments.file.empty())
            printText(text);
        else if (!options.dryRun)
            writeFile(arguments.file, text);
        if (options.json && !arguments.file.empty())
            printJson({{"file", arguments.file}, {"rows", rows.size() - 1}});
    });
}

} // namespace app
