// What the verbs that work on one sheet share: the drawing, the sheet, open it, do it, save it.
#pragma once

#include "app/verbs.h"
#include "app/workspace.h"

#include <CLI/CLI.hpp>

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace app {

struct SheetTarget {
    std::string path;
    std::string sheet;
};

void addTarget(CLI::App *verb, SheetTarget &target);

// Opens the drawing and the sheet, runs `change`, and saves unless it failed or --dry-run is given. Sheets of
// an older generation are converted first, each field by its name.
int changeSheet(const Options &options, const SheetTarget &target,
                const std::function<void(Workspace &, const SheetRef &)> &change);
// The same without saving.
int readSheet(const Options &options, const SheetTarget &target,
              const std::function<void(Workspace &, const SheetRef &)> &read);

// Brings every sheet of an older generation up to date, each field by its name, and answers which those were;
// to be called before anything is changed. A Problem names the values that would be lost by it.
std::vector<SheetRef> convertOldSheets(const Workspace &work);

} // namespace app
