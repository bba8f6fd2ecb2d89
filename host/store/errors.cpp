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

StoreError errorOf(sqlite3 *database, const std::string &path)
{
    if (!database) return cannotRead(path, "there is not enough memory");
    const int code = sqlite3_errcode(database);
    const std::string says = sqlite3_errmsg(database);
    const int systemError = sqlite3_system_errno(database);
    const std::string reason = systemError ? says + " (" + std::strerror(systemError) + ")" : says;
    switch (code & 0xff) {
    case SQLITE_NOTADB:
        return notAPart(path, "it is no database");
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
        return {UF_PART_err_locked, path + ": another process is saving this part. Try again when "
                                           "it is done."};
    case SQLITE_FULL:
        return cannotWrite(path, "the disk is full");
    case SQLITE_READONLY:
    case SQLITE_PERM:
        return cannotWrite(path, reason);
    case SQLITE_CANTOPEN:
    case SQLITE_IOERR:
    case SQLITE_NOMEM:
        return cannotRead(path, reason);
    default:
        return damaged(path, says);
    }
}

} // namespace host::store
