// qelfmt: drawing formats from the command line.
#include "app/authoring/complaints.h"
#include "app/examples.h"
#include "app/library_output.h"
#include "app/output.h"
#include "app/problem.h"
#include "app/unknown_verb.h"
#include "app/verbs.h"
#include "app/version.h"

#include "ug_exception.hxx"

#include <fmt/format.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <iostream>

namespace {

void addOptions(CLI::App &parser, app::Options &options)
{
    parser.add_flag("--json", options.json, "Results as JSON");
    parser.add_flag("-q,--quiet", options.quiet, "No notes, only results and errors");
    parser.add_flag("-v,--verbose", options.verbose,
                    "What the library does, on the standard error");
    parser.add_flag("-n,--dry-run", options.dryRun, "Do everything but save");
    parser
        .add_option("--defs", options.definitions,
                    "Folder with format_defs, patterns and config (repeatable)")
        ->allow_extra_args(false);
    parser.fallthrough();
}

int run(const std::function<int()> &chosen)
{
    try {
        return chosen();
    } catch (const app::Problem &problem) {
        fmt::print(stderr, "qelfmt: {}\n", problem.what());
        return problem.status();
    } catch (const app::authoring::Complaints &complaints) {
        fmt::print(stderr, "{}\n", complaints.what());
    } catch (const UgException &failure) {
        fmt::print(stderr, "qelfmt: {} ({})\n", failure.askErrorText(), failure.askErrorCode());
    } catch (const std::exception &failure) {
        fmt::print(stderr, "qelfmt: {}\n", failure.what());
    }
    return app::kInput;
}

// Results that never arrived are no success: a full disk may show only when the last of them is written.
int delivered(int status)
{
    errno = 0;
    std::cout.flush();
    const bool lost = !std::cout || std::fflush(stdout) != 0 || std::fflush(app::results()) != 0 ||
                      std::ferror(app::results()) != 0;
    if (!lost) return status;
    fmt::print(stderr, "qelfmt: standard output: cannot be written: {}\n",
               std::strerror(errno ? errno : ENOSPC));
    return app::kInput;
}

} // namespace

int main(int argc, char **argv)
{
    CLI::App parser("Drawing formats on CAD drawing sheets", "qelfmt");
    parser.require_subcommand(1);
    parser.set_version_flag("--version", std::string("qelfmt ") + app::kVersion);
    parser.footer("Exit status: 0 fine, 1 findings, 2 usage, 3 input.");
    app::Options options;
    addOptions(parser, options);

    std::function<int()> chosen;
    const app::Command command{parser, options, chosen};
    app::addStampVerb(command);
    app::addPartVerbs(command);
    app::addSheetVerbs(command);
    app::addFormatVerbs(command);
    app::addBlockVerbs(command);
    app::addFieldVerbs(command);
    app::addFillVerb(command);
    app::addTableVerbs(command);
    app::addSymbolVerbs(command);
    app::addRenderVerb(command);
    app::addInfoVerb(command);
    app::addDefinitionVerbs(command);
    app::addInitVerb(command);
    app::addReportVerb(command);
    app::addCheckVerb(command);
    app::addUpdateVerb(command);
    app::addUndoVerb(command);
    app::addExamples(parser);
    try {
        parser.parse(argc, argv);
    } catch (const CLI::ParseError &error) {
        const std::string unknown = app::unknownVerb(parser, argc, argv);
        if (error.get_exit_code() != 0 && !unknown.empty()) {
            fmt::print(stderr, "qelfmt: {}\n", unknown);
            return app::kUsage;
        }
        return delivered(parser.exit(error) == 0 ? app::kFine : app::kUsage);
    }
    return delivered(run(chosen));
}
