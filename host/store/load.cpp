#include "copy.h"
#include "journal.h"
#include "loader.h"
#include "locks.h"
#include "open.h"
#include "pack.h"
#include "successive.h"
#include "vfs.h"
#include "whole_file.h"

#include "uf_part.h"

#include <algorithm>
#include <map>
#include <optional>
#include <sqlite3.h>

namespace host::store {

namespace {

LoadedPart readAll(Database &database)
{
    const std::int64_t size = verifyFormat(database);
    // A damaged length must not ask for more than there is.
    sqlite3_limit(database.handle(), SQLITE_LIMIT_LENGTH,
                  static_cast<int>(std::min<std::int64_t>(size, 1 << 30)));
    return Loader(database, size).run();
}

// Most files are small, and one after another is read where many drawings are looked at. What is wrong
// with a file is left to be said by reading it again in the other way.
std::optional<LoadedPart> readSmallFile(const std::string &path)
{
    constexpr std::size_t kSmall = 1 << 20;
    static auto *const file = new WholeFile; // both for as long as the process
    static auto *const databases = new SuccessiveDatabase;
    if (!file->read(path, kSmall)) return {};
    try {
        return readAll(databases->exchange(file->bytes()));
    } catch (const StoreError &) {
    } catch (const Malformed &) {
    } catch (...) { // memory ran out, say
        databases->forget();
        throw;
    }
    databases->forget();
    return {};
}

LoadedPart readFile(const std::string &path)
{
    Database database(path, SQLITE_OPEN_READONLY, steppingVfs());
    sqlite3_busy_timeout(database.handle(), kPatienceMilliseconds);
    // From the first read on nobody can write: what is verified is what is read.
    database.run("BEGIN; SELECT 1 FROM sqlite_schema");
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
        auto small = readSmallFile(path);
        LoadedPart loaded = small ? std::move(*small) : readFile(path);
        loaded.part->path = path;
        loaded.part->everSaved = true;
        loaded.part->stored.path = path;
        loaded.part->stored.firstNew = loaded.part->nextOrdinal;
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
    database.run("BEGIN; SELECT 1 FROM sqlite_schema");
    return readAll(database);
}

} // namespace host::store
