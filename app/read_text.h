// Whole files of text that the user names, or a Problem that names the path.
#pragma once

#include "app/output.h"

#include <string>

namespace app {

std::string readText(const std::string &path);

// Says where the mistake is; the same key twice in one object is one.
Json readJson(const std::string &path);

} // namespace app
