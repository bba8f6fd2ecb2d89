#include "app/readable.h"

#include "app/output.h"

#include <algorithm>

namespace app {

std::string readable(const std::string &text)
{
    const std::string quoted = Json(text).dump(-1, ' ', false, Json::error_handler_t::replace);
    std::string shown = Json::parse(quoted).get<std::string>();
    std::replace_if(
        shown.begin(), shown.end(),
        [](char c) { return static_cast<unsigned char>(c) < 0x20 || c == 0x7f; }, ' ');
    return shown;
}

} // namespace app
