// Reading a file that somebody named.
#pragma once

#include <optional>
#include <string>

namespace app {

// All its bytes; nothing when it cannot be read, and then `why` says what is wrong and what to do.
std::optional<std::string> readTextFile(const std::string &path, std::string &why);

} // namespace app
