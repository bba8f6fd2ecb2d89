// What a report says of a sheet.
#pragma once

#include "app/output.h"
#include "app/workspace.h"

#include <string>
#include <vector>

namespace app::fleet {

// Columns by their names; "*" and "?" stand for any text and any character. None: all of them.
class Columns {
public:
    explicit Columns(std::vector<std::string> patterns) : m_patterns(std::move(patterns)) {}
    bool holds(const std::string &column) const;
    bool needsDefinitions() const { return holds("state"); } // those that are loaded

private:
    std::vector<std::string> m_patterns;
};

// The columns of every row that are no field values, in their order.
const std::vector<std::string> &fixedColumns();

// An object a sheet: "file", "sheet", "format", "size", "label", "state", "blocks" (a list), "values"
// ("BLOCK.FIELD" to a text or a list of lines) and "tables" ("BLOCK.TABLE" to a list of rows, each field
// names to values). Of two blocks with one id the first counts, as everywhere.
Json sheetRows(Workspace &work, const Columns &columns);

} // namespace app::fleet
