// Texts in the names of files.
#pragma once

#include <string>

namespace app {

// Characters that no file name may have, or that would lead to another folder, become "_".
std::string safeFileName(const std::string &text);

} // namespace app
