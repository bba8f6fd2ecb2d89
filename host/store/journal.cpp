#include "journal.h"

#include "database.h"
#include "open.h"
#include "vfs.h"

#include "uf_part.h"

#include <cerrno>
#include <cstring>
#include <sqlite3.h>
#include <unistd.h>

namespace host::store {

namespace {

std::string journalOf(const std::string &path) { return path + "-journal"; }

bool exists(const std::string &path) { return ::access(path.c_str(), F_OK) == 0; }

} // namespace

// Reading for writing is all it takes: the database undoes what its journal says. Somebody who is
// saving right now holds a lock, and then nothing is undone.
void finishInterruptedSave(const std::string &path)
{
    if (!exists(journalOf(path))) return;
    try {
        Database database(path, SQLITE_OPEN_READWRITE, steppingVfs());
        sqlite3_busy_timeout(database.handle(), kPatienceMilliseconds);
        database.run("PRAGMA synchronous=EXTRA; BEGIN; SELECT 1 FROM sqlite_schema");
    } catch (const StoreError &error) {
        if (error.code != UF_PART_err_cannot_write)
            return; // the reader that follows says it better
        throw StoreError{UF_PART_err_cannot_write,
                         path + ": a save of this part was cut off and cannot be undone here: " +
                             journalOf(path) +
                             " says how. Copy both files to a folder that may be written to and "
                             "open the part there."};
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
