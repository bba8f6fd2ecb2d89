// block: the blocks of a sheet's format.
#include "app/formats.h"
#include "app/output.h"
#include "app/sheet_command.h"
#include "app/values.h"

#include "api/trv_fmt.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>

namespace app {

namespace {

struct BlockArguments {
    SheetTarget target;
    std::string block;
    std::vector<double> position;
    bool home = false;
};

// The library lets an unknown identifier pass; a user who mistyped one wants to know.
void requireBlock(const Workspace &work, const SheetRef &sheet, const std::string &id)
{
    const auto blocks = blocksOf(work, sheet);
    if (std::count(blocks.begin(), blocks.end(), id) == 0)
        throw Problem(fmt::format("{}: has no block {}; it has {}", placeOf(work, sheet), id,
                                  blocks.empty() ? "none" : joined(blocks, ", ")));
}

int moveBlock(const Options &options, const BlockArguments &arguments)
{
    if (arguments.home == (arguments.position.size() == 2))
        throw Problem("block move: give a point X Y, or --home", kUsage);
    return changeSheet(options, arguments.target, [&](Workspace &work, const SheetRef &sheet) {
        requireBlock(work, sheet, arguments.block);
        std::array<double, 3> point{};
        std::copy(arguments.position.begin(), arguments.position.end(), point.begin());
        checkLibrary(QEL_FMT_move_block(sheet.tag, arguments.block.c_str(),
                                        arguments.home ? nullptr : point.data()),
                     placeOf(work, sheet));
    });
}

int addBlock(const Options &options, const BlockArguments &arguments)
{
    return changeSheet(options, arguments.target, [&](Workspace &work, const SheetRef &sheet) {
        checkLibrary(TRV_FMT_add_block(sheet.tag, arguments.block.c_str()), placeOf(work, sheet));
    });
}

int deleteBlock(const Options &options, const BlockArguments &arguments)
{
    return changeSheet(options, arguments.target, [&](Workspace &work, const SheetRef &sheet) {
        requireBlock(work, sheet, arguments.block);
        checkLibrary(TRV_FMT_delete_block(sheet.tag, arguments.block.c_str()),
                     placeOf(work, sheet));
    });
}

int listBlocks(const Options &options, const BlockArguments &arguments)
{
    return readSheet(options, arguments.target, [&](Workspace &work, const SheetRef &sheet) {
        const auto blocks = blocksOf(work, sheet);
        if (options.json) return printJson(Json(blocks));
        for (const std::string &id : blocks) printLine(id);
    });
}

using Run = int (*)(const Options &, const BlockArguments &);

CLI::App *addVerb(Command command, CLI::App *family, const char *name, const char *help, Run run,
                  const std::shared_ptr<BlockArguments> &arguments, bool named = true)
{
    CLI::App *verb = family->add_subcommand(name, help);
    addTarget(verb, arguments->target);
    if (named) verb->add_option("block", arguments->block, "Its identifier")->required();
    verb->callback([=] {
        command.chosen = [=, &options = command.options] { return run(options, *arguments); };
    });
    return verb;
}

} // namespace

void addBlockVerbs(Command command)
{
    CLI::App *family = command.parser.add_subcommand("block", "The blocks of a sheet's format");
    family->require_subcommand(1);
    auto arguments = std::make_shared<BlockArguments>();
    CLI::App *move =
        addVerb(command, family, "move", "Put a block at a point", moveBlock, arguments);
    move->add_option("position", arguments->position, "X Y, from the sheet's lower left corner")
        ->expected(0, 2);
    move->add_flag("--home", arguments->home, "Put it where its definition wants it");
    addVerb(command, family, "add", "Add a block at its default place", addBlock, arguments);
    addVerb(command, family, "delete", "Delete a block", deleteBlock, arguments);
    addVerb(command, family, "list", "List the blocks", listBlocks, arguments, false);
}

} // namespace app
