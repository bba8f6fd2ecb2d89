// Part files: one SQLite database a part. docs/part-file.md describes the schema.
#pragma once

#include "model/object.h"

#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace host::store {

// Why a file was refused or could not be written: a part code (uf_part.h) and a message that names
// the file, what is wrong and what to do.
struct StoreError {
    int code;
    std::string message;
};

struct LoadedPart {
    std::unique_ptr<Part> part; // with its tag; lists and indexes are made by Session::adoptPart
    std::vector<std::unique_ptr<Object>> objects; // tags given, in order of creation
};

// Reads a whole part. Objects get new tags; references to tags inside note and symbol texts follow.
// Throws StoreError. The file is not changed, but for one thing: a save that was cut off (its journal
// lies beside the file) is undone first.
LoadedPart load(const std::string &path);

// Reads the file now; until it is let go, load() gives copies of what was read. Throws StoreError.
void keep(const std::string &path);
void letGo(const std::string &path);

// Like load(), from the bytes of a file; `name` is what messages call it.
LoadedPart loadImage(std::string_view bytes, const std::string &name);

// Writes the whole part as a new image, whatever is there: temporary file, sync, rename, sync of the
// folder. The same content gives the same bytes. Throws StoreError; a failure leaves the old file.
void writeImage(const Part &part, const std::string &path);

// Saves the part under this name in the place of what is there, as an image like writeImage(); from then
// on the name is its own. A file that somebody is saving into is refused. Throws StoreError.
void saveOver(Part &part, const std::string &path);

// Saves the part under this name. Its own file gets what changed since it was loaded or saved, in one
// transaction; under a new name it is written as an image, and that name is its own from then on.
// Throws StoreError: the file is then as it was and the part can be saved again. Refused are a
// file that another process changed, replaced or removed meanwhile, one that is locked for longer
// than two seconds, and under a new name any file that is there.
struct SaveResult {
    bool inPlace;
    long long rows; // written, changed or deleted in place
};
SaveResult save(Part &part, const std::string &path);

} // namespace host::store
