// undo: puts back the drawings that an update with a journal has changed.
#include "app/fleet/images.h"
#include "app/fleet/journal_lock.h"
#include "app/fleet/output_file.h"
#include "app/output.h"
#include "app/problem.h"
#include "app/verbs.h"

#include <fmt/format.h>

#include <filesystem>
#include <memory>

namespace app {

namespace {

using namespace fleet;

// Nobody saves into the drawing while it is put back; a save that died half way is rolled back first.
class WriteLock {
public:
    explicit WriteLock(const std::string &path) : m_connection(path, Connection::Access::change)
    {
        sqlite3_busy_timeout(m_connection.handle(), 2000);
        const int code =
            sqlite3_exec(m_connection.handle(), "BEGIN IMMEDIATE", nullptr, nullptr, nullptr);
        // What is no drawing any more needs none: nobody can save into it.
        if (code != SQLITE_OK && code != SQLITE_NOTADB && code != SQLITE_CORRUPT)
            throw Problem(fmt::format(
                "{}: is not put back: {}: see that nobody is saving it and that it may be written",
                path, sqlite3_errmsg(m_connection.handle())));
    }

private:
    Connection m_connection;
};

struct UndoResult {
    std::string file;
    std::string result; // "restored", "unchanged", "left", "failed"
    std::string reason;
};

UndoResult undoOne(const Image &image, bool dryRun)
{
    if (!std::filesystem::exists(image.path))
        return {image.path, "left", "it is gone: nothing is put in its place"};
    const WriteLock lock(image.path);
    const ContentSum now = sumOf(readFile(image.path));
    if (now == image.beforeSum) return {image.path, "unchanged", ""};
    if (image.afterSum.empty())
        return {image.path, "left", "its update was not completed: resume the update, then undo"};
    if (now != image.afterSum) return {image.path, "left", "it has changed since"};
    if (!dryRun) {
        OutputFile file(image.path);
        std::fwrite(image.before.data(), 1, image.before.size(), file.stream());
        file.finish();
    }
    return {image.path, "restored", ""};
}

UndoResult attempt(const Image &image, bool dryRun)
{
    try {
        return undoOne(image, dryRun);
    } catch (const std::exception &failure) {
        return {image.path, "failed", failure.what()};
    }
}

int undo(const Options &options, const std::string &journal)
{
    if (!std::filesystem::exists(journal))
        throw Problem(journal +
                      ": there is no such journal: name the one given to 'qelfmt update'");
    JournalLock lock;
    if (!lock.take(journal, std::chrono::seconds(0)))
        throw Problem(journal + ": a run is at work with it: wait for its end");
    const auto images = Images::toPutBack(journal);
    Json all = Json::array();
    std::vector<std::string> restored;
    int status = kFine;
    images->each([&](const Image &image) {
        const UndoResult one = attempt(image, options.dryRun);
        if (one.result == "restored") restored.push_back(one.file);
        if (one.result == "left" && status == kFine) status = kFindings;
        if (one.result == "failed") status = kInput;
        if (options.json)
            all.push_back(Json{{"file", one.file}, {"result", one.result}, {"reason", one.reason}});
        else
            printLine(fmt::format("{}: {}{}{}", one.file, one.result,
                                  one.reason.empty() ? "" : ": ", one.reason));
    });
    if (!options.dryRun)
        for (const std::string &path : restored) images->putBack(path);
    if (options.json) printJson(all);
    return status;
}

} // namespace

void addUndoVerb(Command command)
{
    auto journal = std::make_shared<std::string>();
    CLI::App *verb = command.parser.add_subcommand(
        "undo", "Put back the drawings that an update has changed, unless they changed again");
    verb->add_option("journal", *journal, "The journal that was given to update")->required();
    verb->callback([=] {
        command.chosen = [=, &options = command.options] { return undo(options, *journal); };
    });
}

} // namespace app
