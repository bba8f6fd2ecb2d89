// A part as the bytes of a database file.
#pragma once

#include "masters.h"

#include <string>

namespace host::store {

struct Image {
    std::string bytes;
    std::int64_t root; // checksum of the part's own row: stands for the whole content
    MastersById masters;
};

Image imageOf(const Part &part);

} // namespace host::store
