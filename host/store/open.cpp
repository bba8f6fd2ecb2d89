#include "open.h"

#include "pack.h"
#include "schema.h"

#include "uf_part.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <iterator>
#include <sqlite3.h>
#include <sys/stat.h>

namespace host::store {

namespace {

constexpr int kHeaderSize = 100;

// The database's own header, read through the connection's file and under its lock.
class Header {
public:
    explicit Header(Database &database)
    {
        sqlite3_file *file = nullptr;
        database.check(
            sqlite3_file_control(database.handle(), "main", SQLITE_FCNTL_FILE_POINTER, &file));
        if (!file || !file->pMethods || file->pMethods->xFileSize(file, &m_size) != SQLITE_OK ||
            m_size < kHeaderSize ||
            file->pMethods->xRead(file, m_bytes, kHeaderSize, 0) != SQLITE_OK)
            throw damaged(database.path(), "its beginning cannot be read");
    }

    std::int64_t size() const { return m_size; }
    std::int64_t pages() const { return at(28); }
    std::int64_t version() const { return at(60); }
    std::int64_t applicationId() const { return at(68); }

    // What is the same in all our files: a change here could make SQLite treat the pages in another
    // way the next time it writes.
    bool settled() const
    {
        static constexpr struct {
            int offset;
            std::int64_t value;
        } kFixed[] = {{16, kPageSize << 16 | 0x0101}, // both format versions: rollback journal
                      {20, 0x00402020},               // no reserved bytes, payload fractions
                      {44, 4},                        // schema format
                      {48, 0},                        // cache size
                      {52, 0},                        // no vacuum by itself
                      {56, 1},                        // UTF-8
                      {64, 0},                        // nor incremental
                      {72, 0},
                      {76, 0},
                      {80, 0},
                      {84, 0},
                      {88, 0}};
        return std::all_of(std::begin(kFixed), std::end(kFixed),
                           [&](const auto &field) { return at(field.offset) == field.value; });
    }

private:
    std::int64_t at(int offset) const
    {
        std::int64_t value = 0;
        for (int i = 0; i < 4; ++i) value = value << 8 | m_bytes[offset + i];
        return value;
    }

    unsigned char m_bytes[kHeaderSize] = {};
    sqlite3_int64 m_size = 0;
};

// The tables are exactly ours, letter by letter: no other table, no view, no trigger.
void verifyTables(Database &database)
{
    Statement &select = database.kept("SELECT type,name,sql FROM sqlite_schema ORDER BY rowid");
    try {
        for (std::size_t i = 0; i < std::size(kTables); ++i)
            if (!select.next() || select.text() != "table" || select.text() != kTables[i] ||
                select.text() != kCreate[i])
                throw Malformed{"its tables are not those of a part"};
        if (select.next()) throw Malformed{"it has tables that no part has"};
    } catch (const Malformed &trouble) {
        throw damaged(database.path(), trouble.what);
    }
}

} // namespace

void requireFile(const std::string &path)
{
    struct stat info;
    if (::stat(path.c_str(), &info) != 0)
        throw errno == ENOENT || errno == ENOTDIR ? notFound(path)
                                                  : cannotRead(path, std::strerror(errno));
    if (!S_ISREG(info.st_mode)) throw notAPart(path, "it is no file");
    if (info.st_size == 0) throw notAPart(path, "it is empty");
}

void verifyPages(Database &database)
{
    Statement check(database, "PRAGMA quick_check(1)");
    if (!check.next() || check.text() != "ok")
        throw damaged(database.path(), "its pages are not in order");
}

std::int64_t verifyFormat(Database &database)
{
    const std::string &path = database.path();
    const Header header(database);
    if (header.applicationId() != kApplicationId)
        throw notAPart(path, "it is another program's database");
    if (header.version() > kVersion)
        throw StoreError{UF_PART_err_newer_version,
                         path + ": the part was saved by a newer version (file version " +
                             std::to_string(header.version()) + ", this program reads up to " +
                             std::to_string(kVersion) +
                             "). Open it with that version or a later one."};
    if (header.version() < 1 || !header.settled())
        throw damaged(path, "its header has impossible values");
    if (header.size() != header.pages() * kPageSize)
        throw damaged(path, "it is " + std::to_string(header.size()) + " bytes long where " +
                                std::to_string(header.pages() * kPageSize) + " were stored");
    verifyTables(database);
    return header.size();
}

} // namespace host::store
