#include "copy.h"
#include "journal.h"
#include "loader.h"
#include "locks.h"
#include "open.h"
#include "vfs.h"

#include "uf_part.h"

#include <algorithm>
#include <map>
#include <sqlite3.h>

namespace host::store {

namespace {

// From the first read on nobody can write: what is verified is what is read.
LoadedPart readAll(Database &database)
{
    database.run("BEGIN; SELECT 1 FROM sqlite_schema");
    const std::int64_t size = verifyFormat(database);
    // A damaged length must not ask for more than there is.
    sqlite3_limit(database.handle(), SQLITE_LIMIT_LENGTH,
                  static_cast<int>(std::min<std::int64_t>(size, 1 << 30)));
    return Loader(database, size).run();
}

LoadedPart readFile(const std::string &path)
{
    Database database(path, SQLITE_OPEN_READONLY, steppingVfs());
    sqlite3_busy_timeout(database.handle(), kPatienceMilliseconds);
    return readAll(database);
}

std::map<std::string, LoadedPart> &kept()
{
    static std::map<std::string, LoadedPart> all;
    return all;
}

} // namespace

void keep(const std::string &path)
{
    LoadedPart loaded = load(path);
    kept()[path] = std::move(loaded);
}

void letGo(const std::string &path) { kept().erase(path); }

LoadedPart load(const std::string &path)
{
    if (const auto found = kept().find(path); found != kept().end()) return copyOf(found->second);
    requireFile(path);
    finishInterruptedSave(path);
    try {
        LoadedPart loaded = readFile(path);
        loaded.part->path = path;
        loaded.part->everSaved = true;
        loaded.part->stored.path = path;
        return loaded;
    } catch (const StoreError &error) {
        if (error.code == UF_PART_err_locked) throw lockedError(path);
        throw;
    }
}

LoadedPart loadImage(std::string_view bytes, const std::string &name)
{
    if (bytes.empty()) throw notAPart(name, "it is empty");
    Database database(":memory:", SQLITE_OPEN_READWRITE | SQLITE_OPEN_MEMORY);
    database.setName(name);
    // Read only and not resizable: SQLite leaves the bytes alone in spite of the type.
    auto *data = reinterpret_cast<unsigned char *>(const_cast<char *>(bytes.data()));
    const auto size = static_cast<sqlite3_int64>(bytes.size());
    database.check(sqlite3_deserialize(database.handle(), "main", data, size, size,
                                       SQLITE_DESERIALIZE_READONLY));
    return readAll(database);
}

} // namespace host::store
