// libFuzzer: opening a part never crashes, hangs or asks for more memory than the file justifies, and
// what was opened can be written and opened again to the same bytes. Nor does a salvage, and what it makes
// can be opened.
#include "model/session.h"
#include "store/image.h"
#include "store/part_store.h"
#include "store/salvage.h"
#include "tests/host/store_seal.h"

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <random>
#include <string>
#include <string_view>

using namespace host;

extern "C" std::size_t LLVMFuzzerMutate(std::uint8_t *data, std::size_t size, std::size_t maxSize);

namespace {

// --- opening ------------------------------------------------------------------------------------

std::string writtenAgain(std::string_view bytes)
{
    store::LoadedPart loaded = store::loadImage(bytes, "fuzz.prt");
    Session &session = Session::get();
    Part &part = session.adoptPart(std::move(loaded.part), std::move(loaded.objects));
    std::string image = store::imageOf(part).bytes;
    session.closePart(part);
    return image;
}

void open(std::string_view bytes)
{
    std::string image;
    try {
        image = writtenAgain(bytes);
    } catch (const store::StoreError &error) {
        if (error.message.rfind("fuzz.prt: ", 0) != 0) std::abort(); // every message names the file
        return;
    }
    if (writtenAgain(image) != image) std::abort(); // what is written must be accepted
}

// A sound part loses nothing; whatever else comes, the new part is one.
void salvage(std::string_view bytes)
{
    store::Examination examined;
    try {
        examined = store::examineImage(bytes, "fuzz.prt");
    } catch (const store::StoreError &error) {
        if (error.message.rfind("fuzz.prt: ", 0) != 0) std::abort();
        return;
    }
    if (examined.image.empty()) return;
    const std::string image = writtenAgain(examined.image);
    if (!store::examineImage(image, "fuzz.prt").refusal.empty()) std::abort();
    if (!examined.refusal.empty()) return;
    for (const store::Finding &finding : examined.findings) // but for pages that nobody reads
        if (!finding.mended.empty() && finding.text.rfind("its pages: ", 0) != 0) std::abort();
    if (image != writtenAgain(bytes)) std::abort();
}

// --- changing parts from within -----------------------------------------------------------------

// A copy of the bytes as a database that may be changed.
class Workpiece {
public:
    explicit Workpiece(std::string_view bytes)
    {
        sqlite3_open(":memory:", &m_database);
        auto *copy = static_cast<unsigned char *>(sqlite3_malloc64(bytes.size() + 1));
        std::memcpy(copy, bytes.data(), bytes.size());
        const auto size = static_cast<sqlite3_int64>(bytes.size());
        sqlite3_deserialize(m_database, "main", copy, size, size,
                            SQLITE_DESERIALIZE_FREEONCLOSE | SQLITE_DESERIALIZE_RESIZEABLE);
        sqlite3_progress_handler(
            m_database, 100000, [](void *) { return 1; }, nullptr);
    }
    ~Workpiece() { sqlite3_close(m_database); }
    Workpiece(const Workpiece &) = delete;
    Workpiece &operator=(const Workpiece &) = delete;

    bool run(const std::string &sql)
    {
        return sqlite3_exec(m_database, sql.c_str(), nullptr, nullptr, nullptr) == SQLITE_OK;
    }
    bool seal()
    {
        return run("BEGIN") && store_test::Sealer(m_database).sealAll() && run("COMMIT");
    }
    std::string bytes()
    {
        sqlite3_int64 size = 0;
        const auto *data = reinterpret_cast<const char *>(
            sqlite3_serialize(m_database, "main", &size, SQLITE_SERIALIZE_NOCOPY));
        return data ? std::string(data, static_cast<std::size_t>(size)) : std::string();
    }

