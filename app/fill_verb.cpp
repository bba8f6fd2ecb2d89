// fill: many values at once, from a data file.
#include "app/fill.h"
#include "app/fleet/fill_report.h"
#include "app/fleet/report_rows.h"
#include "app/formats.h"
#include "app/output.h"
#include "app/sheet_command.h"
#include "app/verbs.h"

#include <fmt/format.h>

namespace app {

namespace {

struct FillArguments {
    fleet::PathArguments paths;
    fleet::RunArguments run;
    std::string sheet;
    std::string data;
    std::string record;
    bool complete = false;
    bool force = false;
    bool strict = false;
};

std::vector<std::string> texts(const std::vector<FieldName> &names)
{
    std::vector<std::string> all;
    for (const FieldName &name : names) all.push_back(display(name));
    return all;
}

void printReport(const Options &options, const std::string &place, const FillReport &report)
{
    if (options.json) {
        Json misfits = Json::array();
        for (const MisfitReport &one : report.misfits) {
            misfits.push_back(toJson(one.misfit));
            misfits.back()["field"] = display(one.name);
        }
        return printJson(
            {{"set", texts(report.set)}, {"missing", texts(report.missing)}, {"misfits", misfits}});
    }
    printNote(options, fmt::format("{}: {} fields set", place, report.set.size()));
    if (!report.missing.empty())
        printNote(options, fmt::format("{}: not in the data, unchanged: {}", place,
                                       joined(texts(report.missing), ", ")));
    printMisfits(options, place, report.misfits);
}

int fillSheet(const Options &options, const FillArguments &arguments)
{
    const auto &run = arguments.run;
    const fleet::PathArguments &paths = arguments.paths;
    if (paths.paths.size() != 1 || !paths.filesFrom.empty() || !paths.shard.empty() ||
        run.jobs != 0 || !run.journal.empty() || run.resume)
        throw Problem(arguments.data +
                          ": is no report of 'qelfmt report' with a file and a sheet a "
                          "row: its values are for the one drawing that is named",
                      kUsage);
    const DataFile data = readData(arguments.data, arguments.record);
    const SheetTarget target{paths.paths.front(), arguments.sheet};
    return changeSheet(options, target, [&](Workspace &work, const SheetRef &sheet) {
        const FillReport report = fillIn(work, sheet, data, arguments.force);
        const std::string place = placeOf(work, sheet);
        printReport(options, place, report);
        if (arguments.complete && !report.missing.empty())
            throw Problem(fmt::format("{}: {} has no value for {}: nothing is saved", place,
                                      data.path, joined(texts(report.missing), ", ")),
                          kFindings);
        if (arguments.strict && !report.misfits.empty())
            throw Problem(place + ": values do not fit their cells: nothing is saved", kFindings);
    });
}

// A record is chosen from data for one sheet; the rows of a report choose their sheets themselves.
int fill(const Options &options, const FillArguments &arguments)
{
    if (!arguments.record.empty() || !arguments.sheet.empty() || !fleet::isReport(arguments.data))
        return fillSheet(options, arguments);
    if (arguments.complete)
        throw Problem("--complete: a report may leave fields out: leave the option out", kUsage);
    return fleet::fillFromReport(options, {arguments.paths, arguments.run, arguments.data,
                                           arguments.force, arguments.strict});
}

} // namespace

void addFillVerb(Command command)
{
    auto arguments = std::make_shared<FillArguments>();
    CLI::App *verb =
        command.parser.add_subcommand("fill", "Set many values from a data file, or from a report");
    fleet::addPathOptions(verb, arguments->paths);
    verb->add_option("-s,--sheet", arguments->sheet, "The sheet; not needed when there is one");
    verb->add_option("--data", arguments->data,
                     "FILE.json or FILE.csv with field values, or a changed report")
        ->required();
    verb->add_option("--record", arguments->record, "Which record of the file to take");
    verb->add_flag("--complete", arguments->complete, "Refuse data that leaves fields out");
    verb->add_flag("--strict", arguments->strict, "Refuse values that do not fit their cells");
    verb->add_flag("--force", arguments->force, "Also locked fields");
    fleet::addRunOptions(verb, arguments->run);
    verb->callback([=] {
        command.chosen = [=, &options = command.options] { return fill(options, *arguments); };
    });
}

} // namespace app
