// update: many drawings brought up to date with the definitions of today, one save a drawing.
#include "app/update.h"

#include "app/drift.h"
#include "app/fleet/drawing_handler.h"
#include "app/fleet/images.h"
#include "app/fleet/paths.h"
#include "app/fleet/run.h"
#include "app/output.h"
#include "app/problem.h"
#include "app/update_report.h"
#include "app/verbs.h"

#include "uf_draw.h"
#include "ug_exception.hxx"

#include <fmt/format.h>

#include <algorithm>
#include <map>
#include <memory>

namespace app {

namespace {

using namespace fleet;

struct UpdateArguments {
    PathArguments paths;
    RunArguments run;
    bool force = false;
};

// What happens to a drawing: the worst of its sheets counts.
enum class Result { current, updated, skipped };

// Skipped for good: nobody has to do anything about it.
constexpr const char *kNoFormat = "has no sheet with a format";

constexpr const char *kResults[] = {"current", "updated", "skipped"};

struct FileUpdate {
    Result result = Result::current;
    std::string reason; // why it is skipped
    Json sheets = Json::array();
};

bool isBroken(SheetState state) { return state == SheetState::orphan; }

std::string orphans(const SheetDrift &drift)
{
    std::vector<std::string> gone;
    if (drift.orphan) gone.push_back("format " + drift.format);
    for (const BlockDrift &block : drift.blocks)
        if (block.orphan) gone.push_back("block " + block.id);
    return joined(gone, ", ");
}

std::string losses(const UpdateReport &report)
{
    std::vector<std::string> lost;
    for (const ValueChange &value : report.values)
        if (value.kind == ValueChangeKind::lost)
            lost.push_back(
                fmt::format("{}.{} \"{}\"", value.block, value.field, joined(value.before, " | ")));
    return joined(lost, ", ");
}

// In memory only. Skipped ones are not to be saved.
FileUpdate updateOpened(Workspace &work, bool force)
{
    FileUpdate update;
    const std::vector<SheetRef> sheets = work.sheets();
    std::map<tag_t, SheetBefore> before; // one sheet's update looks at the others
    for (const SheetRef &sheet : sheets) before[sheet.tag] = lookBefore(sheet.tag);
    tag_t current = NULL_TAG;
    UF_DRAW_ask_current_drawing(&current); // none is open: none is opened again
    bool any = false;
    for (const SheetRef &sheet : sheets) {
        UgException::throwOnFailure(UF_DRAW_open_drawing(sheet.tag));
        const SheetDrift drift = driftOf(sheet.tag);
        if (drift.state == SheetState::none) continue;
        any = true;
        const std::string place = fmt::format("sheet {}", sheet.name);
        if (isBroken(drift.state)) {
            update.result = Result::skipped;
            update.reason = fmt::format("{}: no definition of {}: add it to the definitions, or "
                                        "replace it",
                                        place, orphans(drift));
            return update;
        }
        if (drift.state == SheetState::current && !before[sheet.tag].legacy) continue;
        const UpdateReport report =
            updateSheet(sheet.tag, work.path() + ", " + place, before[sheet.tag]);
        if (const std::string lost = losses(report); !lost.empty() && !force) {
            update.result = Result::skipped;
            update.reason = fmt::format("{}: values would be lost: {}: give --force to let them go",
                                        place, lost);
            return update;
        }
        if (!report.changed()) continue;
        update.result = Result::updated;
        update.sheets.push_back(toJson(sheet, report));
    }
    if (!any) {
        update.result = Result::skipped;
        update.reason = kNoFormat;
    }
    if (current != NULL_TAG) UgException::throwOnFailure(UF_DRAW_open_drawing(current));
    return update;
}

std::string resultText(FileUpdate update)
{
    Json result{{"result", kResults[static_cast<int>(update.result)]}};
    if (!update.reason.empty()) result["reason"] = update.reason;
    if (!update.sheets.empty()) result["sheets"] = std::move(update.sheets);
    return result.dump(-1, ' ', false, Json::error_handler_t::replace);
}

// The image is on disk before the drawing changes, the sum of what it became after it has: a run that is
// killed in between can be resumed and undone.
std::string updateFile(Workspace &work, const UpdateArguments &arguments, bool dryRun,
                       Images *images)
{
    const std::string path = work.path();
    const std::string before = images ? readFile(path) : std::string();
    FileUpdate update = updateOpened(work, arguments.force);
    if (dryRun) return resultText(std::move(update));
    if (update.result == Result::updated) {
        if (images) images->keep(path, before);
        work.save();
        if (images) images->changed(path, sumOf(readFile(path)));
    } else if (images) {
        if (images->wasChanged(path, sumOf(before))) // by the run that was killed
            update.result = Result::updated;
    }
    return resultText(std::move(update));
}

std::function<Handler()> updater(const Options &options, const Run &run,
                                 const UpdateArguments &arguments)
{
    const std::string journal = options.dryRun ? "" : run.journalPath();
    return [&options, &run, arguments, journal]() -> Handler {
        const auto images =
            journal.empty() ? nullptr : std::shared_ptr<Images>(Images::toKeep(journal));
        const bool dryRun = options.dryRun;
        return onDrawings(options, run.keys(), true, [=](Workspace &work) {
            return updateFile(work, arguments, dryRun, images.get());
        })();
    };
}

// Result: whether drawings wait for somebody, who gives --force or their definitions.
bool print(const Options &options, Run &run)
{
    bool waiting = false;
    std::map<std::string, int> counts;
    Json all = Json::array();
    run.each([&](const ItemRow &item) {
        Json row{{"file", item.key}};
        if (item.state == ItemState::failed)
            row.update(Json{{"result", "failed"}, {"reason", item.text}});
        else if (item.state == ItemState::done)
            row.update(Json::parse(item.text));
        else
            return;
        const std::string result = row["result"];
        ++counts[result];
        waiting = waiting || (result == "skipped" && row["reason"] != kNoFormat);
        if (options.json)
            all.push_back(std::move(row));
        else if (result != "current")
            printLine(
                fmt::format("{}: {}{}", item.key, result,
                            row.contains("reason") ? ": " + row["reason"].get<std::string>() : ""));
    });
    if (options.json) {
        printJson(all);
        return waiting;
    }
    std::vector<std::string> summary;
    for (const char *result : {"updated", "current", "skipped", "failed"})
        if (counts[result] > 0) summary.push_back(fmt::format("{} {}", counts[result], result));
    printLine(fmt::format("{}{}", joined(summary, ", "), options.dryRun ? " (nothing saved)" : ""));
    return waiting;
}

int update(const Options &options, const UpdateArguments &arguments)
{
    Run run(options, arguments.run,
            fmt::format("update {} {} {} {} --defs {}", joined(arguments.paths.paths, " "),
                        arguments.paths.filesFrom + arguments.paths.shard,
                        arguments.force ? "--force" : "", options.dryRun ? "--dry-run" : "",
                        joined(options.definitions, ":")),
            collect(arguments.paths));
    if (run.keys().empty()) {
        printNote(options, "no drawings there (*.qdraw)");
        if (!options.json) return kFine;
    }
    const RunEnd end = run.execute(updater(options, run, arguments));
    const bool waiting = print(options, run);
    return end.status() == kFine && waiting ? kFindings : end.status();
}

} // namespace

void addUpdateVerb(Command command)
{
    auto arguments = std::make_shared<UpdateArguments>();
    CLI::App *verb = command.parser.add_subcommand(
        "update", "Bring many drawings up to date with the definitions, keeping their values");
    addPathOptions(verb, arguments->paths);
    verb->add_flag("--force", arguments->force, "Also where values would be lost");
    addRunOptions(verb, arguments->run);
    verb->callback([=] {
        command.chosen = [=, &options = command.options] { return update(options, *arguments); };
    });
}

} // namespace app