    // One value of one row, changed the way libFuzzer changes bytes.
    bool changeValue(std::minstd_rand &random)
    {
        static constexpr struct {
            const char *table;
            const char *columns[18];
            unsigned count;
        } kTables[] = {
            {"object",
             {"numbers", "links", "owned", "texts", "kind", "class", "name", "ordinal", "status",
              "layer", "color", "view", "owner", "refers", "numbers", "links", "texts", "owned"},
             18},
            {"attribute", {"title", "value", "object", "position"}, 4},
            {"pattern_master", {"shapes", "texts", "fonts", "file_name", "units", "id"}, 6},
            {"part",
             {"layers", "units", "current_sheet", "font_table", "work_layer", "next_ordinal",
              "next_link_sequence"},
             7}};
        const auto &table = kTables[random() % 4];
        const std::string column = table.columns[random() % table.count];
        const std::string row = " FROM " + std::string(table.table) +
                                " ORDER BY checksum LIMIT 1 OFFSET " +
                                std::to_string(random() % 16);
        sqlite3_stmt *select = nullptr;
        sqlite3_prepare_v2(m_database, ("SELECT " + column + ",checksum" + row).c_str(), -1,
                           &select, nullptr);
        bool changed = false;
        if (select && sqlite3_step(select) == SQLITE_ROW)
            changed = store(table.table, column, select, random);
        sqlite3_finalize(select);
        return changed;
    }

private:
    bool store(const std::string &table, const std::string &column, sqlite3_stmt *from,
               std::minstd_rand &random)
    {
        sqlite3_stmt *update = nullptr;
        const std::string sql = "UPDATE " + table + " SET " + column + "=?1 WHERE checksum=?2";
        if (sqlite3_prepare_v2(m_database, sql.c_str(), -1, &update, nullptr) != SQLITE_OK)
            return false;
        std::uint8_t value[4096] = {};
        const int type = sqlite3_column_type(from, 0);
        std::size_t size = 0;
        if (type == SQLITE_INTEGER) {
            bindNumber(update, sqlite3_column_int64(from, 0), random);
        } else {
            size = std::min<std::size_t>(static_cast<std::size_t>(sqlite3_column_bytes(from, 0)),
                                         3000);
            if (size) std::memcpy(value, sqlite3_column_blob(from, 0), size);
            size = LLVMFuzzerMutate(value, size, sizeof value);
            if (type == SQLITE_BLOB)
                sqlite3_bind_blob(update, 1, value, static_cast<int>(size), nullptr);
            else
                sqlite3_bind_text(update, 1, reinterpret_cast<const char *>(value),
                                  static_cast<int>(size), nullptr);
        }
        sqlite3_bind_int64(update, 2, sqlite3_column_int64(from, 1));
        const bool done = sqlite3_step(update) == SQLITE_DONE;
        sqlite3_finalize(update);
        return done;
    }
    static void bindNumber(sqlite3_stmt *update, sqlite3_int64 value, std::minstd_rand &random)
    {
        const sqlite3_int64 choices[] = {value + 1,
                                         value - 1,
                                         0,
                                         static_cast<int>(random() % 20),
                                         -1,
                                         value ^ 4,
                                         1LL << (random() % 64)};
        sqlite3_bind_int64(update, 1, choices[random() % 7]);
    }

    sqlite3 *m_database = nullptr;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const std::string_view bytes{reinterpret_cast<const char *>(data), size};
    open(bytes);
    salvage(bytes);
    return 0;
}

// A third of the changes hit any byte, a third any byte with the seal renewed, a third a value.
extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t *data, std::size_t size,
                                               std::size_t maxSize, unsigned seed)
{
    std::minstd_rand random(seed);
    const unsigned way = random() % 3;
    if (way < 2) size = LLVMFuzzerMutate(data, size, maxSize);
    if (way == 0) return size;
    Workpiece workpiece({reinterpret_cast<const char *>(data), size});
    bool good = true;
    if (way == 2)
        for (unsigned n = 1 + random() % 3; n; --n) good = workpiece.changeValue(random) && good;
    if (!good || !workpiece.seal()) return size;
    const std::string bytes = workpiece.bytes();
    if (bytes.empty() || bytes.size() > maxSize) return size;
    std::memcpy(data, bytes.data(), bytes.size());
    return bytes.size();
}
