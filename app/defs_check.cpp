// defs check, diff, where, show, schema: what is to be known of definitions before they are used.
#include "app/authoring/check.h"
#include "app/authoring/compare.h"
#include "app/authoring/library_reader.h"
#include "app/authoring/library_writer.h"
#include "app/authoring/record_text.h"
#include "app/authoring/schema.h"
#include "app/defs_text.h"
#include "app/output.h"

#include "lumug/nx_search_file_list.h"

#include <boost/filesystem.hpp>
#include <fmt/format.h>

#include <filesystem>
#include <map>
#include <memory>
#include <optional>

namespace app {

namespace {

using authoring::CheckedFile;

struct CheckArguments {
    std::vector<std::string> files;
    std::string against;
    std::string language = "en";
};

struct NamedFile {
    std::string name;
    std::optional<authoring::Library> library;
    std::vector<authoring::RecordTree> records;
    std::function<bool(const std::string &)> hasPattern;
};

Options withoutDefinitions(const Options &options)
{
    Options bare = options;
    bare.definitions.clear();
    return bare;
}

NamedFile readEither(Workspace &work, const std::string &path, const std::string &language)
{
    NamedFile file{path, {}, {}, {}};
    if (std::filesystem::path(path).extension() == ".prt") {
        file.records = readDefinitionPart(work, path).records;
        const auto patterns = std::filesystem::path(path).parent_path().parent_path() / "patterns";
        file.hasPattern = [patterns](const std::string &name) {
            return std::filesystem::exists(patterns / (name + ".prt"));
        };
    } else {
        file.library = authoring::readLibrary(path, language);
        file.records = authoring::recordsOf(*file.library);
    }
    return file;
}

int check(const Options &options, const CheckArguments &arguments)
{
    Workspace work(withoutDefinitions(options), false);
    std::vector<NamedFile> files;
    for (const std::string &path : arguments.files)
        files.push_back(readEither(work, path, arguments.language));
    std::vector<CheckedFile> checked;
    std::vector<authoring::RecordTree> all;
    for (const NamedFile &file : files) {
        checked.push_back(
            {file.name, file.records, file.library ? &*file.library : nullptr, file.hasPattern});
        all.insert(all.end(), file.records.begin(), file.records.end());
    }
    Json findings = Json::array();
    for (const authoring::Finding &finding : authoring::checkDefinitions(checked)) {
        findings.push_back(
            Json{{"file", finding.file}, {"where", finding.where}, {"text", finding.text}});
        if (!options.json)
            printLine(fmt::format("{}: {}: {}", finding.file, finding.where, finding.text));
    }
    if (!arguments.against.empty()) {
        const auto old = readDefinitionPart(work, arguments.against);
        for (const authoring::Difference &change : authoring::rollout(old.records, all)) {
            findings.push_back(
                Json{{"file", arguments.against}, {"where", change.where}, {"text", change.what}});
            if (!options.json) printLine(fmt::format("{}: {}", change.where, change.what));
        }
    }
    if (options.json) printJson(findings);
    return findings.empty() ? kFine : kFindings;
}

int diff(const Options &options, const std::string &old, const std::string &fresh)
{
    Workspace work(withoutDefinitions(options), false);
    const NamedFile a = readEither(work, old, "en"), b = readEither(work, fresh, "en");
    Json changes = Json::array();
    for (const authoring::Difference &change : authoring::differences(a.records, b.records)) {
        changes.push_back(Json{{"where", change.where}, {"what", change.what}});
        if (!options.json) printLine(fmt::format("{}: {}", change.where, change.what));
    }
    if (options.json) printJson(changes);
    return changes.empty() ? kFine : kFindings;
}

// Every place where the id stands along the search directories; the first one counts.
struct Place {
    std::string file;
    authoring::RecordTree record;
    int units;
};

std::vector<Place> placesOf(Workspace &work, const std::string &id,
                            std::vector<std::string> &looked)
{
    std::vector<Place> places;
    const LumUg::NxSearchFileList list("format_defs");
    for (const auto &place : list.places())
        looked.push_back(place.folder.string() + " (" + place.origin + ")");
    for (const auto &path : list.filePaths("*.prt")) {
        const authoring::RecordFile file = readDefinitionPart(work, path.string());
        for (const authoring::RecordTree &record : file.records)
            if ((record.kind->word == "format" || record.kind->word == "block") &&
                record.text("id") == id)
                places.push_back({path.string(), record, file.units});
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
        const bool first = !won[place.record.kind->word];
        won[place.record.kind->word] = true;
        found.push_back(
            Json{{"file", place.file}, {"kind", place.record.kind->word}, {"used", first}});
    }
    if (options.json) {
        printJson(Json{{"looked", looked}, {"found", found}});
    } else {
        for (const std::string &folder : looked) printLine("looked in " + folder);
        for (const Json &one : found)
            printLine(fmt::format("{}: {} {}: {}", one["file"].get<std::string>(),
                                  one["kind"].get<std::string>(), id,
                                  one["used"].get<bool>() ? "used" : "hidden by the first one"));
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

void addCheckVerb(CLI::App *family, Command command)
{
    auto arguments = std::make_shared<CheckArguments>();
    CLI::App *verb = family->add_subcommand("check", "Look for what would be wrong on a drawing");
    verb->add_option("files", arguments->files, "Definition texts and parts")->required();
    verb->add_option("--against", arguments->against,
                     "An older definition part: what a rollout does to placed blocks");
    verb->add_option("--language", arguments->language, "Of labels that are given in several");
    verb->callback([=] {
        command.chosen = [=, &options = command.options] { return check(options, *arguments); };
    });
}

void addDiffVerb(CLI::App *family, Command command)
{
    auto files = std::make_shared<std::pair<std::string, std::string>>();
    CLI::App *verb = family->add_subcommand("diff", "Compare two definition files slot by slot");
    verb->add_option("old", files->first, "A text or a part")->required();
    verb->add_option("new", files->second, "A text or a part")->required();
    verb->callback([=] {
        command.chosen = [=, &options = command.options] {
            return diff(options, files->first, files->second);
        };
    });
}

void addSchemaVerb(CLI::App *family, Command command)
{
    auto tables = std::make_shared<bool>(false);
    CLI::App *verb = family->add_subcommand("schema", "The JSON Schema of definition texts");
    verb->add_flag("--tables", *tables, "The keys of the full form as Markdown tables instead");
    verb->callback([=] {
        command.chosen = [=] {
            printText(*tables ? authoring::slotTables() : authoring::fullFormSchema());
            return static_cast<int>(kFine);
        };
    });
}

} // namespace

void addDefinitionCheckVerbs(CLI::App *family, Command command)
{
    addCheckVerb(family, command);
    addDiffVerb(family, command);
    addIdVerb(family, command, "where", "Every place of a definition, and which one counts", where);
    addIdVerb(family, command, "show", "A definition as text, every slot", show);
    addSchemaVerb(family, command);
}

} // namespace app
