// render: sheets as pictures.
#include "app/output.h"
#include "app/verbs.h"
#include "app/workspace.h"

#include "display/render.h"

#include <fmt/format.h>

#include <filesystem>
#include <memory>

namespace app {

namespace {

namespace fs = std::filesystem;

struct RenderArguments {
    std::string path;
    std::string output;
    std::string sheet;
    host::display::RenderOptions options;
};

void noteSubstitutions(const Options &options, const host::display::RenderResult &result)
{
    for (const auto &one : result.substitutions)
        printNote(options, one.font.empty()
                               ? fmt::format("no font on this machine has {}", one.characters)
                               : fmt::format("{} drawn with {}", one.characters, one.font));
}

// One picture holds one sheet: those of several are told apart by the sheet's name.
std::string pictureOf(const std::string &output, const SheetRef &sheet, bool several)
{
    if (!several) return output;
    const fs::path path(output);
    return (path.parent_path() /
            fmt::format("{}-{}{}", path.stem().string(), sheet.name, path.extension().string()))
        .string();
}

int render(const Options &options, const RenderArguments &arguments)
{
    const std::string output = arguments.output.empty()
                                   ? fs::path(arguments.path).replace_extension(".pdf").string()
                                   : arguments.output;
    const std::string extension = fs::path(output).extension().string();
    if (extension != ".pdf" && extension != ".svg" && extension != ".png")
        throw Problem(output + ": write .pdf, .svg or .png", kUsage);

    Workspace work(options, false);
    work.open(arguments.path);
    std::vector<SheetRef> sheets = work.sheets();
    if (!arguments.sheet.empty() || sheets.empty()) sheets = {work.openSheet(arguments.sheet)};
    std::vector<std::string> written;
    if (extension == ".pdf") {
        std::vector<tag_t> tags;
        for (const SheetRef &sheet : sheets) tags.push_back(sheet.tag);
        noteSubstitutions(options, host::display::writePdf(tags, output, arguments.options));
        written.push_back(output);
    } else {
        for (const SheetRef &sheet : sheets) {
            written.push_back(pictureOf(output, sheet, sheets.size() > 1));
            const auto write =
                extension == ".svg" ? host::display::writeSvg : host::display::writePng;
            noteSubstitutions(options, write(sheet.tag, written.back(), arguments.options));
        }
    }
    if (options.json) {
        printJson(Json(written));
        return kFine;
    }
    for (const std::string &path : written) printLine(path);
    return kFine;
}

} // namespace

void addRenderVerb(Command command)
{
    auto arguments = std::make_shared<RenderArguments>();
    CLI::App *verb = command.parser.add_subcommand("render", "Draw the sheets: PDF, SVG or PNG");
    verb->add_option("part", arguments->path, "The drawing")->required();
    verb->add_option("-o,--output", arguments->output,
                     "OUT.pdf (a page a sheet), OUT.svg or OUT.png; default: the drawing's name");
    verb->add_option("-s,--sheet", arguments->sheet, "One sheet only");
    verb->add_option("--dpi", arguments->options.pngDpi, "Resolution of a PNG");
    verb->add_flag("--monochrome", arguments->options.monochrome, "Everything black");
    verb->callback([=] {
        command.chosen = [=, &options = command.options] { return render(options, *arguments); };
    });
}

} // namespace app
