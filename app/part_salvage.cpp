// part salvage: a new drawing of all that can be read out of a damaged one.
#include "app/output.h"
#include "app/part_verbs.h"
#include "app/readable.h"

#include "nxhost/part_files.h"
#include "uf.h"
#include "ug_exception.hxx"

#include <fmt/format.h>

#include <filesystem>
#include <memory>

namespace app {

namespace {

struct SalvageArguments {
    std::string path;
    std::string output;
};

// What a salvage would give, without one.
nxhost::PartSalvage tried(const SalvageArguments &arguments)
{
    if (std::filesystem::exists(arguments.output))
        throw Problem(arguments.output +
                      ": there is a file of this name already. Choose another name.");
    const nxhost::PartCheck check = nxhost::checkPartFile(arguments.path);
    if (!check.salvageable)
        throw Problem(arguments.path +
                      ": nothing of a part can be read out of it. Restore the file "
                      "from a backup copy.");
    nxhost::PartSalvage result{check.objects, {}};
    for (const nxhost::PartFinding &finding : check.findings)
        if (!finding.mended.empty()) result.lost.push_back(finding);
    return result;
}

nxhost::PartSalvage salvage(const SalvageArguments &arguments, bool dryRun)
{
    try {
        return dryRun ? tried(arguments)
                      : nxhost::salvagePartFile(arguments.path, arguments.output);
    } catch (const UgException &failure) {
        throw Problem::ofPart(arguments.path, failure.askErrorCode());
    }
}

Json toJson(const SalvageArguments &arguments, const nxhost::PartSalvage &result)
{
    Json report{{"part", arguments.path},
                {"salvaged", arguments.output},
                {"objects", result.objects},
                {"lost", Json::array()}};
    for (const nxhost::PartFinding &finding : result.lost) {
        Json entry{{"kind", finding.kind}};
        if (finding.object) entry["object"] = finding.object;
        entry["text"] = finding.text;
        entry["mended"] = finding.mended;
        report["lost"].push_back(entry);
    }
    return report;
}

int salvagePart(const Options &options, const SalvageArguments &arguments)
{
    UgException::throwOnFailure(UF_initialize());
    const nxhost::PartSalvage result = salvage(arguments, options.dryRun);
    if (options.json) {
        printJson(toJson(arguments, result));
    } else {
        for (const nxhost::PartFinding &finding : result.lost)
            printLine(readable(fmt::format("{}; {}", finding.text, finding.mended)));
        printNote(
            options,
            fmt::format("{}: {}; {}{}", arguments.output, counted(result.objects, "object"),
                        result.lost.empty() ? "nothing was lost" : "what was lost is listed above",
                        options.dryRun ? " (nothing saved)" : ""));
    }
    return result.lost.empty() ? kFine : kFindings;
}

} // namespace

void addPartSalvageVerb(CLI::App *family, Command command)
{
    auto arguments = std::make_shared<SalvageArguments>();
    CLI::App *verb = family->add_subcommand(
        "salvage", "Make a new drawing of what can be read out of a damaged one");
    verb->add_option("part", arguments->path, "The damaged drawing; it stays as it is")->required();
    verb->add_option("-o,--output", arguments->output, "The new drawing")->required();
    verb->callback([=] {
        command.chosen = [=, &options = command.options] {
            return salvagePart(options, *arguments);
        };
    });
}

} // namespace app
