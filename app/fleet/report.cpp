// report: which drawings carry which format in which state, with which values.
#include "app/fleet/drawing_handler.h"
#include "app/fleet/output_file.h"
#include "app/fleet/paths.h"
#include "app/fleet/report_output.h"
#include "app/fleet/run.h"
#include "app/fleet/stored_rows.h"
#include "app/library_output.h"
#include "app/output.h"
#include "app/problem.h"
#include "app/read_text.h"
#include "app/verbs.h"

#include <fmt/format.h>

#include <algorithm>
#include <map>
#include <memory>
#include <set>

namespace app {

namespace {

using namespace fleet;

struct ReportArguments {
    PathArguments paths;
    RunArguments run;
    std::vector<std::string> columns;
    std::string form = "table";
    std::string output;
    bool merge = false;
};

const std::map<std::string, ReportForm> kForms{{"table", ReportForm::table},
                                               {"csv", ReportForm::csv},
                                               {"json", ReportForm::json},
                                               {"records", ReportForm::records}};

ReportForm formOf(const Options &options, const ReportArguments &arguments)
{
    if (options.json) return ReportForm::json;
    if (arguments.form == "table" && !arguments.output.empty()) {
        const std::size_t dot = arguments.output.rfind('.');
        const std::string ending = dot == std::string::npos ? "" : arguments.output.substr(dot + 1);
        if (ending == "csv" || ending == "json") return kForms.at(ending);
        throw Problem(arguments.output + ": write .csv or .json, or give --as", kUsage);
    }
    return kForms.at(arguments.form);
}

void write(const Options &options, const ReportArguments &arguments, const RowSource &rows)
{
    const ReportForm form = formOf(options, arguments);
    const Columns columns(arguments.columns);
    if (arguments.output.empty()) return writeReport(form, columns, rows, results());
    OutputFile file(arguments.output);
    writeReport(form, columns, rows, file.stream());
    file.finish();
}

// Rows in the order of their files.
void requireOnce(const std::vector<Json> &rows)
{
    std::set<std::string> seen;
    for (const Json &row : rows) {
        const std::string file = fixedCell(row, "file"), sheet = fixedCell(row, "sheet");
        if (!seen.insert(file + '\n' + sheet).second)
            throw Problem(fmt::format("{}{}{}: is in two of the reports: merge those of separate "
                                      "lists of drawings",
                                      file, sheet.empty() ? "" : ", sheet ", sheet));
    }
}

// The rows of the JSON reports of several runs, by file and sheet.
int merge(const Options &options, const ReportArguments &arguments)
{
    std::vector<Json> all;
    std::set<std::string> merged;
    for (const std::string &path : arguments.paths.paths) {
        if (!merged.insert(canonicalPath(path)).second)
            throw Problem(path + ": is named twice: its rows would be there twice");
        const Json rows = readJson(path);
        const bool sound =
            rows.is_array() && std::all_of(rows.begin(), rows.end(), [](auto &row) {
                return row.is_object() && row.contains("file") && row["file"].is_string();
            });
        if (!sound)
            throw Problem(path + ": is no JSON report: --merge takes what 'qelfmt report --json' "
                                 "wrote");
        all.insert(all.end(), rows.begin(), rows.end());
    }
    std::stable_sort(all.begin(), all.end(), [](const Json &a, const Json &b) {
        return fixedCell(a, "file") < fixedCell(b, "file");
    });
    requireOnce(all);
    write(options, arguments, [&](const auto &take) {
        for (const Json &row : all) take(row);
    });
    const bool failed =
        std::any_of(all.begin(), all.end(), [](const Json &row) { return row.contains("error"); });
    return failed ? kInput : kFine;
}

// The library is started only for what the stored records do not tell.
std::function<Handler()> reader(const Options &options, const std::vector<std::string> &paths,
                                const Columns &columns)
{
    const auto whole =
        onDrawings(options, paths, columns.needsDefinitions(),
                   [columns](Workspace &work) { return compact(sheetRows(work, columns)); });
    if (!storedRowsSuffice(columns)) return whole;
    return [&paths, columns, whole]() -> Handler {
        const auto opened = std::make_shared<Handler>();
        return [&paths, columns, whole, opened](std::size_t item) {
            if (const auto rows = storedSheetRows(paths[item], columns)) return compact(*rows);
            if (!*opened) *opened = whole();
            return (*opened)(item);
        };
    };
}

// A value has a dot in its column's name, and a pattern may stand for anything.
void requireColumns(const std::vector<std::string> &columns)
{
    const auto &fixed = fixedColumns();
    for (const std::string &column : columns)
        if (column.find_first_of(".*?[") == std::string::npos &&
            std::find(fixed.begin(), fixed.end(), column) == fixed.end())
            throw Problem(fmt::format("--columns {}: there is no such column: there are {}, and "
                                      "values as BLOCK.FIELD",
                                      column, joined(fixed, ", ")),
                          kUsage);
}

Json failedRow(const ItemRow &item)
{
    return {{"file", item.key}, {"state", "failed"}, {"error", item.text}};
}

int report(const Options &options, const ReportArguments &arguments)
{
    formOf(options, arguments); // before hours of work
    requireColumns(arguments.columns);
    if (arguments.merge) return merge(options, arguments);
    const Columns columns(arguments.columns);
    Run run(options, arguments.run,
            fmt::format("report {} {} --columns {} --defs {}", joined(arguments.paths.paths, " "),
                        arguments.paths.filesFrom + arguments.paths.shard,
                        joined(arguments.columns, ","), joined(options.definitions, ":")),
            collect(arguments.paths), Journal::Keeping::inBatches);
    const RunEnd end = run.execute(reader(options, run.keys(), columns));
    if (end.interrupted) return end.status();
    if (run.keys().empty()) printNote(options, "no drawings there (*.qdraw)");
    write(options, arguments, [&](const auto &take) {
        run.each([&](const ItemRow &item) {
            if (item.state == ItemState::failed) return take(failedRow(item));
            for (const Json &row : Json::parse(item.text)) take(row);
        });
    });
    return end.status();
}

} // namespace

void addReportVerb(Command command)
{
    auto arguments = std::make_shared<ReportArguments>();
    CLI::App *verb = command.parser.add_subcommand(
        "report", "A row a sheet of many drawings: format, state, blocks, every value");
    addPathOptions(verb, arguments->paths);
    verb->add_option("--as", arguments->form, "table, csv, json or records")
        ->check(CLI::IsMember({"table", "csv", "json", "records"}));
    verb->add_option("-o,--output", arguments->output, "OUT.csv or OUT.json instead of the screen");
    verb->add_option("--columns", arguments->columns,
                     "Only these, as in file,state,TITLE.*; what is not asked for takes no time")
        ->delimiter(',')
        ->allow_extra_args(false);
    verb->add_flag("--merge", arguments->merge, "Make one report of the JSON reports named");
    addRunOptions(verb, arguments->run);
    verb->callback([=] {
        command.chosen = [=, &options = command.options] { return report(options, *arguments); };
    });
}

} // namespace app
