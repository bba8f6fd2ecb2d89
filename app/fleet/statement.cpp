#include "app/fleet/statement.h"

#include "app/problem.h"

#include <fmt/format.h>

namespace app::fleet {

namespace {

constexpr int kPatienceMilliseconds = 30'000; // workers write one after the other

} // namespace

Connection::Connection(const std::string &path, Access access) : m_path(path)
{
    const int flags = access == Access::read     ? SQLITE_OPEN_READONLY
                      : access == Access::change ? SQLITE_OPEN_READWRITE
                                                 : SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE;
    const int code = sqlite3_open_v2(path.c_str(), &m_database, flags, nullptr);
    if (code != SQLITE_OK) {
        const std::string reason = sqlite3_errmsg(m_database);
        sqlite3_close(m_database);
        throw Problem(fmt::format("{}: cannot be opened: {}", path, reason));
    }
    sqlite3_busy_timeout(m_database, kPatienceMilliseconds);
}

Connection::~Connection() { sqlite3_close(m_database); }

void Connection::run(const char *sql)
{
    if (sqlite3_exec(m_database, sql, nullptr, nullptr, nullptr) != SQLITE_OK) fail();
}

void Connection::fail() const
{
    throw Problem(fmt::format("{}: {}", m_path, sqlite3_errmsg(m_database)));
}

Statement::Statement(Connection &connection, const char *sql) : m_connection(connection)
{
    if (sqlite3_prepare_v2(connection.handle(), sql, -1, &m_statement, nullptr) != SQLITE_OK)
        connection.fail();
}

Statement::~Statement() { sqlite3_finalize(m_statement); }

void Statement::bindOne(int at, std::int64_t value) { sqlite3_bind_int64(m_statement, at, value); }

void Statement::bindOne(int at, std::string_view text)
{
    sqlite3_bind_text64(m_statement, at, text.data(), text.size(), SQLITE_STATIC, SQLITE_UTF8);
}

bool Statement::step()
{
    const int code = sqlite3_step(m_statement);
    if (code == SQLITE_ROW) return true;
    sqlite3_reset(m_statement);
    if (code != SQLITE_DONE) m_connection.fail();
    return false;
}

void Statement::run()
{
    while (step()) {
    }
}

std::string Statement::text(int column) const
{
    const void *bytes = sqlite3_column_blob(m_statement, column);
    const int length = sqlite3_column_bytes(m_statement, column);
    return bytes ? std::string(static_cast<const char *>(bytes), static_cast<std::size_t>(length))
                 : std::string();
}

std::int64_t Statement::number(int column) const
{
    return sqlite3_column_int64(m_statement, column);
}

} // namespace app::fleet
