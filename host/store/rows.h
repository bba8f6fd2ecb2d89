// The rows of a part file as they are bound and read: values only, texts owned by somebody else.
// One list of columns a row serves binding, reading and the checksum.
#pragma once

#include <cstdint>
#include <string_view>

namespace host::store {

class Database;
class Statement;

struct ObjectRow {
    static constexpr std::string_view kTable = "object";
    static constexpr std::string_view kInsert =
        "INSERT OR REPLACE INTO object VALUES(?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?)";
    static constexpr std::string_view kSelect = "SELECT * FROM object ORDER BY ordinal";

    std::int64_t ordinal = 0;
    std::string_view kind;
    std::string_view className;
    std::string_view name;
    std::int64_t status = 0;
    std::int64_t layer = 0;
    std::int64_t color = 0;
    std::int64_t lineFont = 0;
    std::int64_t lineWidth = 0;
    std::int64_t blanked = 0;
    std::int64_t view = 0;
    std::int64_t owner = 0;
    std::int64_t refers = 0; // sheet: its view; view: its sheet; pattern: its master
    std::string_view links;
    std::string_view owned;
    std::string_view texts;
    std::string_view numbers;

    template <class Visitor> void columns(Visitor &&visit)
    {
        visit.number(ordinal), visit.text(kind), visit.text(className), visit.text(name);
        visit.number(status), visit.number(layer), visit.number(color), visit.number(lineFont);
        visit.number(lineWidth), visit.number(blanked), visit.number(view), visit.number(owner);
        visit.number(refers), visit.text(links), visit.text(owned), visit.text(texts);
        visit.blob(numbers);
    }
};

struct AttributeRow {
    static constexpr std::string_view kTable = "attribute";
    static constexpr std::string_view kInsert =
        "INSERT OR REPLACE INTO attribute VALUES(?,?,?,?,?)";
    static constexpr std::string_view kSelect = "SELECT * FROM attribute ORDER BY object,position";

    std::int64_t object = 0; // 0: of the part
    std::int64_t position = 0;
    std::string_view title;
    std::string_view value;

    template <class Visitor> void columns(Visitor &&visit)
    {
        visit.number(object), visit.number(position), visit.text(title), visit.text(value);
    }
};

struct MasterRow {
    static constexpr std::string_view kTable = "pattern_master";
    static constexpr std::string_view kInsert =
        "INSERT OR REPLACE INTO pattern_master VALUES(?,?,?,?,?,?,?)";
    static constexpr std::string_view kSelect = "SELECT * FROM pattern_master ORDER BY id";

    std::int64_t id = 0;
    std::string_view fileName;
    std::int64_t units = 0;
    std::string_view fonts;
    std::string_view texts;
    std::string_view shapes;

    template <class Visitor> void columns(Visitor &&visit)
    {
        visit.number(id), visit.text(fileName), visit.number(units), visit.text(fonts);
        visit.text(texts), visit.blob(shapes);
    }
};

// How many rows a table has and the sum of their checksums: rows that were lost, added or put back
// from an older state of the file show here.
struct Tally {
    std::int64_t rows = 0;
    std::int64_t sum = 0;

    void add(std::int64_t checksum) { ++rows, sum = wrapped(checksum, 1); }
    void subtract(std::int64_t checksum) { --rows, sum = wrapped(checksum, -1); }
    bool operator==(const Tally &) const = default;

private:
    std::int64_t wrapped(std::int64_t checksum, int sign) const
    {
        const auto by = static_cast<std::uint64_t>(checksum);
        const auto total = static_cast<std::uint64_t>(sum);
        return static_cast<std::int64_t>(sign > 0 ? total + by : total - by);
    }
};

// The one row about the part itself. Its checksum covers, through the sums, the whole content.
struct PartRow {
    static constexpr std::string_view kTable = "part";
    static constexpr std::string_view kInsert =
        "INSERT OR REPLACE INTO part VALUES(?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?)";
    static constexpr std::string_view kSelect = "SELECT * FROM part ORDER BY id";

    std::int64_t id = 1;
    std::int64_t units = 0;
    std::int64_t patternData = 0;
    std::int64_t currentSheet = 0;
    std::int64_t fontTable = 0;
    std::int64_t workLayer = 0;
    std::string_view layers;
    std::int64_t nextOrdinal = 0;
    std::int64_t nextLinkSequence = 0;
    Tally objects;
    Tally attributes;
    Tally masters;

    template <class Visitor> void columns(Visitor &&visit)
    {
        visit.number(id), visit.number(units), visit.number(patternData);
        visit.number(currentSheet), visit.number(fontTable), visit.number(workLayer);
        visit.blob(layers), visit.number(nextOrdinal), visit.number(nextLinkSequence);
        for (Tally *tally : {&objects, &attributes, &masters})
            visit.number(tally->rows), visit.number(tally->sum);
    }
};

// Binds the row and its checksum and runs the statement. Result: the checksum.
template <class Row> std::int64_t write(Statement &insert, Row row);

// What the row's checksum would be.
template <class Row> std::int64_t checksumOf(Row row);

// The row that the statement stands on and its checksum, which has been verified (Malformed).
template <class Row> std::int64_t read(Statement &select, Row &row);

} // namespace host::store
