// Reads a definition file in the cell form.
#pragma once

#include "app/authoring/model.h"

#include <string>

namespace app::authoring {

// Throws Complaints with everything that is wrong with the file. `language` picks labels that are given
// in several languages.
Library readLibrary(const std::string &path, const std::string &language = "en");
// The same of a text; `name` stands for the file in complaints.
Library parseLibrary(const std::string &text, const std::string &name,
                     const std::string &language = "en");

} // namespace app::authoring
