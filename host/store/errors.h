// The StoreErrors that more than one place raises. Each names the file, the trouble and the remedy.
#pragma once

#include "part_store.h"

#include <string>

struct sqlite3;

namespace host::store {

StoreError notFound(const std::string &path);
StoreError notAPart(const std::string &path, const std::string &what);
StoreError damaged(const std::string &path, const std::string &what);
StoreError cannotRead(const std::string &path, const std::string &what);
StoreError cannotWrite(const std::string &path, const std::string &what);
StoreError changedOnDisk(const std::string &path, const std::string &what);

// Of the database's last failed call.
enum class Access { reading, writing };
StoreError errorOf(sqlite3 *database, const std::string &path, Access access);

} // namespace host::store
