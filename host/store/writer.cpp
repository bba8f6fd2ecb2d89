#include "part_store.h"

#include "errors.h"
#include "file_layer.h"
#include "image.h"
#include "in_place.h"
#include "journal.h"
#include "locks.h"

#include "uf_part.h"

#include <cerrno>

namespace host::store {

namespace {

void put(const Image &image, const std::string &path, files::Existing existing)
{
    try {
        const auto held = lockedForReplacement(path);
        files::putDurably(path, image.bytes, existing);
    } catch (const files::FileError &error) {
        if (error.number == EEXIST)
            throw StoreError{UF_PART_err_file_exists,
                             path + ": there is a file of this name already. Choose another name."};
        throw cannotWrite(path, describe(error));
    }
}

SaveResult saveAsImage(Part &part, const std::string &path)
{
    Image image = imageOf(part);
    put(image, path, files::Existing::keep);
    part.stored = {path, image.root, std::move(image.masters), part.nextOrdinal, {}, {}};
    return {false, 0};
}

SaveResult saveChanges(Part &part, const std::string &path)
{
    try {
        return {true, saveInPlace(part, path)};
    } catch (const StoreError &error) {
        if (error.code == UF_PART_err_locked) throw lockedError(path);
        throw;
    }
}

} // namespace

void saveOver(Part &part, const std::string &path)
{
    Image image = imageOf(part);
    put(image, path, files::Existing::replace);
    part.stored = {path, image.root, std::move(image.masters), part.nextOrdinal, {}, {}};
    part.path = path;
    part.everSaved = true;
    part.modified = false;
}

void writeImage(const Part &part, const std::string &path)
{
    put(imageOf(part), path, files::Existing::replace);
}

SaveResult save(Part &part, const std::string &path)
{
    const SaveResult result =
        part.stored.path == path ? saveChanges(part, path) : saveAsImage(part, path);
    part.path = path;
    part.everSaved = true;
    part.modified = false;
    return result;
}

} // namespace host::store
