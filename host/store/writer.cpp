#include "part_store.h"

#include "errors.h"
#include "file_layer.h"
#include "image.h"

namespace host::store {

void writeImage(const Part &part, const std::string &path)
{
    try {
        files::replaceDurably(path, imageOf(part).bytes, files::Existing::replace);
    } catch (const files::FileError &error) {
        throw cannotWrite(path, describe(error));
    }
}

} // namespace host::store
