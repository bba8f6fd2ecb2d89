// Opening a part's database and telling what is not one.
#pragma once

#include "database.h"

namespace host::store {

// How long a reader or a second writer waits for one who is saving.
inline constexpr int kPatienceMilliseconds = 2000;

// Raises StoreError unless there is a file with something in it.
void requireFile(const std::string &path);

// After the first read: application id, version, encoding, size and tables are those of a part of
// this version. Throws StoreError. Result: the size of the file.
std::int64_t verifyFormat(Database &database);

// Before anything is written: reading overlooks damage in free space, writing would build on it.
void verifyPages(Database &database);

} // namespace host::store
