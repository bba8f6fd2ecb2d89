// render: sheets as pictures.
#include "app/document_info.h"
#include "app/fleet/render_many.h"
#include "app/output.h"
#include "app/picture.h"
#include "app/verbs.h"
#include "app/workspace.h"

#include <fmt/format.h>

#include <filesystem>
#include <memory>

namespace app {

namespace {

namespace fs = std::filesystem;

struct RenderArguments {
    fleet::RenderManyArguments many; // what both forms have
    std::string sheet;
    bool pdf = false;
    bool svg = false;
    bool png = false;
};

void noteSubstitutions(const Options &options, const host::display::RenderResult &result)
{
    for (const std::string &note : notesOf(result)) printNote(options, note);
}

int renderOne(const Options &options, const RenderArguments &arguments)
{
    const auto &many = arguments.many;
    const std::string &path = many.paths.paths.front();
    const std::string output =
        many.output.empty() ? fs::path(path).replace_extension(".pdf").string() : many.output;
    if (!isPicture(output)) throw Problem(output + ": write .pdf, .svg or .png", kUsage);

    Workspace work(options, false);
    work.open(path);
    std::vector<SheetRef> sheets = work.sheets();
    if (!arguments.sheet.empty() || sheets.empty()) sheets = {work.openSheet(arguments.sheet)};
    const std::vector<std::string> names = pictureNames(sheets, output);
    if (!options.dryRun && names.size() == 1)
        noteSubstitutions(options, drawSheets(sheets, output, many.options));
    for (std::size_t i = 0; !options.dryRun && names.size() > 1 && i < names.size(); ++i)
        noteSubstitutions(options, drawSheets({sheets[i]}, names[i], many.options));
    if (options.json) {
        printJson(Json(names));
        return kFine;
    }
    for (const std::string &name : names) printLine(name);
    return kFine;
}

// One drawing whose picture is named, or is to lie beside it.
bool isSingle(const RenderArguments &arguments)
{
    const auto &many = arguments.many;
    const bool kindGiven = arguments.pdf || arguments.svg || arguments.png;
    return many.paths.paths.size() == 1 && many.paths.filesFrom.empty() && !many.merge &&
           !kindGiven && !fs::is_directory(many.paths.paths.front()) &&
           !fs::is_directory(many.output);
}

int render(const Options &options, const RenderArguments &arguments)
{
    if (isSingle(arguments)) return renderOne(options, arguments);
    fleet::RenderManyArguments many = arguments.many;
    if (!arguments.sheet.empty())
        throw Problem("render: --sheet is for one drawing, not for many", kUsage);
    if (many.output.empty())
        throw Problem("render: say with -o which folder the pictures go to", kUsage);
    const int kinds = arguments.pdf + arguments.svg + arguments.png;
    if (kinds > 1) throw Problem("render: give one of --pdf, --svg, --png", kUsage);
    many.ending = arguments.svg ? ".svg" : arguments.png ? ".png" : ".pdf";
    if (many.merge && (many.ending != ".pdf" || fs::path(many.output).extension() != ".pdf"))
        throw Problem(many.output + ": --merge writes one PDF: name it OUT.pdf", kUsage);
    if (!many.merge && isPicture(many.output))
        throw Problem(many.output + ": several drawings need a folder, or --merge for one PDF",
                      kUsage);
    return fleet::renderMany(options, many);
}

} // namespace

void addRenderVerb(Command command)
{
    auto arguments = std::make_shared<RenderArguments>();
    auto &many = arguments->many;
    CLI::App *verb = command.parser.add_subcommand("render", "Draw the sheets: PDF, SVG or PNG");
    fleet::addPathOptions(verb, many.paths);
    verb->add_option(
        "-o,--output", many.output,
        "OUT.pdf (a page a sheet), OUT.svg or OUT.png; default: the drawing's name. Of "
        "many drawings a folder");
    verb->add_option("-s,--sheet", arguments->sheet, "One sheet only");
    verb->add_flag("--pdf", arguments->pdf, "Many drawings as PDF (the default)");
    verb->add_flag("--svg", arguments->svg, "Many drawings as SVG");
    verb->add_flag("--png", arguments->png, "Many drawings as PNG");
    verb->add_flag("--merge", many.merge, "One PDF of all of them");
    verb->add_option("--dpi", many.options.pngDpi, "Resolution of a PNG");
    verb->add_flag("--monochrome", many.options.monochrome, "Everything black");
    addDateOption(verb, many.options);
    fleet::addRunOptions(verb, many.run);
    verb->callback([=] {
        command.chosen = [=, &options = command.options] { return render(options, *arguments); };
    });
}

} // namespace app
