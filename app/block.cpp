// block: the blocks of a sheet's format.
#include "app/data_file.h"
#include "app/formats.h"
#include "app/output.h"
#include "app/problem.h"
#include "app/sheet_command.h"
#include "app/values.h"

#include "api/trv_fmt.h"
#include "content/field.h"
#include "content/table.h"
#include "definitions/block_def.h"
#include "definitions/definition_file_manager.h"
#include "definitions/locations.h"
#include "drawing/block.h"
#include "drawing/drawing.h"
#include "drawing/format.h"

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
    bool force = false;
    std::string place; // by its name
};

boost::shared_ptr<TrBlockBase> firstBlock(const SheetRef &sheet, const std::string &id)
{
    const auto drawing = TrDrawing::getDrawing(sheet.tag);
    if (drawing->hasFormat())
        for (const auto &block : drawing->format()->getBlocks())
            if (block->GetBlockDefName() == id) return block;
    return {};
}

using Places = std::vector<QelFmt::LocationInfoType>;

// Where a block may stand: by its own definition, or by the loaded one when it is not on the sheet.
Places placesOf(const Workspace &work, const SheetRef &sheet, const std::string &id)
{
    if (const auto block = firstBlock(sheet, id)) {
        const auto def = block->GetDefinition();
        return def->IsNull() ? Places() : def->getLocations();
    }
    const auto def = TrDefinitionFileManager::GetBlockDefinition(id);
    if (!def) throw Problem(fmt::format("{}: no block {} is defined", placeOf(work, sheet), id));
    return def->getLocations(TrDrawing::getDrawing(sheet.tag));
}

// The library lets an unknown identifier pass; a user who mistyped one wants to know.
void requireBlock(const Workspace &work, const SheetRef &sheet, const std::string &id)
{
    const auto blocks = blocksOf(work, sheet);
    if (std::count(blocks.begin(), blocks.end(), id) == 0)
        throw Problem(fmt::format("{}: has no block {}; it has {}", placeOf(work, sheet), id,
                                  blocks.empty() ? "none" : joined(blocks, ", ")));
}

void moveToNamed(const Workspace &work, const SheetRef &sheet, const BlockArguments &arguments)
{
    std::vector<std::string> names;
    for (const auto &place : placesOf(work, sheet, arguments.block)) {
        if (place.name == arguments.place && !place.name.empty()) {
            firstBlock(sheet, arguments.block)->move(place);
            return;
        }
        names.push_back(place.name);
    }
    throw Problem(fmt::format("{}: block {} has no place {}: it has {}", placeOf(work, sheet),
                              arguments.block, arguments.place, joined(names, ", ")));
}

// The first of its places, also from a point that the user chose.
void moveHome(const Workspace &work, const SheetRef &sheet, const BlockArguments &arguments)
{
    const Places places = placesOf(work, sheet, arguments.block);
    if (places.empty())
        throw Problem(fmt::format("{}: block {} has no place on this size of the format: give a "
                                  "point X Y",
                                  placeOf(work, sheet), arguments.block));
    const auto block = firstBlock(sheet, arguments.block);
    block->SetAlternateLocationIndex(0); // a place without a name would leave it
    block->move(places.front());
}

int moveBlock(const Options &options, const BlockArguments &arguments)
{
    const bool toPoint = arguments.position.size() == 2;
    if (toPoint + arguments.home + !arguments.place.empty() != 1)
        throw Problem("block move: give a point X Y, --to PLACE or --home", kUsage);
    return changeSheet(options, arguments.target, [&](Workspace &work, const SheetRef &sheet) {
        requireBlock(work, sheet, arguments.block);
        if (!arguments.place.empty()) return moveToNamed(work, sheet, arguments);
        if (arguments.home) return moveHome(work, sheet, arguments);
        std::array<double, 3> point{};
        std::copy(arguments.position.begin(), arguments.position.end(), point.begin());
        checkLibrary(QEL_FMT_move_block(sheet.tag, arguments.block.c_str(), point.data()),
                     placeOf(work, sheet));
    });
}

