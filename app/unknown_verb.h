// A verb that does not exist, named together with those that do.
#pragma once

#include <CLI/CLI.hpp>

#include <string>

namespace app {

// "\"chekc\" is no verb of qelfmt defs: use one of build, check, ..."; empty when all verbs are known.
std::string unknownVerb(const CLI::App &parser, int argc, char **argv);

} // namespace app
