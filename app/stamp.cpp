// stamp: a sheet with its format and its values, straight to a picture or into a drawing; or one for
// each record of a data file.
#include "app/document_info.h"
#include "app/fill.h"
#include "app/fleet/records.h"
#include "app/fleet/stamp_rows.h"
#include "app/formats.h"
#include "app/output.h"
#include "app/picture.h"
#include "app/sheet_command.h"
#include "app/verbs.h"
#include "app/workspace.h"

#include <fmt/format.h>

#include <filesystem>
#include <memory>
#include <random>

namespace app {

namespace {

namespace fs = std::filesystem;

struct StampArguments {
    fleet::StampRowsArguments rows; // what both forms have
    std::string record;
    bool add = false;
};

// A picture needs a part only while it is drawn: this one is never saved.
std::string transientPart()
{
    std::random_device random;
    return (fs::temp_directory_path() /
            fmt::format("qelfmt-{:08x}{:08x}.qdraw", random(), random()))
        .string();
}

// The sheet to fill in, in a part that is opened or made for it.
SheetRef prepare(Workspace &work, const StampArguments &arguments)
{
    const auto &rows = arguments.rows;
    const bool drawing = !isPicture(rows.output);
    if (!rows.templatePath.empty()) {
        work.open(rows.templatePath);
        return work.openSheet(rows.sheet);
    }
    const FormatName format = parseFormatName(rows.format);
    const bool exists = drawing && fs::exists(rows.output);
    if (exists && arguments.add) {
        work.open(rows.output);
        convertOldSheets(work);
    } else {
        work.create(drawing && !exists ? rows.output : transientPart(), unitsOf(format));
    }
    const SheetRef sheet = work.addSheet(
        rows.sheet.empty() ? fmt::format("SHEET{}", work.sheets().size() + 1) : rows.sheet);
    placeFormat(work, sheet, format);
    return sheet;
}

int stampOne(const Options &options, const StampArguments &arguments)
{
    const auto &rows = arguments.rows;
    const bool drawing = !isPicture(rows.output);
    if (drawing && fs::exists(rows.output) && !arguments.add && !rows.overwrite)
        throw Problem(rows.output + ": exists already: give --add to add a sheet to it");

    Workspace work(options, rows.templatePath.empty());
    const SheetRef sheet = prepare(work, arguments);
    work.speakOf(rows.output);
    if (!rows.data.empty()) {
        const auto report = fillIn(work, sheet, readData(rows.data, arguments.record));
        printMisfits(options, placeOf(work, sheet), report.misfits);
    }
    if (options.dryRun) return kFine;
    if (!drawing) {
        for (const std::string &note : notesOf(drawSheets({sheet}, rows.output, rows.picture)))
            printNote(options, note);
    } else if (work.path() == rows.output)
        work.save();
    else
        work.saveAs(rows.output, rows.overwrite);
    printNote(options, fmt::format("{}: {} as {}", rows.output, sheet.name,
                                   rows.format.empty() ? rows.templatePath : rows.format));
    return kFine;
}

int stamp(const Options &options, const StampArguments &arguments)
{
    const auto &rows = arguments.rows;
    requirePictureOrDrawing(rows.output);
    if (rows.format.empty() == rows.templatePath.empty())
        throw Problem("stamp: give either a format, as in ISO/A3, or --template PART", kUsage);
    if (!fleet::NamePattern::isPattern(rows.output)) return stampOne(options, arguments);
    if (rows.data.empty())
        throw Problem(rows.output + ": names a file a record: give the records with --data",
                      kUsage);
    if (arguments.add || !arguments.record.empty())
        throw Problem("stamp: --add and --record are for one sheet; the name of the output makes "
                      "one a record",
                      kUsage);
    return fleet::stampRows(options, rows);
}

} // namespace

void addStampVerb(Command command)
{
    auto arguments = std::make_shared<StampArguments>();
    auto &rows = arguments->rows;
    CLI::App *verb = command.parser.add_subcommand(
        "stamp", "Make a sheet with its format and values: a PDF, SVG, PNG or a drawing");
    verb->add_option("format,--format", rows.format, "Format and size, as in ISO/A3");
    verb->add_option("--template", rows.templatePath, "A drawing to start from, not a format");
    verb->add_option(
            "-o,--output", rows.output,
            "OUT.pdf, .svg, .png or .qdraw; with a field's name in braces a file a record, "
            "as in out/{number}.pdf; {record} and {index} are its name and number")
        ->required();
    verb->add_option("--data", rows.data, "JSON or CSV file with field values");
    verb->add_option("--record", arguments->record, "Which member of the data file to take");
    verb->add_option("-s,--sheet", rows.sheet, "Name of the sheet");
    verb->add_flag("--add", arguments->add, "Add the sheet to a drawing that exists");
    addDateOption(verb, rows.picture);
    verb->add_flag("--overwrite", rows.overwrite, "Drawings that exist are made anew");
    fleet::addRunOptions(verb, rows.run);
    verb->callback([=] {
        command.chosen = [=, &options = command.options] { return stamp(options, *arguments); };
    });
}

} // namespace app
