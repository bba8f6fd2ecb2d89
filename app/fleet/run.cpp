#include "app/fleet/run.h"

#include "app/definition_folders.h"
#include "app/fleet/interrupts.h"
#include "app/fleet/progress.h"
#include "app/output.h"
#include "app/problem.h"

#include <fmt/format.h>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <thread>

namespace app::fleet {

namespace {

// What the platform keeps for the life of a process must not add up.
constexpr std::size_t kItemsPerWorker = 250;

// For the processes of a run that was killed, until each has ended what it had begun.
constexpr auto kPatience = std::chrono::seconds(60);
constexpr auto kNoPatience = std::chrono::seconds(0);

// Most messages name the drawing already, by this path or the whole one.
std::string withName(const std::string &key, const std::string &text)
{
    return text.find(key) == std::string::npos ? key + ": " + text : text;
}

std::size_t workersFor(const RunArguments &arguments)
{
    if (arguments.jobs > 0) return static_cast<std::size_t>(arguments.jobs);
    return std::max(1U, std::thread::hardware_concurrency());
}

} // namespace

int RunEnd::status() const
{
    if (interrupted) return kInterruptedStatus;
    return failed > 0 ? kInput : kFine;
}

void addRunOptions(CLI::App *verb, RunArguments &arguments)
{
    verb->add_option("-j,--jobs", arguments.jobs, "Worker processes; one a processor without")
        ->check(CLI::Range(1, 1024));
    verb->add_option("--journal", arguments.journal, "File that keeps what is done");
    verb->add_flag("--resume", arguments.resume, "Go on with a run that was interrupted");
}

Run::Run(const Options &options, const RunArguments &arguments, const std::string &command,
         std::vector<std::string> keys, Journal::Keeping keeping)
    : m_options(options), m_arguments(arguments), m_keys(std::move(keys))
{
    requireDefinitionFolders(options);
    if (!m_keys.empty()) openJournal(command, keeping);
}

void Run::openJournal(const std::string &command, Journal::Keeping keeping)
{
    const bool named = !m_arguments.journal.empty(), resume = m_arguments.resume;
    m_path = named ? m_arguments.journal : usualJournal(command);
    const bool exists = !m_path.empty() && std::filesystem::exists(m_path);
    if (named && exists && !resume)
        throw Problem(fmt::format("{}: exists: give --resume to go on with it, or name another "
                                  "journal",
                                  m_path));
    if (named && !exists && resume)
        throw Problem(m_path + ": there is no such journal: nothing to resume");
    if (resume && !exists)
        throw Problem("nothing to resume: no interrupted run of this very command, in this "
                      "folder, is known");
    if (!m_path.empty() && !m_lock.take(m_path, resume ? kPatience : kNoPatience)) {
        if (resume || named)
            throw Problem(m_path + ": another run is at work with it: wait for its end");
        m_path.clear(); // the same command twice at a time: this one cannot be resumed
    }
    makeJournal(command, keeping);
}

// A journal that nobody asked for is not worth the command: where none can be written there is none.
void Run::makeJournal(const std::string &command, Journal::Keeping keeping)
{
    const auto make = [&](Journal::Start start) {
        m_journal = std::make_unique<Journal>(m_path, command, start, keeping, m_keys);
    };
    if (m_arguments.resume) return make(Journal::Start::resume);
    try {
        return make(Journal::Start::fresh);
    } catch (const Problem &problem) {
        if (!m_arguments.journal.empty()) throw;
        printNote(m_options, fmt::format("{}: if this run is interrupted it cannot be resumed; "
                                         "--journal names another file",
                                         problem.what()));
    }
    m_path.clear();
    make(Journal::Start::fresh);
}

Run::~Run()
{
    const bool done = m_arguments.journal.empty() && !m_interrupted;
    if (done && m_journal) m_journal->discard();
    m_journal.reset();
    if (done) removeJournal(m_path);
}

std::string Run::journalPath() const { return m_arguments.journal.empty() ? "" : m_path; }

std::string Run::noteOf(std::size_t item)
{
    return m_arguments.resume && m_journal ? m_journal->noteOf(item) : std::string();
}

RunEnd Run::execute(std::function<Handler()> startWorker,
                    const std::function<std::string(std::size_t)> &note)
{
    RunEnd end;
    if (!m_journal) return end;
    const std::vector<std::size_t> items = m_journal->remaining();
    if (m_journal->resumed() > 0)
        printNote(m_options,
                  fmt::format("{} of {} were done before", m_journal->resumed(), m_keys.size()));
    Progress progress(m_options, m_keys.size(), m_journal->resumed());
    std::size_t done = m_journal->resumed();
    {
        const InterruptGuard guard;
        WorkerPool pool(workersFor(m_arguments), std::move(startWorker), kItemsPerWorker);
        pool.run(
            items,
            [&](std::size_t item) { m_journal->begin(item, note ? note(item) : std::string()); },
            [&](std::size_t item, const Reply &reply) {
                const bool good = reply.kind == Reply::Kind::done;
                const bool died = reply.kind == Reply::Kind::died;
                m_journal->end(item, good ? ItemState::done : ItemState::failed, reply.text,
                               died ? Journal::Ended::no : Journal::Ended::yes);
                done += good;
                if (!good) {
                    ++end.failed;
                    progress.clear();
                    fmt::print(stderr, "qelfmt: {}\n", withName(m_keys[item], reply.text));
                }
                progress.ended(m_keys[item]);
            },
            [] { return InterruptGuard::interrupted(); }, [&] { progress.refresh(); });
        end.interrupted = InterruptGuard::interrupted() && done + end.failed < m_keys.size();
    }
    m_interrupted = end.interrupted;
    if (!end.interrupted) return end;
    progress.clear();
    fmt::print(stderr,
               "qelfmt: interrupted: {} of {} done; give the same command with --resume to go on\n",
               done, m_keys.size());
    return end;
}

void Run::each(const std::function<void(const ItemRow &)> &take)
{
    if (m_journal) m_journal->each(take);
}

} // namespace app::fleet
