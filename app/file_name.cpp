#include "app/file_name.h"

namespace app {

std::string safeFileName(const std::string &text)
{
    std::string name;
    for (const char c : text) {
        const bool control = static_cast<unsigned char>(c) < 0x20 || c == 0x7f;
        name += control || c == '/' || c == '\\' ? '_' : c;
    }
    return name;
}

} // namespace app
