#include "part_store.h"

#include "errors.h"
#include "loader.h"
#include "open.h"

#include <cerrno>
#include <cstring>
#include <sqlite3.h>
#include <sys/stat.h>

namespace host::store {

namespace {

void requireFile(const std::string &path)
{
    struct stat info;
    if (::stat(path.c_str(), &info) != 0)
        throw errno == ENOENT || errno == ENOTDIR ? notFound(path)
                                                  : cannotRead(path, std::strerror(errno));
    if (!S_ISREG(info.st_mode)) throw notAPart(path, "it is no file");
    if (info.st_size == 0) throw notAPart(path, "it is empty");
}

} // namespace

LoadedPart load(const std::string &path)
{
    requireFile(path);
    Database database(path, SQLITE_OPEN_READONLY);
    sqlite3_busy_timeout(database.handle(), kPatienceMilliseconds);
    database.run("BEGIN; SELECT 1 FROM sqlite_schema");
    const std::int64_t size = verifyFormat(database);
    sqlite3_limit(database.handle(), SQLITE_LIMIT_LENGTH,
                  static_cast<int>(std::min<std::int64_t>(size, 1 << 30)));
    LoadedPart loaded = Loader(database, size).run();
    loaded.part->path = path;
    loaded.part->everSaved = true;
    return loaded;
}

} // namespace host::store
