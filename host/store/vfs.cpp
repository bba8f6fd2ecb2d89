#include "vfs.h"

#include "file_layer.h"

#include <cerrno>
#include <new>
#include <sqlite3.h>
#include <string>

namespace host::store {

namespace {

constexpr const char *kName = "qelfmt-steps";

sqlite3_vfs *base()
{
    static sqlite3_vfs *const found = sqlite3_vfs_find(nullptr);
    return found;
}

// Followed in memory by the file of the VFS below.
struct File : sqlite3_file {
    const char *path; // SQLite keeps it while the file is open
    bool journal;

    sqlite3_file *below() { return reinterpret_cast<sqlite3_file *>(this + 1); }
};

File &self(sqlite3_file *file) { return *static_cast<File *>(file); }
sqlite3_file *below(sqlite3_file *file) { return self(file).below(); }

int announce(const char *inDatabase, const char *inJournal, File &file)
{
    return files::before(file.journal ? inJournal : inDatabase, file.path ? file.path : "");
}

int writeFailure(int number) { return number == ENOSPC ? SQLITE_FULL : SQLITE_IOERR_WRITE; }

int close(sqlite3_file *file) { return below(file)->pMethods->xClose(below(file)); }

int read(sqlite3_file *file, void *data, int size, sqlite3_int64 at)
{
    return below(file)->pMethods->xRead(below(file), data, size, at);
}

int write(sqlite3_file *file, const void *data, int size, sqlite3_int64 at)
{
    const int number = announce("write database", "write journal", self(file));
    if (number > 0) return writeFailure(number);
    const int written = below(file)->pMethods->xWrite(below(file), data,
                                                      number == files::kTorn ? size / 2 : size, at);
    return number ? SQLITE_IOERR_WRITE : written;
}

int truncate(sqlite3_file *file, sqlite3_int64 size)
{
    if (announce("cut database", "cut journal", self(file))) return SQLITE_IOERR_TRUNCATE;
    return below(file)->pMethods->xTruncate(below(file), size);
}

int sync(sqlite3_file *file, int flags)
{
    if (announce("sync database", "sync journal", self(file))) return SQLITE_IOERR_FSYNC;
    return below(file)->pMethods->xSync(below(file), flags);
}

int fileSize(sqlite3_file *file, sqlite3_int64 *size)
{
    return below(file)->pMethods->xFileSize(below(file), size);
}

int lock(sqlite3_file *file, int level) { return below(file)->pMethods->xLock(below(file), level); }

int unlock(sqlite3_file *file, int level)
{
    return below(file)->pMethods->xUnlock(below(file), level);
}

int checkReserved(sqlite3_file *file, int *reserved)
{
    return below(file)->pMethods->xCheckReservedLock(below(file), reserved);
}

int control(sqlite3_file *file, int operation, void *argument)
{
    return below(file)->pMethods->xFileControl(below(file), operation, argument);
}

int sectorSize(sqlite3_file *file) { return below(file)->pMethods->xSectorSize(below(file)); }

int characteristics(sqlite3_file *file)
{
    return below(file)->pMethods->xDeviceCharacteristics(below(file));
}

sqlite3_io_methods methods()
{
    sqlite3_io_methods table{};
    table.iVersion = 1;
    table.xClose = close;
    table.xRead = read;
    table.xWrite = write;
    table.xTruncate = truncate;
    table.xSync = sync;
    table.xFileSize = fileSize;
    table.xLock = lock;
    table.xUnlock = unlock;
    table.xCheckReservedLock = checkReserved;
    table.xFileControl = control;
    table.xSectorSize = sectorSize;
    table.xDeviceCharacteristics = characteristics;
    return table;
}

int open(sqlite3_vfs *, const char *name, sqlite3_file *file, int flags, int *outFlags)
{
    static const sqlite3_io_methods table = methods();
    File *opened = new (file) File{};
    opened->path = name;
    opened->journal = (flags & SQLITE_OPEN_MAIN_DB) == 0;
    file->pMethods = nullptr;
    if (opened->journal && files::before("create journal", name ? name : ""))
        return SQLITE_CANTOPEN;
    const int result = base()->xOpen(base(), name, opened->below(), flags, outFlags);
    if (opened->below()->pMethods) file->pMethods = &table;
    return result;
}

int remove(sqlite3_vfs *, const char *name, int syncFolder)
{
    if (files::before("delete journal", name)) return SQLITE_IOERR_DELETE;
    return base()->xDelete(base(), name, syncFolder);
}

sqlite3_vfs *make()
{
    static sqlite3_vfs vfs = *base();
    vfs.szOsFile = static_cast<int>(sizeof(File)) + base()->szOsFile;
    vfs.pNext = nullptr;
    vfs.zName = kName;
    vfs.xOpen = open;
    vfs.xDelete = remove;
    sqlite3_vfs_register(&vfs, 0);
    return &vfs;
}

} // namespace

const char *steppingVfs()
{
    static const sqlite3_vfs *const registered = make();
    return registered->zName;
}

} // namespace host::store
