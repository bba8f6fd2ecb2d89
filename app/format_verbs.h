// The verbs of "format", in families of their own.
#pragma once

#include "app/verbs.h"

#include <CLI/CLI.hpp>

namespace app {

void addFormatUpdateVerbs(CLI::App *family, Command command); // check, update
void addFormatReplaceVerb(CLI::App *family, Command command);

} // namespace app
