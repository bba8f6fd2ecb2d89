// The verbs of the command, a family a file. Each adds its subcommands; a subcommand runs when the line is
// parsed, and returns an exit status through `status`.
#pragma once

#include "app/options.h"
#include "app/problem.h"

#include <CLI/CLI.hpp>

#include <functional>

namespace app {

struct Command {
    CLI::App &parser;
    const Options &options;
    std::function<int()> &chosen; // what to run once the whole line is understood
};

void addStampVerb(Command command);
void addPartVerbs(Command command);
void addSheetVerbs(Command command);
void addFormatVerbs(Command command);
void addBlockVerbs(Command command);
void addFieldVerbs(Command command);
void addFillVerb(Command command);
void addTableVerbs(Command command);
void addSymbolVerbs(Command command);
void addRenderVerb(Command command);
void addInfoVerb(Command command);
void addDefinitionVerbs(Command command);
void addInitVerb(Command command);
void addReportVerb(Command command);
void addCheckVerb(Command command);
void addUpdateVerb(Command command);
void addUndoVerb(Command command);

} // namespace app
