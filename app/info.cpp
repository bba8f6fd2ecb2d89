// info: what a drawing holds.
#include "app/output.h"
#include "app/values.h"
#include "app/verbs.h"
#include "app/workspace.h"

#include "drawing/block.h"
#include "drawing/drawing.h"
#include "drawing/format.h"

#include <fmt/format.h>

#include <memory>

namespace app {

namespace {

Json describe(const SheetRef &sheet, const char *units)
{
    Json result{{"name", sheet.name}};
    const auto drawing = TrDrawing::getDrawing(sheet.tag);
    const Point2 size = drawing->drawingSize();
    result["width"] = size[0];
    result["height"] = size[1];
    result["units"] = units;
    if (!drawing->hasFormat()) return result;
    const auto format = drawing->format();
    result["format"] = format->GetFormatDefName();
    result["size"] = format->GetSizeName();
    result["label"] = format->sizeLabel();
    result["blocks"] = Json::array();
    for (const auto &block : format->getBlocks())
        result["blocks"].push_back(Json{{"id", block->GetBlockDefName()},
                                        {"x", block->GetX()},
                                        {"y", block->GetY()},
                                        {"fields", block->getFields().size()},
                                        {"tables", block->getTables().size()}});
    return result;
}

void print(const Json &sheet)
{
    printLine(fmt::format(
        "{}: {} x {} {}, {}", sheet["name"].get<std::string>(), sheet["width"].dump(),
        sheet["height"].dump(), sheet["units"].get<std::string>(),
        sheet.contains("format") ? fmt::format("{}/{}", sheet["format"].get<std::string>(),
                                               sheet["size"].get<std::string>())
                                 : "no format"));
    if (!sheet.contains("blocks")) return;
    for (const Json &block : sheet["blocks"])
        printLine(fmt::format("  {} at {}, {}: {} fields, {} tables",
                              block["id"].get<std::string>(), block["x"].dump(), block["y"].dump(),
                              block["fields"].dump(), block["tables"].dump()));
}

int info(const Options &options, const std::string &path)
{
    Workspace work(options);
    work.open(path);
    const char *units = work.units() == 1 ? "mm" : "in";
    Json result{{"file", path}, {"units", units}, {"sheets", Json::array()}};
    for (const SheetRef &sheet : work.sheets()) result["sheets"].push_back(describe(sheet, units));
    if (options.json) {
        printJson(result);
        return kFine;
    }
    printLine(fmt::format("{}: {}, {} sheets", path, units, result["sheets"].size()));
    for (const Json &sheet : result["sheets"]) print(sheet);
    return kFine;
}

} // namespace

void addInfoVerb(Command command)
{
    auto path = std::make_shared<std::string>();
    CLI::App *verb = command.parser.add_subcommand("info", "What a drawing holds");
    verb->add_option("part", *path, "The drawing")->required();
    verb->callback(
        [=] { command.chosen = [=, &options = command.options] { return info(options, *path); }; });
}

} // namespace app
