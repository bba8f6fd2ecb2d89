#include "app/examples.h"

#include <fmt/format.h>

#include <map>
#include <string>

namespace app {

namespace {

const std::map<std::string, std::string> kExamples{
    {"stamp", "stamp ISO/A3 --data values.json -o sheet.pdf"},
    {"part new", "part new a.qdraw"},
    {"part check", "part check a.qdraw"},
    {"part salvage", "part salvage a.qdraw -o saved.qdraw"},
    {"sheet add", "sheet add a.qdraw S1 --format ISO/A3"},
    {"sheet list", "sheet list a.qdraw"},
    {"format add", "format add a.qdraw ISO/A3"},
    {"format resize", "format resize a.qdraw A2"},
    {"format check", "format check a.qdraw"},
    {"format update", "format update --dry-run a.qdraw"},
    {"format replace", "format replace a.qdraw ISO/A2"},
    {"format remove", "format remove a.qdraw"},
    {"format show", "format show a.qdraw"},
    {"format list", "format list a.qdraw"},
    {"block move", "block move a.qdraw TITLE 200 10"},
    {"block add", "block add a.qdraw TITLE"},
    {"block delete", "block delete a.qdraw TITLE"},
    {"block show", "block show a.qdraw TITLE"},
    {"block locations", "block locations a.qdraw TITLE"},
    {"block list", "block list a.qdraw"},
    {"field set", "field set a.qdraw title \"Pump shaft\""},
    {"field get", "field get a.qdraw title"},
    {"field list", "field list a.qdraw"},
    {"field show", "field show a.qdraw title"},
    {"field editable", "field editable a.qdraw number no"},
    {"field sources", "field sources a.qdraw"},
    {"fill", "fill a.qdraw --data values.json"},
    {"table list", "table list a.qdraw"},
    {"table rows", "table rows a.qdraw REV"},
    {"table get", "table get a.qdraw REV 0 change"},
    {"table export", "table export a.qdraw REV -o rows.csv"},
    {"table add", "table add a.qdraw REV rev=A \"change=bore enlarged\""},
    {"table set", "table set a.qdraw REV 0 change \"bore enlarged\""},
    {"table import", "table import a.qdraw REV rows.csv"},
    {"table move", "table move a.qdraw REV 3 0"},
    {"table hide", "table hide a.qdraw REV 0 1"},
    {"table show", "table show a.qdraw REV 1"},
    {"table delete", "table delete a.qdraw REV 2 4"},
    {"symbol place", "symbol place a.qdraw REV 0 100 240"},
    {"symbol list", "symbol list a.qdraw REV"},
    {"symbol zones", "symbol zones a.qdraw REV --fill"},
    {"render", "render a.qdraw -o a.pdf"},
    {"info", "info a.qdraw"},
    {"init", "init site"},
    {"report", "report drawings --as csv -o report.csv"},
    {"check", "check drawings --rules rules.yaml"},
    {"update", "update --dry-run drawings"},
    {"undo", "undo update.journal"},
    {"defs build", "defs build formats.yaml -o site"},
    {"defs list", "defs list --defs site"},
    {"defs check", "defs check formats.yaml"},
    {"defs diff", "defs diff old.yaml new.yaml"},
    {"defs where", "defs where TITLE"},
    {"defs show", "defs show TITLE"},
    {"defs schema", "defs schema"},
    {"defs dump", "defs dump site/format_defs/iso.prt -o iso.yaml"},
};

// "field set"; empty for the command itself.
std::string verbOf(const CLI::App &parser)
{
    const CLI::App *above = parser.get_parent();
    if (!above) return {};
    const std::string before = verbOf(*above);
    return before.empty() ? parser.get_name() : before + " " + parser.get_name();
}

std::string exampleOf(const CLI::App &parser)
{
    const auto found = kExamples.find(verbOf(parser));
    return found == kExamples.end() ? "" : "Example: qelfmt " + found->second;
}

void addFooters(CLI::App &parser)
{
    if (const std::string example = exampleOf(parser); !example.empty()) parser.footer(example);
    for (CLI::App *verb : parser.get_subcommands([](CLI::App *) { return true; }))
        addFooters(*verb);
}

// Names the verb that was meant, as far as it was understood.
std::string mistake(const CLI::App *parser, const CLI::Error &error)
{
    while (!parser->get_subcommands().empty()) parser = parser->get_subcommands().back();
    const std::string verb = verbOf(*parser), example = exampleOf(*parser);
    return fmt::format("qelfmt{}{}: {}\n{}{}Run with --help for more information.\n",
                       verb.empty() ? "" : " ", verb, error.what(), example,
                       example.empty() ? "" : "\n");
}

} // namespace

void addExamples(CLI::App &parser)
{
    addFooters(parser);
    parser.failure_message(mistake);
}

} // namespace app
