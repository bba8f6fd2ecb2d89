// format: the format of a sheet.
#include "app/format_verbs.h"
#include "app/formats.h"
#include "app/output.h"
#include "app/sheet_command.h"
#include "app/values.h"

#include "api/trv_fmt.h"
#include "definitions/definition_file_manager.h"
#include "definitions/format_def.h"
#include "definitions/format_size.h"
#include "drawing/drawing.h"
#include "drawing/format.h"

#include <fmt/format.h>

namespace app {

namespace {

struct FormatArguments {
    SheetTarget target;
    std::string format; // or, for resize, a size
};

int addFormat(const Options &options, const FormatArguments &arguments)
{
    const FormatName name = parseFormatName(arguments.format);
    return changeSheet(options, arguments.target, [&](Workspace &work, const SheetRef &sheet) {
        placeFormat(work, sheet, name);
    });
}

int removeFormat(const Options &options, const FormatArguments &arguments)
{
    return changeSheet(options, arguments.target, [&](Workspace &work, const SheetRef &sheet) {
        checkLibrary(TRV_FMT_delete_format(sheet.tag), placeOf(work, sheet));
    });
}

void resize(const Workspace &work, const SheetRef &sheet, const std::string &id)
{
    const auto drawing = TrDrawing::getDrawing(sheet.tag);
    if (!drawing->hasFormat()) throw Problem(placeOf(work, sheet) + ": has no format to resize");
    const auto format = drawing->format();
    const auto definition = format->getDefinition();
    const TrFormatSizeV1 size = definition->GetSizeDef(id);
    if (size.IsNull()) {
        std::vector<std::string> sizes;
        for (const TrFormatSizeV1 &one : definition->GetAvailableSizes())
            sizes.push_back(one.GetId());
        throw Problem(fmt::format("{}: format {} has no size {}: it has {}", placeOf(work, sheet),
                                  format->GetFormatDefName(), id, joined(sizes, ", ")));
    }
    format->resize(size);
}

int resizeFormat(const Options &options, const FormatArguments &arguments)
{
    return changeSheet(options, arguments.target, [&](Workspace &work, const SheetRef &sheet) {
        resize(work, sheet, arguments.format);
    });
}

int showFormat(const Options &options, const FormatArguments &arguments)
{
    return readSheet(options, arguments.target, [&](Workspace &work, const SheetRef &sheet) {
        char format[TRV_FMT_MAX_ID_BUFSIZE] = "", size[TRV_FMT_MAX_ID_BUFSIZE] = "";
        checkLibrary(TRV_FMT_ask_format(sheet.tag, format, size), placeOf(work, sheet));
        if (options.json)
            printJson(Json{{"format", format}, {"size", size}});
        else
            printLine(format[0] ? fmt::format("{}/{}", format, size) : "none");
    });
}

// What can be placed in a drawing: formats in its units that are not obsolete.
int listFormats(const Options &options, const std::string &path)
{
    Workspace work(options);
    work.open(path);
    Json formats = Json::array();
    std::vector<std::vector<std::string>> rows;
    for (const auto &definition : TrDefinitionFileManager::GetFormatDefinitions("ALL")) {
        std::vector<std::string> sizes;
        for (const TrFormatSizeV1 &size : definition->GetAvailableSizes())
            sizes.push_back(size.GetId());
        rows.push_back({definition->GetId(), joined(sizes, " "), definition->GetDescription()});
        formats.push_back(Json{{"id", definition->GetId()},
                               {"sizes", sizes},
                               {"description", definition->GetDescription()}});
    }
    if (options.json)
        printJson(formats);
    else
        printTable({"FORMAT", "SIZES", "DESCRIPTION"}, rows);
    return kFine;
}

void addListVerb(Command command, CLI::App *family)
{
    auto path = std::make_shared<std::string>();
    CLI::App *verb = family->add_subcommand("list", "The formats that a drawing can have");
    verb->add_option("part", *path, "The drawing")->required();
    verb->callback([=] {
        command.chosen = [=, &options = command.options] { return listFormats(options, *path); };
    });
}

using Run = int (*)(const Options &, const FormatArguments &);

void addVerb(Command command, CLI::App *family, const char *name, const char *help,
             const char *argument, Run run)
{
    auto arguments = std::make_shared<FormatArguments>();
    CLI::App *verb = family->add_subcommand(name, help);
    addTarget(verb, arguments->target);
    if (argument) verb->add_option(argument, arguments->format)->required();
    verb->callback([=] {
        command.chosen = [=, &options = command.options] { return run(options, *arguments); };
    });
}

} // namespace

void addFormatVerbs(Command command)
{
    CLI::App *family = command.parser.add_subcommand("format", "The format of a sheet");
    family->require_subcommand(1);
    addVerb(command, family, "add", "Place a format on a sheet that has none", "format", addFormat);
    addVerb(command, family, "resize", "Change to another size of the format", "size",
            resizeFormat);
    addFormatUpdateVerbs(family, command);
    addFormatReplaceVerb(family, command);
    addVerb(command, family, "remove", "Remove the format with everything on it", nullptr,
            removeFormat);
    addVerb(command, family, "show", "Format and size", nullptr, showFormat);
    addListVerb(command, family);
}

} // namespace app
