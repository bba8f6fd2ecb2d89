#include "app/problem.h"

#include "nxhost/control.h"
#include "uf.h"

#include <fmt/format.h>

namespace app {

Problem Problem::ofPart(const std::string &path, int code)
{
    std::string reason = nxhost::lastPartMessage();
    if (reason.empty()) {
        char text[133] = "";
        UF_get_fail_message(code, text);
        reason = text[0] ? text : fmt::format("error {}", code);
    }
    // The host's message names the file when the file is to blame.
    return Problem(reason.find(path) == std::string::npos ? path + ": " + reason : reason);
}

} // namespace app
