// The records of a part file without the part: a pass over the rows that carry values.
#include "body_codec.h"
#include "database.h"
#include "pack.h"
#include "rows.h"
#include "schema.h"

#include "nxhost/records.h"

#include <sqlite3.h>

#include <cstring>
#include <fstream>
#include <variant>

namespace host::store {

namespace {

using nxhost::StoredRecords;

std::uint32_t bigEndian(const char *bytes)
{
    std::uint32_t value = 0;
    for (int i = 0; i < 4; ++i) value = value << 8 | static_cast<unsigned char>(bytes[i]);
    return value;
}

// The head of a database file says whose it is: https://www.sqlite.org/fileformat.html.
bool isPart(const std::string &path)
{
    char head[100] = "";
    std::ifstream file(path, std::ios::binary);
    if (!file.read(head, sizeof head)) return false;
    return std::memcmp(head, "SQLite format 3", 16) == 0 &&
           bigEndian(head + 68) == kApplicationId && bigEndian(head + 60) == kVersion;
}

nxhost::StoredRecord recordOf(const ObjectRow &row, Udo &udo, References &references)
{
    nxhost::StoredRecord record{static_cast<nxhost::RowNumber>(row.ordinal),
                                std::string(row.className),
                                std::move(udo.ints),
                                std::move(udo.doubles),
                                std::move(udo.strings),
                                {},
                                std::move(references.owned)};
    record.links.reserve(udo.links.size());
    for (std::size_t i = 0; i < udo.links.size(); ++i)
        record.links.push_back(
            {udo.links[i].type, references.linkTargets[i], udo.links[i].sequence});
    return record;
}

void take(const ObjectRow &row, StoredRecords &found)
{
    static const Masters none; // patterns are not read
    const auto number = static_cast<nxhost::RowNumber>(row.ordinal);
    if (row.kind == "sheet") {
        found.sheets.push_back({number, std::string(row.name)});
        return;
    }
    References references;
    Body body = decodeBody(row, 0, none, references);
    if (auto *note = std::get_if<Note>(&body))
        found.notes.push_back({number, std::move(note->lines)});
    else
        found.records.push_back(recordOf(row, std::get<Udo>(body), references));
}

// One transaction: what it reads is of one moment.
class Reading {
public:
    explicit Reading(const std::string &path)
        : m_database(path, SQLITE_OPEN_READONLY | SQLITE_OPEN_NOMUTEX)
    {
        m_database.run("BEGIN");
    }

    // What the part's own row says of the tables.
    PartRow partRow()
    {
        Statement select(m_database, PartRow::kSelect);
        PartRow row;
        if (!select.next()) throw Malformed{"the part's own row is missing"};
        read(select, row);
        row.layers = {}; // its bytes are the statement's
        return row;
    }
    template <class Row, class Take> Tally rows(std::string_view sql, const Take &takeRow)
    {
        Statement select(m_database, sql);
        Tally tally;
        Row row;
        while (select.next()) {
            tally.add(read(select, row));
            takeRow(row);
        }
        return tally;
    }
    void addChecksums(std::string_view sql, Tally &tally)
    {
        Statement select(m_database, sql);
        while (select.next()) tally.add(select.integer());
    }

private:
    Database m_database;
};

// A row that was lost, or that is of another state of the part, shows in the sums.
void require(const Tally &found, const Tally &stored)
{
    if (found != stored) throw Malformed{"rows are missing or of another state of the part"};
}

// Kinds that carry no values, as SQL. What has an unknown kind is read with the rest, and found damaged.
std::string kindsWithoutValues()
{
    std::string list;
    for (std::size_t i = 0; i < std::variant_size_v<Body>; ++i) {
        const std::string kind(storedKind(i));
        if (kind != "udo" && kind != "note" && kind != "sheet")
            list += (list.empty() ? "('" : ",'") + kind + '\'';
    }
    return list + ')';
}

template <class Result, class Body>
std::optional<Result> attempt(const std::string &path, const Body &body)
{
    if (!isPart(path)) return {};
    try {
        Result result;
        body(result);
        return result;
    } catch (const StoreError &) {
        return {};
    } catch (const Malformed &) {
        return {};
    }
}

} // namespace

std::optional<StoredRecords> recordsOf(const std::string &path)
{
    return attempt<StoredRecords>(path, [&](StoredRecords &found) {
        static const std::string others = kindsWithoutValues();
        Reading reading(path);
        Tally tally = reading.rows<ObjectRow>(
            "SELECT * FROM object WHERE kind NOT IN" + others, [&](const ObjectRow &row) {
                if (row.status == static_cast<std::int64_t>(Status::alive)) take(row, found);
            });
        reading.addChecksums("SELECT checksum FROM object WHERE kind IN" + others, tally);
        require(tally, reading.partRow().objects);
    });
}

using Attributes = std::vector<nxhost::StoredAttribute>;

std::optional<Attributes> attributesOf(const std::string &path)
{
    return attempt<Attributes>(path, [&](Attributes &found) {
        Reading reading(path);
        const Tally tally =
            reading.rows<AttributeRow>(AttributeRow::kSelect, [&](const AttributeRow &row) {
                found.push_back({static_cast<nxhost::RowNumber>(row.object), std::string(row.title),
                                 std::string(row.value)});
            });
        require(tally, reading.partRow().attributes);
    });
}

} // namespace host::store

std::optional<nxhost::StoredRecords> nxhost::readRecords(const std::string &path)
{
    return host::store::recordsOf(path);
}

std::optional<std::vector<nxhost::StoredAttribute>> nxhost::readAttributes(const std::string &path)
{
    return host::store::attributesOf(path);
}
