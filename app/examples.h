// An example for every verb: in its help, and beside what is said when it was called wrongly.
#pragma once

#include <CLI/CLI.hpp>

namespace app {

void addExamples(CLI::App &parser);

} // namespace app
