// format replace: another format for a sheet, with the blocks that both have.
#include "app/format_verbs.h"
#include "app/formats.h"
#include "app/output.h"
#include "app/problem.h"
#include "app/sheet_command.h"

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

// Blocks that the new format does not offer go with the old one.
std::vector<LostBlock> lostBlocks(const TrFormatBase &format,
                                  const boost::shared_ptr<TrFormatDefV1> &next)
{
    std::set<std::string> offered;
    for (const auto &def : TrDefinitionFileManager::GetBlockDefinitions(next, "ALL", false))
        offered.insert(def->GetId());
    std::vector<LostBlock> lost;
    for (const auto &block : format.getBlocks())
        if (const std::string id = block->GetBlockDefName(); !offered.contains(id))
            lost.push_back({id, valuesIn(*block)});
    return lost;
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

void replace(const Options &options, const Workspace &work, const SheetRef &sheet,
             const ReplaceArguments &arguments)
{
    const FormatName name = parseFormatName(arguments.format);
    const auto next = definitionOf(name);
    const std::string place = placeOf(work, sheet);
    const auto drawing = TrDrawing::getDrawing(sheet.tag);
    if (!drawing->hasFormat())
        throw Problem(place + ": has no format to replace: place one with 'qelfmt format add'");
    const auto lost = lostBlocks(*drawing->format(), next);
    if (!lost.empty() && !arguments.force)
        throw Problem(fmt::format("{}: format {} has no place for {}: give --force to lose {}",
                                  place, name.format, described(lost),
                                  lost.size() == 1 ? "it" : "them"));
    drawing->replaceFormat(next, next->GetSizeDef(name.size));
    if (options.json) {
        Json gone = Json::array();
        for (const LostBlock &block : lost)
            gone.push_back(Json{{"id", block.id}, {"values", block.values}});
        printJson(Json{{"format", name.format}, {"size", name.size}, {"lost", gone}});
    } else if (!lost.empty()) {
        printNote(options, fmt::format("{}: lost {}", place, described(lost)));
    }
}

} // namespace

void addFormatReplaceVerb(CLI::App *family, Command command)
{
    auto arguments = std::make_shared<ReplaceArguments>();
    CLI::App *verb = family->add_subcommand(
        "replace", "Change to another format; blocks that it also has keep their values");
    addTarget(verb, arguments->target);
    verb->add_option("format", arguments->format, "Format and size, as in ISO/A3")->required();
    verb->add_flag("-f,--force", arguments->force,
                   "Also when blocks have no place on the new format");
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
