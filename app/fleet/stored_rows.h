// The rows of a report straight from the stored records: many times as fast as opening the drawing.
#pragma once

#include "app/fleet/report_output.h"
#include "app/fleet/sheet_rows.h"

#include <memory>
#include <optional>
#include <string>

namespace app::fleet {

// Whether the records say all that the columns ask for.
bool storedRowsSuffice(const Columns &columns);

// Reads one drawing after another.
class StoredRows {
public:
    StoredRows(const Columns &columns, ReportForm form);
    ~StoredRows();
    StoredRows(const StoredRows &) = delete;
    StoredRows &operator=(const StoredRows &) = delete;

    // What drawingText() says of the drawing's sheetRows(). Nothing when only the library can tell:
    // records of older generations, references inside values, and whatever is damaged.
    std::optional<std::string> read(const std::string &path);

private:
    class Reader;
    std::unique_ptr<Reader> m_reader;
};

} // namespace app::fleet
