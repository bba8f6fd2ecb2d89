#include "errors.h"

#include "uf_part.h"

#include <cerrno>
#include <cstring>
#include <sqlite3.h>

namespace host::store {

StoreError notFound(const std::string &path)
{
    return {UF_PART_err_file_not_found,
            path + ": there is no such file. Check the name and the folder."};
}

StoreError notAPart(const std::string &path, const std::string &what)
{
    return {UF_PART_err_not_a_part,
            path + ": this is not a part: " + what + ". Name a file that was saved as a part."};
}

StoreError damaged(const std::string &path, const std::string &what)
{
    return {UF_PART_err_damaged,
            path + ": the part is damaged: " + what + ". Restore the file from a backup copy."};
}

StoreError cannotRead(const std::string &path, const std::string &what)
{
    return {UF_PART_err_damaged, path + ": the part cannot be read: " + what +
                                     ". Check that the file may be read and the disk is in order."};
}

StoreError cannotWrite(const std::string &path, const std::string &what)
{
    return {UF_PART_err_cannot_write,
            path + ": the part cannot be written: " + what +
                ". Check that the folder exists, may be written to and has room; the part is still "
                "open and can be saved again."};
}

StoreError changedOnDisk(const std::string &path, const std::string &what)
{
    return {UF_PART_err_changed_on_disk,
            path + ": the file is not the one that was opened: " + what +
                ". It is left alone; save the part under another name."};
}

StoreError errorOf(sqlite3 *database, const std::string &path, Access access)
{
    const auto trouble = access == Access::writing ? cannotWrite : cannotRead;
    if (!database) return trouble(path, "there is not enough memory");
    const std::string says = sqlite3_errmsg(database);
    const int number = sqlite3_system_errno(database);
    const std::string reason = number ? says + " (" + std::strerror(number) + ")" : says;
    switch (sqlite3_errcode(database) & 0xff) {
    case SQLITE_NOTADB:
        return notAPart(path, "it is no database");
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
        return {UF_PART_err_locked, path + ": the part is in use."};
    case SQLITE_FULL:
        return cannotWrite(path, "the disk is full");
    case SQLITE_READONLY:
        if (access == Access::writing) return cannotWrite(path, reason);
        return {UF_PART_err_cannot_write,
                path + ": a save of this part was cut off and cannot be undone here: " + path +
                    "-journal says how. Copy both files to a folder that may be written to and "
                    "open the part there."};
    case SQLITE_PERM:
    case SQLITE_CANTOPEN:
    case SQLITE_IOERR:
    case SQLITE_NOMEM:
        return trouble(path, reason);
    default:
        return damaged(path, says);
    }
}

} // namespace host::store
