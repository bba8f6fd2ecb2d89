// A report read back: the rows of a CSV or JSON file that 'qelfmt report' wrote and somebody has changed.
#pragma once

#include "app/output.h"

#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace app::fleet {

struct ReportRow {
    std::string place; // "report.csv, row 3"
    std::string sheet;
    bool failed = false;                                    // the drawing could not be read then
    std::vector<std::pair<std::string, std::string>> fixed; // columns that are no values, as in CSV
    std::vector<std::pair<std::string, std::string>> values; // "BLOCK.FIELD" to lines, as in CSV
    std::optional<Json> tables;                              // of a JSON report
};

using RowsOfFiles = std::map<std::string, std::vector<ReportRow>>; // by normal paths

// Whether the first line has the columns "file" and "sheet", or the first row those members. What cannot
// be read is no report.
bool isReport(const std::string &path);
// Columns that no report has, rows without a file and sheets that stand there twice are Problems that
// list them all.
RowsOfFiles readReport(const std::string &path);

} // namespace app::fleet
