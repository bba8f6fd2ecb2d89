// The verbs of "part", in families of their own.
#pragma once

#include "app/verbs.h"

#include <CLI/CLI.hpp>

namespace app {

void addPartCheckVerb(CLI::App *family, Command command);
void addPartSalvageVerb(CLI::App *family, Command command);

} // namespace app
