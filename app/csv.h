// Comma-separated values after RFC 4180, in UTF-8: every cell a text, leading zeros and line breaks kept.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace app {

using CsvRow = std::vector<std::string>;

// Takes both kinds of line ends and a byte order mark. Rows of another length than the first, quotes
// left open and bytes that are no UTF-8 are a Problem with `name` and the line.
std::vector<CsvRow> parseCsv(std::string_view text, const std::string &name);
std::vector<CsvRow> readCsv(const std::string &path);

// Lines end in CR LF; a cell is quoted where it has to be.
std::string writeCsv(const std::vector<CsvRow> &rows);

} // namespace app
