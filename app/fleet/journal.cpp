#include "app/fleet/journal.h"

#include "app/problem.h"

#include <fmt/format.h>

#include <cstdlib>
#include <filesystem>

namespace app::fleet {

namespace {

namespace fs = std::filesystem;

constexpr auto kBatchTime = std::chrono::milliseconds(200);

void removeWriteAheadLog(const std::string &path)
{
    std::error_code ignored; // what is not there needs no removing
    for (const char *ending : {"-wal", "-shm"}) fs::remove(path + ending, ignored);
}

// Emptied, not removed: whoever waits for a lock on the file waits for this one.
std::string prepared(const std::string &path, Journal::Start start)
{
    if (path.empty() || start == Journal::Start::resume) return path;
    removeWriteAheadLog(path);
    std::error_code absent;
    fs::resize_file(path, 0, absent);
    return path;
}

// FNV-1a: the same in every build, so that a run is found again.
std::uint64_t hashOf(std::string_view text)
{
    std::uint64_t hash = 0xcbf29ce484222325;
    for (const char c : text) hash = (hash ^ static_cast<unsigned char>(c)) * 0x100000001b3;
    return hash;
}

} // namespace

Journal::Journal(const std::string &path, const std::string &command, Start start, Keeping keeping,
                 const std::vector<std::string> &keys)
    : m_connection(prepared(path, start)), m_keeping(keeping)
{
    if (start == Start::resume)
        takeOver(command);
    else // an empty file has nothing to go back to
        m_connection.run("PRAGMA journal_mode=OFF;");
    // What a killed process has committed stays; only a power failure could lose the last results.
    m_connection.run("PRAGMA journal_mode=WAL; PRAGMA synchronous=NORMAL;");
    m_connection.run("BEGIN;"
                     "CREATE TABLE IF NOT EXISTS run(command TEXT);"
                     "CREATE TABLE IF NOT EXISTS item(position INT, key TEXT PRIMARY KEY,"
                     " state INT NOT NULL DEFAULT 0, result TEXT, note TEXT) WITHOUT ROWID;"
                     "CREATE INDEX IF NOT EXISTS item_position ON item(position);"
                     "UPDATE item SET position=NULL;"
                     "DELETE FROM run;");
    m_connection.run(fmt::format("PRAGMA application_id={}", kApplicationId).c_str());
    Statement(m_connection, "INSERT INTO run VALUES(?)").bind(std::string_view(command)).run();
    list(keys);
    m_connection.run("COMMIT");
    m_begin = std::make_unique<Statement>(m_connection,
                                          "UPDATE item SET state=1,note=? WHERE position=?");
    m_end = std::make_unique<Statement>(
        m_connection, "UPDATE item SET state=?,result=?,note=iif(?,NULL,note) WHERE position=?");
}

void Journal::takeOver(const std::string &command)
{
    Statement id(m_connection, "PRAGMA application_id");
    if (!id.step() || id.number(0) != kApplicationId)
        throw Problem(m_connection.path() + ": is no journal of qelfmt: name the one to resume");
    Statement run(m_connection, "SELECT command FROM run");
    if (run.step() && run.text(0) != command)
        throw Problem(fmt::format("{}: is the journal of another command: {}: resume that one, or "
                                  "choose another journal",
                                  m_connection.path(), run.text(0)));
}

void Journal::list(const std::vector<std::string> &keys)
{
    Statement add(m_connection, "INSERT INTO item(position,key) VALUES(?,?) "
                                "ON CONFLICT(key) DO UPDATE SET position=excluded.position");
    std::int64_t position = 0;
    for (const std::string &key : keys) add.bind(position++, std::string_view(key)).run();
    Statement done(m_connection,
                   "SELECT count(*) FROM item WHERE position IS NOT NULL AND state=2");
    if (done.step()) m_resumed = static_cast<std::size_t>(done.number(0));
}

std::vector<std::size_t> Journal::remaining()
{
    std::vector<std::size_t> items;
    Statement open(m_connection, "SELECT position FROM item WHERE position IS NOT NULL AND "
                                 "state<>2 ORDER BY position");
    while (open.step()) items.push_back(static_cast<std::size_t>(open.number(0)));
    return items;
}

std::string Journal::noteOf(std::size_t item)
{
    Statement note(m_connection, "SELECT note FROM item WHERE position=?");
    note.bind(static_cast<std::int64_t>(item));
    return note.step() ? note.text(0) : std::string();
}

Journal::~Journal()
{
    if (m_inBatch) sqlite3_exec(m_connection.handle(), "COMMIT", nullptr, nullptr, nullptr);
}

void Journal::discard()
{
    // Closing would copy everything from the write-ahead log into the file first, and wait for the disk.
    sqlite3_db_config(m_connection.handle(), SQLITE_DBCONFIG_NO_CKPT_ON_CLOSE, 1, nullptr);
}

void Journal::openBatch()
{
    if (m_keeping == Keeping::each || m_inBatch) return;
    m_connection.run("BEGIN");
    m_inBatch = true;
    m_batchEnd = std::chrono::steady_clock::now() + kBatchTime;
}

void Journal::closeBatch()
{
    if (!m_inBatch) return;
    m_connection.run("COMMIT");
    m_inBatch = false;
}

void Journal::begin(std::size_t item, const std::string &note)
{
    if (m_keeping == Keeping::each)
        m_begin->bind(std::string_view(note), static_cast<std::int64_t>(item)).run();
}

void Journal::end(std::size_t item, ItemState state, const std::string &text, Ended ended)
{
    openBatch();
    m_end
        ->bind(static_cast<std::int64_t>(state), std::string_view(text),
               static_cast<std::int64_t>(ended == Ended::yes), static_cast<std::int64_t>(item))
        .run();
    if (std::chrono::steady_clock::now() >= m_batchEnd) closeBatch();
}

void Journal::each(const std::function<void(const ItemRow &)> &take)
{
    closeBatch();
    Statement rows(m_connection, "SELECT key,state,result FROM item WHERE position IS NOT NULL "
                                 "ORDER BY position");
    while (rows.step()) take({rows.text(0), static_cast<ItemState>(rows.number(1)), rows.text(2)});
}

std::string usualJournal(const std::string &command)
{
    const char *state = std::getenv("XDG_STATE_HOME");
    const char *home = std::getenv("HOME");
    if (!(state && *state) && !(home && *home)) return {};
    const fs::path root = state && *state ? fs::path(state) : fs::path(home) / ".local/state";
    std::error_code error;
    fs::create_directories(root / "qelfmt", error);
    if (error) return {};
    const std::uint64_t id = hashOf(fs::current_path(error).string() + '\n' + command);
    return (root / "qelfmt" / fmt::format("{:016x}.journal", id)).string();
}

void removeJournal(const std::string &path)
{
    if (path.empty()) return;
    std::error_code ignored;
    fs::remove(path, ignored);
    removeWriteAheadLog(path);
}

} // namespace app::fleet
