// A report in its forms: a table to look at, CSV to change and fill in again, JSON for programs.
#pragma once

#include "app/fleet/sheet_rows.h"

#include <cstdio>
#include <functional>
#include <string>
#include <string_view>

namespace app::fleet {

// Calls `take` with every row, each time it is called.
using RowSource = std::function<void(const std::function<void(const Json &row)> &take)>;

enum class ReportForm {
    table,
    csv,     // a column a field, "BLOCK.FIELD"; RFC 4180
    json,    // a list of the rows as they are
    records, // an object of drawings to their values: what `stamp --data` takes
};

// The same with every drawing that has values, and its drawingText().
using DrawingSource = std::function<void(
    const std::function<void(const std::string &file, std::string_view text)> &take)>;

// The rows of one drawing as a run keeps them: as a list in JSON or, for records, a line for each row with
// values, of which the report takes the values as they stand there.
std::string drawingText(ReportForm form, const Json &rows);
void writeRecords(const DrawingSource &drawings, std::FILE *to);
// All other forms.
void writeReport(ReportForm form, const Columns &columns, const RowSource &rows, std::FILE *to);

// On one line. Bytes that are no UTF-8, as old texts may hold, are replaced: a report never fails for
// them.
std::string compact(const Json &json);
// The cell of a CSV report: lines of a value with line breaks between them.
std::string cellOf(const Json &value);
// The column of a fixed name.
std::string fixedCell(const Json &row, const std::string &column);

} // namespace app::fleet
