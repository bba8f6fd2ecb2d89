#include "journal.h"

#include "database.h"
#include "file_layer.h"
#include "locks.h"
#include "open.h"
#include "vfs.h"

#include "uf_part.h"

#include <cerrno>
#include <cstring>
#include <sqlite3.h>
#include <unistd.h>

namespace host::store {

namespace {

// It lies beside the file itself, not beside a link to it.
std::string journalOf(const std::string &path) { return files::followed(path) + "-journal"; }

bool exists(const std::string &path) { return ::access(path.c_str(), F_OK) == 0; }

} // namespace

// A writer's lock is all it takes: the database then undoes what its journal says. Whoever is saving
// right now holds that lock; nothing is undone then. What is still there under the lock says nothing (a
// save that was cut off before it began) and goes.
void finishInterruptedSave(const std::string &path)
{
    if (!exists(journalOf(path))) return;
    try {
        Database database(path, SQLITE_OPEN_READWRITE, steppingVfs());
        sqlite3_busy_timeout(database.handle(), kPatienceMilliseconds);
        database.run("PRAGMA synchronous=EXTRA; BEGIN IMMEDIATE; SELECT 1 FROM sqlite_schema");
        ::unlink(journalOf(path).c_str());
    } catch (const StoreError &) { // the reader that follows says what it means for him
    }
}

std::unique_ptr<Database> lockedForReplacement(const std::string &path)
{
    std::unique_ptr<Database> held;
    if (exists(path)) {
        try {
            held = std::make_unique<Database>(path, SQLITE_OPEN_READWRITE, steppingVfs());
            sqlite3_busy_timeout(held->handle(), kPatienceMilliseconds);
            held->run("PRAGMA synchronous=EXTRA; BEGIN IMMEDIATE; SELECT 1 FROM sqlite_schema");
        } catch (const StoreError &error) {
            if (error.code == UF_PART_err_locked) throw lockedError(path);
            // What is no part, or is damaged beyond reading, nobody can save into.
            if (error.code != UF_PART_err_not_a_part && error.code != UF_PART_err_damaged) throw;
        }
    }
    if (exists(journalOf(path)) && ::unlink(journalOf(path).c_str()) != 0)
        throw cannotWrite(path, std::string("its old journal: ") + std::strerror(errno));
    return held;
}

} // namespace host::store
