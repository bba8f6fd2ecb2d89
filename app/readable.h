// Texts of damaged files on a terminal.
#pragma once

#include <string>

namespace app {

// Bytes that are no UTF-8 are shown as U+FFFD, control characters as blanks.
std::string readable(const std::string &text);

} // namespace app
