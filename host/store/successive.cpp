#include "successive.h"

#include <algorithm>
#include <cstring>
#include <new>
#include <sqlite3.h>

namespace host::store {

namespace {

constexpr const char *kName = "qelfmt-memory";

struct File : sqlite3_file {
    std::string_view bytes;
};

std::string_view bytesOf(sqlite3_file *file) { return static_cast<File *>(file)->bytes; }

int close(sqlite3_file *) { return SQLITE_OK; }

int read(sqlite3_file *file, void *data, int size, sqlite3_int64 at)
{
    const std::string_view bytes = bytesOf(file);
    const auto from = std::min(static_cast<std::size_t>(at), bytes.size());
    const auto wanted = static_cast<std::size_t>(size);
    const std::size_t there = std::min(wanted, bytes.size() - from);
    if (there) std::memcpy(data, bytes.data() + from, there);
    if (there == wanted) return SQLITE_OK;
    std::memset(static_cast<char *>(data) + there, 0, wanted - there);
    return SQLITE_IOERR_SHORT_READ;
}

int write(sqlite3_file *, const void *, int, sqlite3_int64) { return SQLITE_READONLY; }
int truncate(sqlite3_file *, sqlite3_int64) { return SQLITE_READONLY; }
int sync(sqlite3_file *, int) { return SQLITE_OK; }

int fileSize(sqlite3_file *file, sqlite3_int64 *size)
{
    *size = static_cast<sqlite3_int64>(bytesOf(file).size());
    return SQLITE_OK;
}

int lock(sqlite3_file *, int) { return SQLITE_OK; }

int checkReserved(sqlite3_file *, int *reserved)
{
    *reserved = 0;
    return SQLITE_OK;
}

int control(sqlite3_file *, int, void *) { return SQLITE_NOTFOUND; }
int sectorSize(sqlite3_file *) { return 0; }
int characteristics(sqlite3_file *) { return 0; }

// Whole pages are not copied: the database looks at them where they are.
int fetch(sqlite3_file *file, sqlite3_int64 at, int size, void **data)
{
    const std::string_view bytes = bytesOf(file);
    const bool there = static_cast<std::size_t>(at + size) <= bytes.size();
    *data = there ? const_cast<char *>(bytes.data() + at) : nullptr;
    return SQLITE_OK;
}

int unfetch(sqlite3_file *, sqlite3_int64, void *) { return SQLITE_OK; }

// In SQLite's order; there is no shared memory.
constexpr sqlite3_io_methods kMethods{
    3,       close,         read,    write,      truncate,        sync,    fileSize, lock,
    lock,    checkReserved, control, sectorSize, characteristics, nullptr, nullptr,  nullptr,
    nullptr, fetch,         unfetch};

int open(sqlite3_vfs *, const char *, sqlite3_file *file, int flags, int *outFlags)
{
    file->pMethods = nullptr;
    if ((flags & SQLITE_OPEN_MAIN_DB) == 0) return SQLITE_CANTOPEN;
    (new (file) File{})->pMethods = &kMethods;
    if (outFlags) *outFlags = SQLITE_OPEN_READONLY;
    return SQLITE_OK;
}

int remove(sqlite3_vfs *, const char *, int) { return SQLITE_READONLY; }

// Neither journal nor write-ahead log: the bytes are all there is.
int access(sqlite3_vfs *, const char *, int, int *found)
{
    *found = 0;
    return SQLITE_OK;
}

int fullName(sqlite3_vfs *, const char *name, int size, char *whole)
{
    sqlite3_snprintf(size, whole, "%s", name);
    return SQLITE_OK;
}

sqlite3_vfs *make()
{
    static sqlite3_vfs vfs = *sqlite3_vfs_find(nullptr);
    vfs.szOsFile = static_cast<int>(sizeof(File));
    vfs.pNext = nullptr;
    vfs.zName = kName;
    vfs.xOpen = open;
    vfs.xDelete = remove;
    vfs.xAccess = access;
    vfs.xFullPathname = fullName;
    sqlite3_vfs_register(&vfs, 0);
    return &vfs;
}

const char *memoryVfs()
{
    static const sqlite3_vfs *const registered = make();
    return registered->zName;
}

std::unique_ptr<Database> connect()
{
    auto database = std::make_unique<Database>("parts", SQLITE_OPEN_READONLY, memoryVfs());
    database->run("PRAGMA mmap_size=1"); // any: fetch() says where there is something
    return database;
}

std::string tablesOf(Database &database)
{
    std::string tables;
    Statement &select = database.kept("SELECT rootpage,name,sql FROM sqlite_schema ORDER BY rowid");
    while (select.next()) {
        tables.append(std::to_string(select.integer())).append(1, ' ');
        tables.append(select.text()).append(1, '\n');
        tables.append(select.text()).append(1, '\n');
    }
    return tables;
}

} // namespace

Database &SuccessiveDatabase::exchange(std::string_view bytes)
{
    if (m_database && takes(bytes)) return *m_database;
    m_database = connect();
    m_tables.clear();
    takes(bytes);
    return *m_database;
}

// False when its tables are others than those that the connection knows.
bool SuccessiveDatabase::takes(std::string_view bytes)
{
    sqlite3 *const handle = m_database->handle();
    sqlite3_file *file = nullptr;
    m_database->check(sqlite3_file_control(handle, "main", SQLITE_FCNTL_FILE_POINTER, &file));
    static_cast<File *>(file)->bytes = bytes;
    // The pages of the file before must not be taken for this one's.
    m_database->check(sqlite3_file_control(handle, "main", SQLITE_FCNTL_RESET_CACHE, nullptr));
    std::string tables = tablesOf(*m_database);
    if (m_tables.empty()) m_tables = tables;
    return tables == m_tables;
}

} // namespace host::store
