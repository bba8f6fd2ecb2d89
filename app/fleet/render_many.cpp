#include "app/fleet/render_many.h"

#include "app/fleet/claims.h"
#include "app/fleet/drawing_handler.h"
#include "app/fleet/notes_once.h"
#include "app/fleet/render_merged.h"
#include "app/fleet/report_output.h"
#include "app/output.h"
#include "app/picture.h"
#include "app/problem.h"

#include <fmt/format.h>

#include <algorithm>
#include <filesystem>
#include <map>

namespace app::fleet {

namespace {

namespace fs = std::filesystem;

std::vector<std::string> pathsOf(const std::vector<Found> &found)
{
    std::vector<std::string> paths;
    for (const Found &one : found) paths.push_back(one.path);
    return paths;
}

struct Outputs {
    std::map<std::string, std::string> ofDrawings;
    std::map<std::string, std::string> owners;
};

// Two drawings must not end in one picture.
Outputs outputsOf(const std::vector<Found> &found, const RenderManyArguments &arguments)
{
    Outputs outputs;
    for (const Found &one : found) {
        std::string &output = outputs.ofDrawings[one.path];
        output =
            (fs::path(arguments.output) / one.name).replace_extension(arguments.ending).string();
        const auto [owner, fresh] = outputs.owners.emplace(output, one.path);
        if (!fresh)
            throw Problem(
                fmt::format("{} and {} would both be drawn to {}: render their folders one "
                            "by one, or name the folder above both",
                            owner->second, one.path, owner->first));
    }
    return outputs;
}

// Whether the picture of one sheet of another drawing can have the name: "a-b.svg" is sheet b of "a". Those
// that cannot be need no claim, for the outputs are different.
bool mayBeAnothers(const std::string &output, const Outputs &outputs)
{
    const std::size_t name = output.rfind('/') + 1; // 0 without a folder
    const std::string ending = fs::path(output).extension().string();
    for (std::size_t at = name; (at = output.find('-', at)) != std::string::npos; ++at)
        if (outputs.owners.count(output.substr(0, at) + ending)) return true;
    return false;
}

// Two drawings that have several sheets may come to one name all the same.
void claim(const Claims &claims, const std::string &name, const std::string &drawing)
{
    const std::string holder = claims.take(name, drawing);
    if (!holder.empty())
        throw Problem(fmt::format("{}: would be drawn to {}, which is the picture of {}: rename a "
                                  "drawing or a sheet, or draw them to folders of their own",
                                  drawing, name, holder));
}

// {"names": the pictures, "notes": what is to be said of them}
std::string drawAll(Workspace &work, const Outputs &outputs, const Claims &claims,
                    const RenderManyArguments &arguments, bool dryRun)
{
    const std::string &output = outputs.ofDrawings.at(work.path());
    const std::vector<SheetRef> sheets = sheetsOf(work);
    const std::vector<std::string> names = pictureNames(sheets, output);
    if (names.size() > 1 || mayBeAnothers(output, outputs))
        for (const std::string &name : names) claim(claims, name, work.path());
    Json result{{"names", names}, {"notes", Json::array()}};
    if (dryRun) return result.dump();
    if (const fs::path folder = fs::path(output).parent_path(); !folder.empty())
        fs::create_directories(folder);
    const auto draw = [&](const std::vector<SheetRef> &drawn, const std::string &name) {
        for (std::string &note : notesOf(drawSheets(drawn, name, arguments.options)))
            result["notes"].push_back(std::move(note));
    };
    if (names.size() == 1)
        draw(sheets, output);
    else
        for (std::size_t i = 0; i < names.size(); ++i) draw({sheets[i]}, names[i]);
    return compact(result);
}

template <class Take> void eachDone(Run &run, const Take &take)
{
    run.each([&](const ItemRow &item) {
        if (item.state == ItemState::done) take(item.key, Json::parse(item.text));
    });
}

} // namespace

int renderMany(const Options &options, const RenderManyArguments &arguments)
{
    const std::vector<Found> found = find(arguments.paths);
    if (found.empty()) {
        printNote(options, "no drawings there (*.qdraw)");
        return kFine;
    }
    if (arguments.merge) return renderMerged(options, arguments, found);
    const auto outputs = outputsOf(found, arguments);
    Run run(options, arguments.run,
            fmt::format("render {} {} -o {} {} {} {} {} {}", joined(arguments.paths.paths, " "),
                        arguments.paths.filesFrom + arguments.paths.shard, arguments.output,
                        arguments.ending, arguments.options.monochrome ? "--monochrome" : "",
                        arguments.options.pngDpi, arguments.options.creationDate.value_or(""),
                        options.dryRun ? "--dry-run" : ""),
            pathsOf(found), Journal::Keeping::inBatches);
    const Claims claims;
    eachDone(run, [&](const std::string &drawing, const Json &result) { // by earlier runs
        for (const Json &name : result["names"]) claim(claims, name, drawing);
    });
    const RunEnd end = run.execute(onDrawings(options, run.keys(), false, [&](Workspace &work) {
        return drawAll(work, outputs, claims, arguments, options.dryRun);
    }));
    Json written = Json::array();
    std::size_t count = 0;
    NotesOnce notes(options);
    eachDone(run, [&](const std::string &, const Json &result) {
        ++count;
        notes.print(result["notes"]);
        if (options.json)
            for (const Json &name : result["names"]) written.push_back(name);
    });
    if (options.json)
        printJson(written);
    else
        printNote(options, fmt::format("{} of {} drawn{}", count, counted(found.size(), "drawing"),
                                       options.dryRun ? " (nothing saved)" : ""));
    return end.status();
}

} // namespace app::fleet
