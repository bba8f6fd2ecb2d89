// part salvage: a new drawing of all that can be read out of a damaged one.
#include "app/output.h"
#include "app/part_verbs.h"

#include "nxhost/part_files.h"
#include "uf.h"
#include "ug_exception.hxx"

#include <fmt/format.h>

#include <memory>

namespace app {

namespace {

struct SalvageArguments {
    std::string path;
    std::string output;
};

nxhost::PartSalvage salvage(const SalvageArguments &arguments)
{
    try {
        return nxhost::salvagePartFile(arguments.path, arguments.output);
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
    const nxhost::PartSalvage result = salvage(arguments);
    if (options.json) {
        printJson(toJson(arguments, result));
    } else {
        for (const nxhost::PartFinding &finding : result.lost)
            printLine(fmt::format("{}; {}", finding.text, finding.mended));
        printNote(options, fmt::format("{}: {} objects; {}", arguments.output, result.objects,
                                       result.lost.empty() ? "nothing was lost"
                                                           : "what was lost is listed above"));
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
