#include "image.h"

#include "body_codec.h"
#include "part_row.h"
#include "schema.h"

#include <cstring>
#include <sqlite3.h>

namespace host::store {

void createTables(Database &database)
{
    const std::string numbers = "PRAGMA page_size=" + std::to_string(kPageSize) +
                                ";PRAGMA application_id=" + std::to_string(kApplicationId) +
                                ";PRAGMA user_version=" + std::to_string(kVersion);
    database.run(numbers.c_str());
    database.run("BEGIN");
    for (const char *sql : kCreate) database.run(sql);
}

namespace {

Tally writeMasters(Database &database, Encoder &encoder, const StoredMasters &masters)
{
    Tally tally;
    Statement insert(database, MasterRow::kInsert);
    for (const auto &[id, master] : masters.byId)
        tally.add(write(insert, encoder.row(id, *master)));
    return tally;
}

Tally writeObjects(Database &database, Encoder &encoder, const Part &part)
{
    Tally tally;
    Statement insert(database, ObjectRow::kInsert);
    for (const auto &[ordinal, object] : part.objects)
        tally.add(write(insert, encoder.row(*object)));
    return tally;
}

void writeAttributes(Statement &insert, Tally &tally, std::uint64_t ordinal,
                     const Attributes &attributes)
{
    std::int64_t position = 0;
    for (const Attribute &attribute : attributes)
        tally.add(write(insert, AttributeRow{static_cast<std::int64_t>(ordinal), position++,
                                             attribute.title, attribute.value}));
}

Tally writeAttributes(Database &database, const Part &part)
{
    Tally tally;
    Statement insert(database, AttributeRow::kInsert);
    writeAttributes(insert, tally, 0, part.attributes);
    for (const auto &[ordinal, object] : part.objects)
        writeAttributes(insert, tally, ordinal, object->attributes);
    return tally;
}

// The same content gives the same bytes: the header's counters of changes and the number of the
// library that wrote last are set to fixed values. Readers do not depend on them.
void settleHeader(std::string &bytes)
{
    constexpr char kOne[4] = {0, 0, 0, 1};
    constexpr char kWriter[4] = {0, 0x2e, 0x64, static_cast<char>(0xe8)}; // 3.40.1, in big-endian
    std::memcpy(bytes.data() + 24, kOne, 4);
    std::memcpy(bytes.data() + 92, kOne, 4);
    std::memcpy(bytes.data() + 96, kWriter, 4);
}

} // namespace

std::string bytesOf(Database &database)
{
    sqlite3_int64 size = 0;
    unsigned char *data = sqlite3_serialize(database.handle(), "main", &size, 0);
    if (!data) throw std::bad_alloc{};
    std::string bytes(reinterpret_cast<const char *>(data), static_cast<std::size_t>(size));
    sqlite3_free(data);
    settleHeader(bytes);
    return bytes;
}

Image imageOf(const Part &part)
{
    Database database(":memory:", SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE | SQLITE_OPEN_MEMORY);
    createTables(database);
    StoredMasters masters = mastersOf(part);
    Encoder encoder(part, masters.ids);
    PartRowSource source(part, encoder);
    source.row.masters = writeMasters(database, encoder, masters);
    source.row.objects = writeObjects(database, encoder, part);
    source.row.attributes = writeAttributes(database, part);
    Image image;
    {
        Statement insert(database, PartRow::kInsert);
        image.root = write(insert, source.row);
    }
    database.run("COMMIT");
    image.bytes = bytesOf(database);
    image.masters = std::move(masters.byId);
    return image;
}

} // namespace host::store
