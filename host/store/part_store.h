// Part files: one SQLite database a part. docs/part-file.md describes the schema.
#pragma once

#include "model/object.h"

#include <memory>
#include <string>
#include <vector>

namespace host::store {

// Why a file was refused or could not be written: a part code (uf_part.h) and a message that names
// the file, what is wrong and what to do.
struct StoreError {
    int code;
    std::string message;
};

struct LoadedPart {
    std::unique_ptr<Part> part; // without tag, lists and indexes: Session::adoptPart makes them
    std::vector<std::unique_ptr<Object>> objects; // tags given, in order of creation
};

// Reads a whole part. Objects get new tags; references to tags inside note and symbol texts follow.
// Throws StoreError; the file is never changed.
LoadedPart load(const std::string &path);

// Writes the whole part as a new image: temporary name, sync, rename, sync of the folder. The same
// content gives the same bytes. Throws StoreError; a failure leaves the old file as it was.
void writeImage(const Part &part, const std::string &path);

} // namespace host::store
