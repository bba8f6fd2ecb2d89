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

void write(const ReportArguments &arguments, const std::function<void(std::FILE *)> &report)
{
    if (arguments.output.empty()) return report(results());
    OutputFile file(arguments.output);
    report(file.stream());
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

void writeMerged(ReportForm form, const Columns &columns, const std::vector<Json> &rows,
                 std::FILE *to)
{
    if (form != ReportForm::records)
        return writeReport(
            form, columns,
            [&](const auto &take) {
                for (const Json &row : rows) take(row);
            },
            to);
    std::map<std::string, std::string> drawings;
    for (const Json &row : rows) drawings[row["file"]] += drawingText(form, Json::array({row}));
    writeRecords(
        [&](const auto &take) {
            for (const auto &[file, text] : drawings)
                if (!text.empty()) take(file, text);
        },
        to);
}

// The rows of the JSON reports of several runs, by file and sheet.
int merge(const Options &options, const ReportArguments &arguments)
{
    const Columns columns(arguments.columns);
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
    write(arguments,
          [&](std::FILE *to) { writeMerged(formOf(options, arguments), columns, all, to); });
    const bool failed =
        std::any_of(all.begin(), all.end(), [](const Json &row) { return row.contains("error"); });
    return failed ? kInput : kFine;
}

// The library is started only for what the stored records do not tell.
std::function<Handler()> reader(const Options &options, const std::vector<std::string> &paths,
                                const Columns &columns, ReportForm form)
{
    const auto whole =
        onDrawings(options, paths, columns.needsDefinitions(), [columns, form](Workspace &work) {
            return drawingText(form, sheetRows(work, columns));
        });
    if (!storedRowsSuffice(columns)) return whole;
    return [&paths, columns, form, whole]() -> Handler {
        const auto stored = std::make_shared<StoredRows>(columns, form);
        const auto opened = std::make_shared<Handler>();
        return [&paths, whole, stored, opened](std::size_t item) {
            if (auto text = stored->read(paths[item])) return std::move(*text);
            if (!*opened) *opened = whole();
            return (*opened)(item);
        };
    };
}

Json failedRow(const ItemRow &item)
{
    return {{"file", item.key}, {"state", "failed"}, {"error", item.text}};
}

void writeRun(ReportForm form, const Columns &columns, Run &run, std::FILE *to)
{
    if (form == ReportForm::records)
        return writeRecords(
            [&](const auto &take) {
                run.each([&](const ItemRow &item) {
                    if (item.state == ItemState::done && !item.text.empty())
                        take(item.key, item.text);
                });
            },
            to);
    writeReport(
        form, columns,
        [&](const auto &take) {
            run.each([&](const ItemRow &item) {
                if (item.state == ItemState::failed) return take(failedRow(item));
                for (const Json &row : Json::parse(item.text)) take(row);
            });
        },
        to);
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

int report(const Options &options, const ReportArguments &arguments)
{
    const ReportForm form = formOf(options, arguments); // before hours of work
    requireColumns(arguments.columns);
    if (arguments.merge) return merge(options, arguments);
    const Columns columns(arguments.columns);
    Run run(options, arguments.run,
            fmt::format("report {} {} --columns {} --defs {}{}", joined(arguments.paths.paths, " "),
                        arguments.paths.filesFrom + arguments.paths.shard,
                        joined(arguments.columns, ","), joined(options.definitions, ":"),
                        form == ReportForm::records ? " --as records" : ""),
            collect(arguments.paths), Journal::Keeping::inBatches);
    const RunEnd end = run.execute(reader(options, run.keys(), columns, form));
    if (end.interrupted) return end.status();
    if (run.keys().empty()) printNote(options, "no drawings there (*.qdraw)");
    write(arguments, [&](std::FILE *to) { writeRun(form, columns, run, to); });
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
