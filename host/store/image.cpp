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

// A database in memory with the tables of an empty part and what fills them: made once, then emptied
// again by taking back what was written.
class Press {
public:
    Press()
        : m_database(":memory:", SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE | SQLITE_OPEN_MEMORY),
          m_tables(m_database), m_begin(m_database, "BEGIN"),
          m_masters(m_database, MasterRow::kInsert), m_objects(m_database, ObjectRow::kInsert),
          m_attributes(m_database, AttributeRow::kInsert), m_part(m_database, PartRow::kInsert),
          m_takeBack(m_database, "ROLLBACK")
    {}

    Image imageOf(const Part &part)
    {
        m_begin.run();
        StoredMasters masters = mastersOf(part);
        Encoder encoder(part, masters.ids);
        PartRowSource source(part, encoder);
        source.row.masters = writeMasters(encoder, masters);
        source.row.objects = writeObjects(encoder, part);
        source.row.attributes = writeAttributes(part);
        Image image;
        image.root = write(m_part, source.row);
        image.bytes = bytesOf(m_database);
        image.masters = std::move(masters.byId);
        m_takeBack.run();
        return image;
    }

private:
    struct Tables {
        explicit Tables(Database &database)
        {
            createTables(database);
            database.run("COMMIT");
        }
    };

    Tally writeMasters(Encoder &encoder, const StoredMasters &masters)
    {
        Tally tally;
        for (const auto &[id, master] : masters.byId)
            tally.add(write(m_masters, encoder.row(id, *master)));
        return tally;
    }

    Tally writeObjects(Encoder &encoder, const Part &part)
    {
        Tally tally;
        for (const auto &[ordinal, object] : part.objects)
            tally.add(write(m_objects, encoder.row(*object)));
        return tally;
    }

    Tally writeAttributes(const Part &part)
    {
        Tally tally;
        writeAttributes(tally, 0, part.attributes);
        for (const auto &[ordinal, object] : part.objects)
            writeAttributes(tally, ordinal, object->attributes);
        return tally;
    }

    void writeAttributes(Tally &tally, std::uint64_t ordinal, const Attributes &attributes)
    {
        std::int64_t position = 0;
        for (const Attribute &attribute : attributes)
            tally.add(
                write(m_attributes, AttributeRow{static_cast<std::int64_t>(ordinal), position++,
                                                 attribute.title, attribute.value}));
    }

    Database m_database;
    Tables m_tables; // before the statements
    Statement m_begin, m_masters, m_objects, m_attributes, m_part, m_takeBack;
};

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
    static std::unique_ptr<Press> ready;
    // One that fails half way is not used again.
    std::unique_ptr<Press> press = ready ? std::move(ready) : std::make_unique<Press>();
    Image image = press->imageOf(part);
    ready = std::move(press);
    return image;
}

} // namespace host::store
