// init: a site of one's own to start from.
#include "app/output.h"
#include "app/verbs.h"

#include <fmt/format.h>

#include <filesystem>
#include <memory>

namespace app {

namespace {

namespace fs = std::filesystem;

// Beside the command, as installed and in the build tree.
fs::path exampleSite()
{
    std::error_code error;
    const fs::path program = fs::read_symlink("/proc/self/exe", error);
    const fs::path site = program.parent_path().parent_path() / "share/qelfmt/formats/example-site";
    if (error || !fs::is_directory(site))
        throw Problem(site.string() +
                      ": the example site is missing: install qelfmt's definitions");
    return site;
}

int init(const Options &options, const std::string &folder)
{
    const fs::path target = folder;
    if (fs::exists(target) && !fs::is_empty(target))
        throw Problem(folder + ": is not empty: name a new folder");
    const fs::path site = exampleSite();
    if (options.dryRun) return kFine;
    std::error_code error;
    fs::create_directories(target, error);
    if (!error) fs::copy(site, target, fs::copy_options::recursive, error);
    // What editors know of definition texts, for the first line of the example.
    const char *const schema = "qelfmt.schema.json";
    if (!error && fs::exists(site.parent_path() / schema))
        fs::copy_file(site.parent_path() / schema, target / schema, error);
    if (error)
        throw Problem(folder + ": cannot be written (" + error.message() +
                      "): choose another folder");
    printNote(options, fmt::format("{0}: made; change {0}/own.yaml, then: qelfmt defs build "
                                   "{0}/own.yaml -o {0}",
                                   folder));
    return kFine;
}

} // namespace

void addInitVerb(Command command)
{
    auto folder = std::make_shared<std::string>();
    CLI::App *verb =
        command.parser.add_subcommand("init", "Make a site of your own from an example");
    verb->add_option("folder", *folder, "A new folder")->required();
    verb->callback([=] {
        command.chosen = [=, &options = command.options] { return init(options, *folder); };
    });
}

} // namespace app
