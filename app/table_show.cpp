#include "app/output.h"
#include "app/table_verbs.h"

#include "content/entry.h"
#include "content/table.h"

namespace app {

namespace {

Json valuesOfRow(const TableRows &table, int row)
{
    Json values = Json::object();
    for (const std::string &field : table.fields()) values[field] = toJson(table.value(row, field));
    return values;
}

Json describeRow(const TableRows &table, int row)
{
    const auto entry = table.row(row);
    return {{"row", row},
            {"hidden", entry->GetHideEntry() != 0},
            {"height", entry->CalcHeight()},
            {"symbols", entry->getSymbols().size()},
            {"values", valuesOfRow(table, row)}};
}

void printRows(const TableRows &table)
{
    std::vector<std::string> header{"ROW", "HIDDEN"};
    header.insert(header.end(), table.fields().begin(), table.fields().end());
    std::vector<std::vector<std::string>> rows;
    for (int row = 0; row < table.count(); ++row) {
        std::vector<std::string> cells{std::to_string(row),
                                       table.row(row)->GetHideEntry() != 0 ? "yes" : ""};
        for (const std::string &field : table.fields())
            cells.push_back(joined(table.value(row, field), " | "));
        rows.push_back(cells);
    }
    printTable(header, rows);
}

} // namespace

int listTables(const Options &options, const TableArguments &arguments)
{
    return readSheet(options, arguments.target, [&](Workspace &work, const SheetRef &sheet) {
        Json json = Json::array();
        std::vector<std::vector<std::string>> rows;
        for (const TableName &name : tablesOf(sheet)) {
            const TableRows table(work, sheet, name);
            json.push_back({{"block", name.block},
                            {"table", name.table},
                            {"rows", table.count()},
                            {"fields", table.fields()}});
            rows.push_back({name.block, name.table, std::to_string(table.count()),
                            joined(table.fields(), ", ")});
        }
        if (options.json) return printJson(json);
        printTable({"BLOCK", "TABLE", "ROWS", "FIELDS"}, rows);
    });
}

int listRows(const Options &options, const TableArguments &arguments)
{
    return readTable(options, arguments, [&](const TableRows &table) {
        if (!options.json) return printRows(table);
        Json rows = Json::array();
        for (int row = 0; row < table.count(); ++row) rows.push_back(describeRow(table, row));
        printJson(rows);
    });
}

int getRow(const Options &options, const TableArguments &arguments)
{
    return readTable(options, arguments, [&](const TableRows &table) {
        table.requireRow(arguments.row);
        if (!arguments.field.empty()) {
            table.requireField(arguments.field);
            const Lines lines = table.value(arguments.row, arguments.field);
            if (options.json) return printJson(toJson(lines));
            for (const std::string &line : lines) printLine(line);
            return;
        }
        if (options.json) return printJson(describeRow(table, arguments.row));
        std::vector<std::vector<std::string>> rows;
        for (const std::string &field : table.fields())
            rows.push_back({field, joined(table.value(arguments.row, field), " | ")});
        printTable({"FIELD", "VALUE"}, rows);
    });
}

} // namespace app
