// A part as the bytes of a database file.
#pragma once

#include "database.h"
#include "masters.h"

#include <string>

namespace host::store {

struct Image {
    std::string bytes;
    std::int64_t root; // checksum of the part's own row: stands for the whole content
    MastersById masters;
};

Image imageOf(const Part &part);

// An empty part's tables, made in a transaction that is under way; and all bytes of the database after it,
// with the header as it is in every part.
void createTables(Database &database);
std::string bytesOf(Database &database);

} // namespace host::store
