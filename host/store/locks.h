// Who keeps a part's file locked.
#pragma once

#include "part_store.h"

namespace host::store {

// After a wait in vain: an error that names the process, when the system can tell. The file must not be
// open in this process: closing it here would drop our own locks.
StoreError lockedError(const std::string &path);

// A reader's lock on an open file, as the database takes it; closing the file gives it up. False when
// somebody is writing, or waits to.
bool lockForReading(int file);

} // namespace host::store
