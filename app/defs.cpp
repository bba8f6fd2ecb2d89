// defs: definitions as text and as parts.
#include "app/authoring/library_reader.h"
#include "app/authoring/library_writer.h"
#include "app/authoring/missing_ids.h"
#include "app/authoring/record_builder.h"
#include "app/authoring/stored_order.h"
#include "app/defs_files.h"
#include "app/defs_text.h"
#include "app/output.h"
#include "app/problem.h"
#include "app/verbs.h"
#include "app/workspace.h"

#include "definitions/block_def.h"
#include "definitions/definition_file_manager.h"
#include "definitions/format_def.h"
#include "definitions/format_size.h"

#include <fmt/format.h>

#include <filesystem>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <utility>

namespace app {

namespace {

namespace fs = std::filesystem;

struct DefinitionArguments {
    std::vector<std::string> files;
    std::string folder;
    std::string language = "en";
    std::string keepOrderOf;
};

// a/x.yaml and b/x.yaml would both become x.prt.
void refuseEqualStems(const std::vector<std::string> &files)
{
    std::map<std::string, std::string> owners;
    for (const std::string &file : files) {
        const std::string stem = fs::path(file).stem().string();
        const auto [known, fresh] = owners.try_emplace(stem, file);
        if (!fresh)
            throw Problem(fmt::format("{} and {} would both become {}.prt: rename one of them, or "
                                      "build them into different folders",
                                      known->second, file, stem));
    }
}

// A definition without an id cannot be loaded, and no other of its site either.
void refuseMissingIds(const std::string &file, const std::vector<authoring::RecordTree> &records)
{
    std::vector<authoring::Complaint> complaints;
    for (const authoring::RecordTree *record : authoring::withoutId(records))
        complaints.push_back({file, record->origin.at, record->kind->word, "id",
                              "is missing: nothing of its site could be loaded; give it one"});
    if (!complaints.empty()) throw authoring::Complaints(complaints);
}

// Of definitions with one id the first file of the folder counts, in the order of names.
void warnOfRivals(Workspace &work, const fs::path &folder, const std::set<std::string> &written)
{
    std::set<fs::path> paths;
    for (const auto &entry : fs::directory_iterator(folder))
        if (entry.path().extension() == ".prt") paths.insert(entry.path());
    std::map<std::string, std::string> owners; // identity -> file
    std::map<std::pair<std::string, std::string>, std::vector<std::string>> rivals; // by two files
    for (const fs::path &path : paths) {
        try {
            for (const auto &record : readDefinitionPart(work, path.string()).records) {
                if (record.kind->word != "format" && record.kind->word != "block") continue;
                const std::string identity = authoring::identityOf(record);
                const auto [known, first] = owners.try_emplace(identity, path.string());
                if (!first && known->second != path.string() &&
                    (written.contains(path.string()) || written.contains(known->second)))
                    rivals[{known->second, path.string()}].push_back(identity);
            }
        } catch (const Problem &) { // loading passes over what is no part, too
        }
    }
    for (const auto &[files, ids] : rivals)
        fmt::print(stderr,
                   "qelfmt: warning: {} and {} both define {}: the first one counts; remove one of "
                   "them\n",
                   files.first, files.second, joined(ids, ", "));
}

int build(const Options &options, const DefinitionArguments &arguments)
{
    refuseEqualStems(arguments.files);
    // Every file is read before anything is written.
    std::vector<authoring::Library> libraries;
    for (const std::string &file : arguments.files) {
        libraries.push_back(authoring::readLibrary(file, arguments.language));
        refuseMissingIds(file, authoring::recordsOf(libraries.back()));
    }
    Workspace work(withoutDefinitions(options), false);
    std::optional<authoring::RecordFile> old;
    if (!arguments.keepOrderOf.empty())
        old = readOlderPart(work, "--keep-order-of", arguments.keepOrderOf);
    if (options.dryRun) return kFine;

    Json written = Json::array();
    std::set<std::string> paths;
    for (std::size_t i = 0; i < libraries.size(); ++i) {
        const std::string name = fs::path(arguments.files[i]).stem().string();
        const auto result =
            authoring::writeLibrary(libraries[i], name, arguments.folder, old ? &*old : nullptr);
        written.push_back(result.definitionPart);
        paths.insert(result.definitionPart);
        printNote(options,
                  fmt::format("{}: {}, {}, {}", result.definitionPart,
                              counted(result.formats, "format"), counted(result.blocks, "block"),
                              counted(result.patterns, "pattern")));
    }
    warnOfRivals(work, fs::path(arguments.folder) / "format_defs", paths);
    if (options.json) printJson(written);
    return kFine;
}

void listFormats(Json &all, std::vector<std::vector<std::string>> &rows)
{
    for (const auto &[id, definition] : TrDefinitionFileManager::allFormatDefinitions()) {
        std::vector<std::string> sizes;
        for (const TrFormatSizeV1 &size : definition->GetAvailableSizes())
            sizes.push_back(size.GetId());
        const std::string units = definition->GetUnits() == 1 ? "mm" : "in";
        rows.push_back({id, units, joined(sizes, " "), definition->GetDescription()});
        all.push_back(Json{{"kind", "format"},
                           {"id", id},
                           {"units", units},
                           {"sizes", sizes},
                           {"description", definition->GetDescription()}});
    }
}

void listBlocks(Json &all, std::vector<std::vector<std::string>> &rows)
{
    for (const auto &[id, definition] : TrDefinitionFileManager::allBlockDefinitions()) {
        const std::string units = definition->GetUnits() == 1 ? "mm" : "in";
        const auto formats = definition->GetFormatIds(); // and suites
        rows.push_back({id, units, joined(formats, " "), definition->GetDescription()});
        all.push_back(Json{{"kind", "block"},
                           {"id", id},
                           {"units", units},
                           {"formats", formats},
                           {"description", definition->GetDescription()}});
    }
}

int list(const Options &options)
{
    const Workspace work(options);
    Json all = Json::array();
    std::vector<std::vector<std::string>> formats, blocks;
    listFormats(all, formats);
    listBlocks(all, blocks);
    if (options.json) {
        printJson(all);
    } else {
        printTable({"FORMAT", "UNITS", "SIZES", "DESCRIPTION"}, formats);
        printLine("");
        printTable({"BLOCK", "UNITS", "FORMATS", "DESCRIPTION"}, blocks);
    }
    return kFine;
}

} // namespace

void addDefinitionVerbs(Command command)
{
    CLI::App *family = command.parser.add_subcommand("defs", "Definitions of formats and blocks");
    family->require_subcommand(1);
    auto arguments = std::make_shared<DefinitionArguments>();
    CLI::App *verb = family->add_subcommand("build", "Make definition and pattern parts from text");
    verb->add_option("files", arguments->files, "Definition files (YAML)")->required();
    verb->add_option("-o,--output", arguments->folder, "Folder for format_defs and patterns")
        ->required();
    verb->add_option("--language", arguments->language, "Of labels that are given in several");
    verb->add_option("--keep-order-of", arguments->keepOrderOf,
                     "A definition part whose order of records stays; new ones follow");
    verb->callback([=] {
        command.chosen = [=, &options = command.options] { return build(options, *arguments); };
    });
    family->add_subcommand("list", "List the formats and blocks that are found")->callback([=] {
        command.chosen = [&options = command.options] { return list(options); };
    });
    addDefinitionTextVerbs(family, command);
    addDefinitionCheckVerb(family, command);
    addDefinitionCompareVerbs(family, command);
    addDefinitionWhereVerbs(family, command);
}

} // namespace app
