#include "display/deflate.h"

#include <zlib.h>

#include "display/render.h"

namespace host::display {

std::string deflated(std::string_view data)
{
    constexpr int level = 6;
    uLongf length = compressBound(static_cast<uLong>(data.size()));
    std::string result(length, '\0');
    const int status = compress2(reinterpret_cast<Bytef *>(result.data()), &length,
                                 reinterpret_cast<const Bytef *>(data.data()),
                                 static_cast<uLong>(data.size()), level);
    if (status != Z_OK)
        throw RenderError("Out of memory while compressing; render fewer sheets at once.");
    result.resize(length);
    return result;
}

} // namespace host::display
