// What the verbs that work on one sheet share: the drawing, the sheet, open it, do it, save it.
#pragma once

#include "app/verbs.h"
#include "app/workspace.h"

#include <CLI/CLI.hpp>

#include <functional>
#include <memory>
#include <string>

namespace app {

struct SheetTarget {
    std::string path;
    std::string sheet;
};

void addTarget(CLI::App *verb, SheetTarget &target);

// Opens the drawing and the sheet, runs `change`, and saves unless it failed or --dry-run is given. A sheet of
// an older generation is converted first, each field by its name.
int changeSheet(const Options &options, const SheetTarget &target,
                const std::function<void(Workspace &, const SheetRef &)> &change);
// The same without saving.
int readSheet(const Options &options, const SheetTarget &target,
              const std::function<void(Workspace &, const SheetRef &)> &read);

} // namespace app
