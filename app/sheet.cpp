// sheet: the sheets of a drawing.
#include "app/formats.h"
#include "app/output.h"
#include "app/sheet_command.h"
#include "app/verbs.h"
#include "app/workspace.h"

#include <fmt/format.h>

#include <memory>

namespace app {

namespace {

struct SheetArguments {
    std::string path;
    std::string name;
    std::string format;
};

int addSheet(const Options &options, const SheetArguments &arguments)
{
    Workspace work(options, !arguments.format.empty());
    work.open(arguments.path);
    const SheetRef sheet = work.addSheet(arguments.name);
    if (!arguments.format.empty()) {
        convertOldSheets(work);
        placeFormat(work, sheet, parseFormatName(arguments.format));
    }
    if (!options.dryRun) work.save();
    printNote(options, placeOf(work, sheet) + ": added");
    return kFine;
}

int listSheets(const Options &options, const SheetArguments &arguments)
{
    Workspace work(options, false);
    work.open(arguments.path);
    Json names = Json::array();
    for (const SheetRef &sheet : work.sheets()) {
        if (options.json)
            names.push_back(sheet.name);
        else
            printLine(sheet.name);
    }
    if (options.json) printJson(names);
    return kFine;
}

} // namespace

void addSheetVerbs(Command command)
{
    CLI::App *family = command.parser.add_subcommand("sheet", "The sheets of a drawing");
    family->require_subcommand(1);
    auto arguments = std::make_shared<SheetArguments>();

    CLI::App *add = family->add_subcommand("add", "Add a sheet, with a format if one is named");
    add->add_option("part", arguments->path, "The drawing")->required();
    add->add_option("name", arguments->name, "The sheet's name")->required();
    add->add_option("--format", arguments->format, "Format and size, as in ISO/A3");
    add->callback([=] {
        command.chosen = [=, &options = command.options] { return addSheet(options, *arguments); };
    });

    CLI::App *list = family->add_subcommand("list", "List the sheets");
    list->add_option("part", arguments->path, "The drawing")->required();
    list->callback([=] {
        command.chosen = [=, &options = command.options] {
            return listSheets(options, *arguments);
        };
    });
}

} // namespace app
