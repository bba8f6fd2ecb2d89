// defs where, show: which definition counts, and what it says.
#include "app/authoring/missing_ids.h"
#include "app/authoring/record_text.h"
#include "app/defs_text.h"
#include "app/output.h"
#include "app/problem.h"

#include "lumug/nx_search_file_list.h"

#include <boost/filesystem.hpp>
#include <fmt/format.h>

#include <map>
#include <memory>

namespace app {

namespace {

// Every place where the id stands along the search directories; the first one counts.
struct Place {
    std::string file;
    authoring::RecordTree record;
    int units;
    bool loaded;
};

std::vector<Place> placesOf(Workspace &work, const std::string &id,
                            std::vector<std::string> &looked)
{
    std::vector<Place> places;
    const LumUg::NxSearchFileList list("format_defs");
    for (const auto &place : list.places())
        looked.push_back(place.folder.string() + " (" + place.origin + ")");
    bool loading = true;
    for (const auto &path : list.filePaths("*.prt")) {
        authoring::RecordFile file;
        try {
            file = readDefinitionPart(work, path.string());
        } catch (const Problem &problem) { // loading passes over it too
            looked.push_back(std::string(problem.what()) + ": skipped");
            continue;
        }
        if (loading && !authoring::withoutId(file.records).empty()) {
            loading = false;
            looked.push_back(path.string() + ": has a definition without an id: it ends the "
                                             "loading, here and of all that follows; rebuild it");
        }
        for (const authoring::RecordTree &record : file.records)
            if ((record.kind->word == "format" || record.kind->word == "block") &&
                record.text("id") == id)
                places.push_back({path.string(), record, file.units, loading});
    }
    return places;
}

int where(const Options &options, const std::string &id)
{
    Workspace work(options, false);
    std::vector<std::string> looked;
    const auto places = placesOf(work, id, looked);
    Json found = Json::array();
    std::map<std::string, bool> won;
    for (const Place &place : places) {
        const bool first = place.loaded && !won[place.record.kind->word];
        won[place.record.kind->word] = won[place.record.kind->word] || first;
        found.push_back(Json{{"file", place.file},
                             {"kind", place.record.kind->word},
                             {"used", first},
                             {"loaded", place.loaded}});
    }
    if (options.json) {
        printJson(Json{{"looked", looked}, {"found", found}});
    } else {
        for (const std::string &folder : looked) printLine("looked in " + folder);
        for (const Json &one : found)
            printLine(fmt::format("{}: {} {}: {}", one["file"].get<std::string>(),
                                  one["kind"].get<std::string>(), id,
                                  one["used"].get<bool>()     ? "used"
                                  : one["loaded"].get<bool>() ? "hidden by the first one"
                                                              : "not loaded"));
    }
    if (places.empty())
        throw Problem(id + " is in none of the folders above: see 'qelfmt defs list'", kFindings);
    return kFine;
}

int show(const Options &options, const std::string &id)
{
    Workspace work(options, false);
    std::vector<std::string> looked;
    const auto places = placesOf(work, id, looked);
    if (places.empty()) throw Problem(id + " is defined nowhere: see 'qelfmt defs list'");
    printText(authoring::recordsToText({places[0].units, {places[0].record}, {}}));
    return kFine;
}

void addIdVerb(CLI::App *family, Command command, const std::string &name, const std::string &help,
               int (*run)(const Options &, const std::string &))
{
    auto id = std::make_shared<std::string>();
    CLI::App *verb = family->add_subcommand(name, help);
    verb->add_option("id", *id, "A format or a block")->required();
    verb->callback(
        [=] { command.chosen = [=, &options = command.options] { return run(options, *id); }; });
}

} // namespace

void addDefinitionWhereVerbs(CLI::App *family, Command command)
{
    addIdVerb(family, command, "where", "Every place of a definition, and which one counts", where);
    addIdVerb(family, command, "show", "A definition as text, every slot", show);
}

} // namespace app
