#include "image.h"

#include "body_codec.h"
#include "checksum.h"
#include "page_writer.h"
#include "part_row.h"
#include "schema.h"

#include <cstring>
#include <sqlite3.h>
#include <type_traits>

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

namespace {

// The tables of a part without rows, made once, and the first page of each.
struct EmptyTables {
    std::string bytes;
    PageWriter::Number part = 0, objects = 0, attributes = 0, masters = 0;

    static const EmptyTables &get()
    {
        static const EmptyTables tables;
        return tables;
    }

private:
    EmptyTables()
    {
        Database database(":memory:",
                          SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE | SQLITE_OPEN_MEMORY);
        createTables(database);
        database.run("COMMIT");
        bytes = bytesOf(database);
        part = root(database, PartRow::kTable);
        objects = root(database, ObjectRow::kTable);
        attributes = root(database, AttributeRow::kTable);
        masters = root(database, MasterRow::kTable);
    }

    static PageWriter::Number root(Database &database, std::string_view table)
    {
        Statement select(database, "SELECT rootpage FROM sqlite_schema WHERE name=?");
        select.bindText(table);
        if (!select.next()) database.fail();
        return static_cast<PageWriter::Number>(select.integer());
    }
};

struct TooLong {
    std::string_view table;
    std::int64_t row;
};

// The rows of one table, in rising order of their keys.
template <class Row> class TableWriter {
public:
    TableWriter(std::string &file, PageWriter::Number root)
        : m_pages(file, root, kWithKey ? PageWriter::Kind::table : PageWriter::Kind::index)
    {}

    std::int64_t add(Row row)
    {
        m_row.start();
        Recorder recorder{m_row, Checksum(Row::kTable)};
        row.columns(recorder);
        const std::int64_t checksum = recorder.checksum.value();
        m_row.number(checksum);
        if (m_row.size() > kMostBytes) throw TooLong{Row::kTable, recorder.key};
        m_pages.add(recorder.key, m_row);
        m_tally.add(checksum);
        return checksum;
    }
    Tally finish()
    {
        m_pages.finish();
        return m_tally;
    }

private:
    static constexpr std::size_t kMostBytes = 900000000; // a database reads no more than 10^9

    // Its first column is the key, which stands beside the row.
    static constexpr bool kWithKey = !std::is_same_v<Row, AttributeRow>;

    struct Recorder {
        RowBytes &row;
        Checksum checksum;
        std::int64_t key = 0;
        bool atKey = kWithKey;

        void number(std::int64_t value)
        {
            checksum.number(value);
            if (!atKey) return row.number(value);
            key = value, atKey = false;
            row.null();
        }
        void text(std::string_view value) { row.text(value), checksum.bytes(value); }
        void blob(std::string_view value) { row.blob(value), checksum.bytes(value); }
    };

    PageWriter m_pages;
    RowBytes m_row;
    Tally m_tally;
};

Tally writeMasters(std::string &file, Encoder &encoder, const StoredMasters &masters)
{
    TableWriter<MasterRow> table(file, EmptyTables::get().masters);
    for (const auto &[id, master] : masters.byId) table.add(encoder.row(id, *master));
    return table.finish();
}

Tally writeObjects(std::string &file, Encoder &encoder, const Part &part)
{
    TableWriter<ObjectRow> table(file, EmptyTables::get().objects);
    for (const auto &[ordinal, object] : part.objects) table.add(encoder.row(*object));
    return table.finish();
}

Tally writeAttributes(std::string &file, const Part &part)
{
    TableWriter<AttributeRow> table(file, EmptyTables::get().attributes);
    const auto add = [&](std::uint64_t ordinal, const Attributes &attributes) {
        std::int64_t position = 0;
        for (const Attribute &attribute : attributes)
            table.add(
                {static_cast<std::int64_t>(ordinal), position++, attribute.title, attribute.value});
    };
    add(0, part.attributes);
    for (const auto &[ordinal, object] : part.objects) add(ordinal, object->attributes);
    return table.finish();
}

void storePageCount(std::string &file)
{
    const std::size_t pages = file.size() / kPageSize;
    for (int i = 0; i < 4; ++i) file[28 + i] = static_cast<char>(pages >> (24 - 8 * i));
}

Image imageOfRows(const Part &part)
{
    Image image;
    image.bytes = EmptyTables::get().bytes;
    StoredMasters masters = mastersOf(part);
    Encoder encoder(part, masters.ids);
    PartRowSource source(part, encoder);
    source.row.masters = writeMasters(image.bytes, encoder, masters);
    source.row.objects = writeObjects(image.bytes, encoder, part);
    source.row.attributes = writeAttributes(image.bytes, part);
    TableWriter<PartRow> table(image.bytes, EmptyTables::get().part);
    image.root = table.add(source.row);
    table.finish();
    storePageCount(image.bytes);
    image.masters = std::move(masters.byId);
    return image;
}

} // namespace

Image imageOf(const Part &part)
{
    try {
        return imageOfRows(part);
    } catch (const TooLong &text) {
        throw cannotWrite(part.path, std::string(text.table) + " " + std::to_string(text.row) +
                                         " has more than 900,000,000 bytes: shorten its texts");
    }
}

} // namespace host::store
