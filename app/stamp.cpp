// stamp: a sheet with its format and its values, straight to a picture or into a drawing.
#include "app/fill.h"
#include "app/formats.h"
#include "app/output.h"
#include "app/verbs.h"
#include "app/workspace.h"

#include "display/render.h"

#include <fmt/format.h>
#include <unistd.h>

#include <filesystem>
#include <memory>

namespace app {

namespace {

namespace fs = std::filesystem;

struct StampArguments {
    std::string format;
    std::string data;
    std::string record;
    std::string output;
    std::string sheet;
    bool add = false;
};

// A picture needs a part only while it is drawn: this one is never saved.
std::string transientPart()
{
    return (fs::temp_directory_path() / fmt::format("qelfmt-{}.qdraw", getpid())).string();
}

void renderSheet(const SheetRef &sheet, const std::string &path)
{
    const std::string extension = fs::path(path).extension().string();
    if (extension == ".svg")
        host::display::writeSvg(sheet.tag, path);
    else if (extension == ".png")
        host::display::writePng(sheet.tag, path);
    else
        host::display::writePdf({sheet.tag}, path);
}

int stamp(const Options &options, const StampArguments &arguments)
{
    const std::string extension = fs::path(arguments.output).extension().string();
    const bool drawing = extension == ".qdraw";
    if (!drawing && extension != ".pdf" && extension != ".svg" && extension != ".png")
        throw Problem(arguments.output + ": write .qdraw, .pdf, .svg or .png", kUsage);
    if (drawing && fs::exists(arguments.output) && !arguments.add)
        throw Problem(arguments.output + ": exists already: give --add to add a sheet to it");

    Workspace work(options);
    const FormatName format = parseFormatName(arguments.format);
    if (drawing && fs::exists(arguments.output))
        work.open(arguments.output);
    else
        work.create(drawing ? arguments.output : transientPart(), unitsOf(format));
    const std::string name = arguments.sheet.empty()
                                 ? fmt::format("SHEET{}", work.sheets().size() + 1)
                                 : arguments.sheet;
    const SheetRef sheet = work.addSheet(name);
    placeFormat(work, sheet, format);
    if (!arguments.data.empty()) {
        const auto report = fillIn(work, sheet, readData(arguments.data, arguments.record));
        printMisfits(options, placeOf(work, sheet), report.misfits);
    }
    if (options.dryRun) return kFine;
    if (drawing)
        work.save();
    else
        renderSheet(sheet, arguments.output);
    printNote(options, fmt::format("{}: {} as {}", arguments.output, sheet.name, arguments.format));
    return kFine;
}

} // namespace

void addStampVerb(Command command)
{
    auto arguments = std::make_shared<StampArguments>();
    CLI::App *verb = command.parser.add_subcommand(
        "stamp", "Make a sheet with its format and values: a PDF, SVG, PNG or a drawing");
    verb->add_option("format", arguments->format, "Format and size, as in ISO/A3")->required();
    verb->add_option("-o,--output", arguments->output, "OUT.pdf, .svg, .png or .qdraw")->required();
    verb->add_option("--data", arguments->data, "JSON or CSV file with field values");
    verb->add_option("--record", arguments->record, "Which member of the data file to take");
    verb->add_option("--sheet", arguments->sheet, "Name of the sheet");
    verb->add_flag("--add", arguments->add, "Add the sheet to a drawing that exists");
    verb->callback([=] {
        command.chosen = [=, &options = command.options] { return stamp(options, *arguments); };
    });
}

} // namespace app
