// part: drawings as files.
#include "app/output.h"
#include "app/part_verbs.h"
#include "app/verbs.h"
#include "app/workspace.h"

#include <fmt/format.h>

#include <memory>

namespace app {

namespace {

struct PartArguments {
    std::string path;
    std::string units = "mm";
};

int newPart(const Options &options, const PartArguments &arguments)
{
    Workspace work(options, false);
    work.create(arguments.path, arguments.units == "mm" ? 1 : 2);
    if (!options.dryRun) work.save();
    printNote(options, arguments.path + ": made");
    return kFine;
}

} // namespace

void addPartVerbs(Command command)
{
    CLI::App *part = command.parser.add_subcommand("part", "Drawings as files");
    part->require_subcommand(1);
    auto arguments = std::make_shared<PartArguments>();
    CLI::App *verb = part->add_subcommand("new", "Make an empty drawing");
    verb->add_option("part", arguments->path, "The file, NAME.qdraw")->required();
    verb->add_option("--units", arguments->units, "mm or in")->check(CLI::IsMember({"mm", "in"}));
    verb->callback([=] {
        command.chosen = [=, &options = command.options] { return newPart(options, *arguments); };
    });
    addPartCheckVerb(part, command);
    addPartSalvageVerb(part, command);
}

} // namespace app
