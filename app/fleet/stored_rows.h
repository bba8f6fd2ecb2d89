// The rows of a report straight from the stored records: many times as fast as opening the drawing.
#pragma once

#include "app/fleet/sheet_rows.h"

#include <optional>
#include <string>

namespace app::fleet {

// Whether the records say all that the columns ask for.
bool storedRowsSuffice(const Columns &columns);

// What sheetRows() says of the same drawing. Nothing when only the library can tell: records of older
// generations, references inside values, and whatever is damaged.
std::optional<Json> storedSheetRows(const std::string &path, const Columns &columns);

} // namespace app::fleet
