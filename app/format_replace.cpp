// format replace: another format for a sheet, with the blocks that both have.
#include "app/format_verbs.h"
#include "app/formats.h"
#include "app/output.h"
#include "app/problem.h"
#include "app/sheet_command.h"
#include "app/update.h"

#include "content/entry.h"
#include "content/field.h"
#include "content/table.h"
#include "definitions/block_def.h"
#include "definitions/definition_file_manager.h"
#include "definitions/format_def.h"
#include "definitions/format_size.h"
#include "drawing/block.h"
#include "drawing/drawing.h"
#include "drawing/format.h"

#include <fmt/format.h>

#include <set>

namespace app {

namespace {

struct ReplaceArguments {
    SheetTarget target;
    std::string format;
    bool force = false;
};

struct LostBlock {
    std::string id;
    std::vector<std::string> values; // "number = 4711"
};

template <class Fields>
void addValues(const Fields &fields, const std::string &before, std::vector<std::string> &values)
{
    for (const auto &field : fields) {
        const std::string text = joined(field->GetValue(), " | ");
        if (!text.empty())
            values.push_back(fmt::format("{}{} = {}", before, field->GetFieldDefName(), text));
    }
}

std::vector<std::string> valuesIn(TrBlockBase &block)
{
    std::vector<std::string> values;
    addValues(block.getFields(), "", values);
    for (const auto &table : block.getTables()) {
        int row = 0;
        for (const auto &entry : table->getEntries())
            addValues(entry->getFields(), fmt::format("{}[{}].", table->GetTableDefName(), row++),
                      values);
    }
    return values;
}

// Blocks that the new format does not offer go with the old one; the others stay.
struct Blocks {
    TrFormatBase::Blocks retained;
    std::vector<LostBlock> lost;
};

Blocks sortedOut(const TrFormatBase &format, const boost::shared_ptr<TrFormatDefV1> &next)
{
    std::set<std::string> offered;
    for (const auto &def : TrDefinitionFileManager::GetBlockDefinitions(next, "ALL", false))
        offered.insert(def->GetId());
    Blocks blocks;
    for (const auto &block : format.getBlocks()) {
        if (const std::string id = block->GetBlockDefName(); offered.contains(id))
            blocks.retained.push_back(block);
        else
            blocks.lost.push_back({id, valuesIn(*block)});
    }
    return blocks;
}

std::string described(const std::vector<LostBlock> &blocks)
{
    std::vector<std::string> texts;
    for (const LostBlock &block : blocks)
        texts.push_back(block.values.empty()
                            ? block.id
                            : fmt::format("{} ({})", block.id, joined(block.values, "; ")));
    return joined(texts, ", ");
}

void refuseLosses(const std::string &place, const FormatName &name,
                  const std::vector<LostBlock> &blocks, const std::vector<std::string> &values)
{
    std::vector<std::string> reasons;
    if (!blocks.empty())
        reasons.push_back(
            fmt::format("format {} has no place for {}", name.format, described(blocks)));
    if (!values.empty())
        reasons.push_back(fmt::format("{} would be lost, since the definition has no such field "
                                      "any more",
                                      joined(values, "; ")));
    if (!reasons.empty())
        throw Problem(fmt::format("{}: {}: give --force to lose {}", place,
                                  joined(reasons, ", and "),
                                  blocks.size() + values.size() == 1 ? "it" : "them"));
}

// The library would update a block whose own definition does not know the new format, by position: blocks that
// stay are brought up to date before, each field by its name.
void replace(const Options &options, const Workspace &work, const SheetRef &sheet,
             const ReplaceArguments &arguments)
{
    const FormatName name = parseFormatName(arguments.format);
    const auto next = definitionOf(name);
    const std::string place = placeOf(work, sheet);
    const auto drawing = TrDrawing::getDrawing(sheet.tag);
    if (!drawing->hasFormat())
        throw Problem(place + ": has no format to replace: place one with 'qelfmt format add'");
    const Blocks blocks = sortedOut(*drawing->format(), next);
    const auto before = valuesOn(*drawing->format());
    const auto updated = rebuildDrifted(blocks.retained);
    const auto values = lossesOf(changesBetween(before, valuesOn(*drawing->format())));
    if (!arguments.force) refuseLosses(place, name, blocks.lost, values);
    drawing->replaceFormat(next, next->GetSizeDef(name.size));
    addSiteBlocks(sheet, *next, place);
    if (options.json) {
        Json gone = Json::array();
        for (const LostBlock &block : blocks.lost)
            gone.push_back(Json{{"id", block.id}, {"values", block.values}});
        return printJson(Json{{"format", name.format},
                              {"size", name.size},
                              {"lost", gone},
                              {"updated", updated},
                              {"lostValues", values}});
    }
    if (!blocks.lost.empty())
        printNote(options, fmt::format("{}: lost {}", place, described(blocks.lost)));
    if (!updated.empty())
        printNote(options, fmt::format("{}: brought up to date: {}", place, joined(updated, ", ")));
    if (!values.empty())
        printNote(options, fmt::format("{}: lost {}", place, joined(values, "; ")));
}

} // namespace

void addFormatReplaceVerb(CLI::App *family, Command command)
{
    auto arguments = std::make_shared<ReplaceArguments>();
    CLI::App *verb = family->add_subcommand(
        "replace", "Change to another format; blocks that it also has keep their values");
    addTarget(verb, arguments->target);
    verb->add_option("format", arguments->format, "Format and size, as in ISO/A3")->required();
    verb->add_flag("-f,--force", arguments->force, "Also when blocks or values would be lost");
    verb->callback([=] {
        command.chosen = [=, &options = command.options] {
            return changeSheet(options, arguments->target,
                               [&](Workspace &work, const SheetRef &sheet) {
                                   replace(options, work, sheet, *arguments);
                               });
        };
    });
}

} // namespace app
