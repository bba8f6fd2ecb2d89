// check: drawings that are not as the definitions say, and values that are not as the site wants them.
#include "app/fleet/check_drawing.h"
#include "app/fleet/drawing_handler.h"
#include "app/fleet/findings.h"
#include "app/fleet/images.h"
#include "app/fleet/output_file.h"
#include "app/fleet/paths.h"
#include "app/fleet/report_output.h"
#include "app/fleet/run.h"
#include "app/fleet/sarif.h"
#include "app/problem.h"
#include "app/verbs.h"

#include <fmt/format.h>

#include <memory>

namespace app {

namespace {

using namespace fleet;

struct CheckArguments {
    PathArguments paths;
    RunArguments run;
    std::string rules;
    std::string sarif;
    std::string failOn = "note";
};

Severity severityOf(const std::string &name)
{
    for (const Severity severity : {Severity::warning, Severity::error})
        if (name == nameOf(severity)) return severity;
    return Severity::note;
}

Finding findingOf(const std::string &file, const Json &json, const Rules &rules)
{
    Finding finding{file,
                    json["sheet"],
                    json.value("block", ""),
                    json.value("field", ""),
                    json.value("value", Json()),
                    "",
                    severityOf(json["severity"]),
                    json["message"],
                    json["remedy"]};
    const Json &rule = json["rule"];
    finding.rule = rule.is_string() ? rule.get<std::string>() : rules.rules.at(rule).name;
    return finding;
}

void eachFinding(Run &run, const Rules &rules, const FindingTaker &take)
{
    run.each([&](const ItemRow &item) {
        if (item.state == ItemState::failed) return take.unread({item.key, item.text});
        const Json result = Json::parse(item.text);
        for (const Json &finding : result["findings"])
            take.finding(findingOf(item.key, finding, rules));
    });
}

CheckTotals totalsOf(Run &run, const Rules &rules)
{
    CheckTotals totals;
    totals.matched.resize(rules.rules.size());
    run.each([&](const ItemRow &item) {
        if (item.state == ItemState::failed) {
            ++totals.unread;
            return;
        }
        const Json result = Json::parse(item.text);
        ++totals.drawings;
        totals.sheets += result["sheets"].get<std::size_t>();
        for (const std::size_t rule : result["matched"]) totals.matched.at(rule) = true;
        for (const Json &finding : result["findings"])
            ++totals.findings[static_cast<std::size_t>(severityOf(finding["severity"]))];
    });
    return totals;
}

void noteUnmatched(const Options &options, const CheckResults &results)
{
    if (results.totals.drawings == 0) return;
    for (const Rule *rule : results.unmatched())
        printNote(options, fmt::format("{}:{}: note: rule \"{}\" has matched no field of any "
                                       "drawing: look at its names and formats",
                                       results.rules.path, rule->line, rule->name));
}

int statusOf(const RunEnd &end, const CheckTotals &totals, Severity failOn)
{
    if (end.status() != kFine) return end.status();
    for (auto severity = static_cast<std::size_t>(failOn); severity < totals.findings.size();
         ++severity)
        if (totals.findings[severity] > 0) return kFindings;
    return kFine;
}

int check(const Options &options, const CheckArguments &arguments)
{
    const Rules rules = arguments.rules.empty() ? usualRules() : readRules(arguments.rules);
    Run run(options, arguments.run,
            fmt::format("check {} {} --rules {} --defs {}", joined(arguments.paths.paths, " "),
                        arguments.paths.filesFrom + arguments.paths.shard,
                        arguments.rules.empty() ? "" : sumOf(readFile(arguments.rules)),
                        joined(options.definitions, ":")),
            collect(arguments.paths), Journal::Keeping::inBatches);
    const RunEnd end = run.execute(
        onDrawings(options, run.keys(), !rules.states.empty(),
                   [&rules](Workspace &work) { return compact(checkDrawing(work, rules)); }));
    if (end.interrupted) return end.status();
    if (run.keys().empty()) printNote(options, "no drawings there (*.qdraw)");

    const CheckResults results{rules, totalsOf(run, rules),
                               [&](const FindingTaker &take) { eachFinding(run, rules, take); }};
    if (options.json)
        printFindingsJson(results);
    else
        printFindings(results);
    noteUnmatched(options, results);
    if (!arguments.sarif.empty()) {
        OutputFile file(arguments.sarif);
        writeSarif(results, file.stream());
        file.finish();
    }
    return statusOf(end, results.totals, severityOf(arguments.failOn));
}

} // namespace

void addCheckVerb(Command command)
{
    auto arguments = std::make_shared<CheckArguments>();
    CLI::App *verb = command.parser.add_subcommand(
        "check", "Drawings that are out of date, and values that break rules");
    addPathOptions(verb, arguments->paths);
    verb->add_option("--rules", arguments->rules, "RULES.yaml with what has to hold of values");
    verb->add_option("--sarif", arguments->sarif, "OUT.sarif: the findings as SARIF 2.1.0 too");
    verb->add_option("--fail-on", arguments->failOn,
                     "Status 1 only from this severity on: note (usual), warning or error")
        ->check(CLI::IsMember({"note", "warning", "error"}));
    addRunOptions(verb, arguments->run);
    verb->callback([=] {
        command.chosen = [=, &options = command.options] { return check(options, *arguments); };
    });
}

} // namespace app
