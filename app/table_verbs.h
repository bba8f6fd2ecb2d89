// What the verbs of the family "table" are given.
#pragma once

#include "app/options.h"
#include "app/sheet_command.h"
#include "app/table_rows.h"

#include <functional>
#include <string>
#include <vector>

namespace app {

struct TableArguments {
    SheetTarget target;
    std::string table;
    std::vector<int> rows;
    int row = 0;
    int to = 0;
    int first = -1; // hide: so many of the first rows
    std::string field;
    std::vector<std::string> lines; // of a value, or FIELD=VALUE
    bool clear = false;
    std::string file;
    bool force = false;
    bool strict = false;
    bool replace = false;
    bool visible = false;
    bool share = false;
};

// Opens the sheet and finds the table; the second form saves afterwards.
int readTable(const Options &options, const TableArguments &arguments,
              const std::function<void(const TableRows &)> &read);
int changeTable(const Options &options, const TableArguments &arguments,
                const std::function<void(const TableRows &)> &change);

// Sets one value and tells when it does not fit; with `strict` that ends the command.
void setRowValue(const Options &options, const TableArguments &arguments, const TableRows &table,
                 const TableRow &row, const std::string &field, const Lines &lines);

// table_show.cpp
int listTables(const Options &options, const TableArguments &arguments);
int listRows(const Options &options, const TableArguments &arguments);
int getRow(const Options &options, const TableArguments &arguments);
// table_csv.cpp
int importRows(const Options &options, const TableArguments &arguments);
int exportRows(const Options &options, const TableArguments &arguments);

} // namespace app
