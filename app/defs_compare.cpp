// defs diff, schema: definitions slot by slot.
#include "app/authoring/compare.h"
#include "app/authoring/schema.h"
#include "app/defs_files.h"
#include "app/defs_text.h"
#include "app/output.h"

#include <fmt/format.h>

#include <memory>
#include <utility>

namespace app {

namespace {

int diff(const Options &options, const std::string &old, const std::string &fresh)
{
    Workspace work(withoutDefinitions(options), false);
    const NamedFile a = readEither(work, old, "en"), b = readEither(work, fresh, "en");
    Json changes = Json::array();
    for (const authoring::Difference &change :
         authoring::differences({a.units, a.records, {}}, {b.units, b.records, {}})) {
        changes.push_back(Json{{"where", change.where}, {"what", change.what}});
        if (!options.json) printLine(fmt::format("{}: {}", change.where, change.what));
    }
    if (options.json) printJson(changes);
    return changes.empty() ? kFine : kFindings;
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
            printText(*tables ? authoring::slotTables() : authoring::definitionSchema());
            return static_cast<int>(kFine);
        };
    });
}

} // namespace

void addDefinitionCompareVerbs(CLI::App *family, Command command)
{
    addDiffVerb(family, command);
    addSchemaVerb(family, command);
}

} // namespace app
