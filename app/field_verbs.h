// What the verbs of the family "field" are given.
#pragma once

#include "app/options.h"
#include "app/sheet_command.h"

#include <string>
#include <vector>

namespace app {

struct FieldArguments {
    SheetTarget target;
    std::string field;
    std::vector<std::string> lines;
    bool clear = false;
    std::string answer; // yes or no
    bool force = false;
    bool strict = false;
};

// field_show.cpp: what can be known of fields without changing them.
int listFields(const Options &options, const FieldArguments &arguments);
int showField(const Options &options, const FieldArguments &arguments);
int listSources(const Options &options, const FieldArguments &arguments);

} // namespace app
