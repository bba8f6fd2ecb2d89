#include "journal.h"

#include "database.h"
#include "open.h"
#include "vfs.h"

#include <cerrno>
#include <cstring>
#include <sqlite3.h>
#include <unistd.h>

namespace host::store {

namespace {

std::string journalOf(const std::string &path) { return path + "-journal"; }

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

void clearJournal(const std::string &path)
{
    if (!exists(journalOf(path))) return;
    if (exists(path))
        finishInterruptedSave(path);
    else if (::unlink(journalOf(path).c_str()) != 0)
        throw cannotWrite(path, std::string("its old journal: ") + std::strerror(errno));
}

} // namespace host::store
