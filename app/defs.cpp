// defs: definitions as text and as parts.
#include "app/authoring/library_reader.h"
#include "app/authoring/library_writer.h"
#include "app/defs_text.h"
#include "app/output.h"
#include "app/verbs.h"
#include "app/workspace.h"

#include "definitions/definition_file_manager.h"
#include "definitions/format_def.h"
#include "definitions/format_size.h"

#include <fmt/format.h>

#include <filesystem>
#include <memory>
#include <optional>

namespace app {

namespace {

struct DefinitionArguments {
    std::vector<std::string> files;
    std::string folder;
    std::string language = "en";
    std::string keepOrderOf;
};

int build(const Options &options, const DefinitionArguments &arguments)
{
    // Every file is read before anything is written.
    std::vector<authoring::Library> libraries;
    for (const std::string &file : arguments.files)
        libraries.push_back(authoring::readLibrary(file, arguments.language));
    if (options.dryRun) return kFine;

    Options bare = options;
    bare.definitions.clear();
    Workspace work(bare, false);
    std::optional<authoring::RecordFile> old;
    if (!arguments.keepOrderOf.empty()) old = readDefinitionPart(work, arguments.keepOrderOf);
    Json written = Json::array();
    for (std::size_t i = 0; i < libraries.size(); ++i) {
        const std::string name = std::filesystem::path(arguments.files[i]).stem().string();
        const auto result =
            authoring::writeLibrary(libraries[i], name, arguments.folder, old ? &*old : nullptr);
        written.push_back(result.definitionPart);
        printNote(options,
                  fmt::format("{}: {}, {}, {}", result.definitionPart,
                              counted(result.formats, "format"), counted(result.blocks, "block"),
                              counted(result.patterns, "pattern")));
    }
    if (options.json) printJson(written);
    return kFine;
}

int list(const Options &options)
{
    const Workspace work(options);
    Json formats = Json::array();
    std::vector<std::vector<std::string>> rows;
    for (const auto &[id, definition] : TrDefinitionFileManager::allFormatDefinitions()) {
        std::vector<std::string> sizes;
        for (const TrFormatSizeV1 &size : definition->GetAvailableSizes())
            sizes.push_back(size.GetId());
        const std::string units = definition->GetUnits() == 1 ? "mm" : "in";
        rows.push_back({id, units, joined(sizes, " "), definition->GetDescription()});
        formats.push_back(Json{{"id", id},
                               {"units", units},
                               {"sizes", sizes},
                               {"description", definition->GetDescription()}});
    }
    if (options.json)
        printJson(formats);
    else
        printTable({"FORMAT", "UNITS", "SIZES", "DESCRIPTION"}, rows);
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
    family->add_subcommand("list", "List the formats that are found")->callback([=] {
        command.chosen = [&options = command.options] { return list(options); };
    });
    addDefinitionTextVerbs(family, command);
    addDefinitionCheckVerb(family, command);
    addDefinitionCompareVerbs(family, command);
    addDefinitionWhereVerbs(family, command);
}

} // namespace app
