// What to do about a text that is no YAML: the parser knows where it stumbled, the lines there show why.
#pragma once

#include "app/authoring/complaints.h"

#include <yaml-cpp/yaml.h>

#include <string>

namespace app::authoring {

// `text` is the whole file; the complaint stands at the line that the remedy speaks of.
Complaint syntaxComplaint(const std::string &file, const std::string &text,
                          const YAML::ParserException &broken);

} // namespace app::authoring