void requireDefined(const Workspace &work, const SheetRef &sheet, const std::string &id)
{
    if (TrDefinitionFileManager::GetBlockDefinition(id)) return;
    std::vector<std::string> ids;
    for (const auto &def : TrDefinitionFileManager::GetBlockDefinitions("ALL"))
        ids.push_back(def->GetId());
    throw Problem(fmt::format("{}: no block {} is defined; there are {}", placeOf(work, sheet), id,
                              ids.empty() ? "none: name a folder with --defs" : shortList(ids)));
}

int addBlock(const Options &options, const BlockArguments &arguments)
{
    return changeSheet(options, arguments.target, [&](Workspace &work, const SheetRef &sheet) {
        requireDefined(work, sheet, arguments.block);
        if (!arguments.force && firstBlock(sheet, arguments.block))
            throw Problem(fmt::format("{}: has a block {} already: give --force to add another one",
                                      placeOf(work, sheet), arguments.block));
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

int listPlaces(const Options &options, const BlockArguments &arguments)
{
    return readSheet(options, arguments.target, [&](Workspace &work, const SheetRef &sheet) {
        const auto block = firstBlock(sheet, arguments.block);
        const int at = block ? block->GetAlternateLocationIndex() : -1;
        Json result = Json::array();
        std::vector<std::vector<std::string>> rows;
        int index = 0;
        for (const auto &place : placesOf(work, sheet, arguments.block)) {
            const bool here = index++ == at;
            const double x = place.location[0], y = place.location[1];
            result.push_back(Json{{"name", place.name}, {"x", x}, {"y", y}, {"here", here}});
            rows.push_back(
                {place.name, fmt::format("{}", x), fmt::format("{}", y), here ? "here" : ""});
        }
        if (options.json)
            printJson(result);
        else
            printTable({"PLACE", "X", "Y", ""}, rows);
    });
}

Json describe(TrBlockBase &block)
{
    Json result{{"id", block.GetBlockDefName()},
                {"x", block.GetX()},
                {"y", block.GetY()},
                {"placed", block.GetAlternateLocationIndex() < 0 ? "freely" : "by definition"},
                {"fields", Json::object()},
                {"tables", Json::object()}};
    for (const auto &field : block.getFields())
        result["fields"][field->GetFieldDefName()] = toJson(field->GetValue());
    for (const auto &table : block.getTables())
        result["tables"][table->GetTableDefName()] = table->entryCount();
    return result;
}

void print(const Json &block)
{
    printLine(fmt::format("{} at {}, {}, placed {}", block["id"].get<std::string>(),
                          block["x"].dump(), block["y"].dump(),
                          block["placed"].get<std::string>()));
    for (const auto &[name, value] : block["fields"].items())
        printLine(fmt::format("  {}: {}", name,
                              value.is_string()
                                  ? value.get<std::string>()
                                  : joined(value.get<std::vector<std::string>>(), " | ")));
    for (const auto &[name, rows] : block["tables"].items())
        printLine(fmt::format("  {}: {} rows", name, rows.dump()));
}

int showBlock(const Options &options, const BlockArguments &arguments)
{
    return readSheet(options, arguments.target, [&](Workspace &work, const SheetRef &sheet) {
        requireBlock(work, sheet, arguments.block);
        const Json block = describe(*firstBlock(sheet, arguments.block));
        if (options.json)
            printJson(block);
        else
            print(block);
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
    move->add_option("--to", arguments->place, "One of the places that its definition names");
    addVerb(command, family, "add", "Add a block at its default place", addBlock, arguments)
        ->add_flag("--force", arguments->force, "Also when there is one of it already");
    addVerb(command, family, "delete", "Delete a block", deleteBlock, arguments);
    addVerb(command, family, "show", "Where a block stands and what it says", showBlock, arguments);
    addVerb(command, family, "locations", "Where a block may stand", listPlaces, arguments);
    addVerb(command, family, "list", "List the blocks", listBlocks, arguments, false);
}

} // namespace app
