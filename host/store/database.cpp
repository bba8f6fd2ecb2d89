#include "database.h"

#include "pack.h"

#include <sqlite3.h>

namespace host::store {

Database::Database(const std::string &path, int flags, const char *vfs)
    : m_path(path), m_access(flags & SQLITE_OPEN_READONLY ? Access::reading : Access::writing)
{
    if (sqlite3_open_v2(path.c_str(), &m_handle, flags | SQLITE_OPEN_NOMUTEX, vfs) != SQLITE_OK) {
        const StoreError error = errorOf(m_handle, path, m_access);
        sqlite3_close(m_handle);
        throw error;
    }
    sqlite3_db_config(m_handle, SQLITE_DBCONFIG_DEFENSIVE, 1, nullptr);
    sqlite3_db_config(m_handle, SQLITE_DBCONFIG_TRUSTED_SCHEMA, 0, nullptr);
}

Database::~Database()
{
    m_kept.clear();
    sqlite3_close(m_handle);
}

Statement &Database::kept(std::string_view sql)
{
    std::unique_ptr<Statement> &statement = m_kept[sql];
    if (!statement) statement = std::make_unique<Statement>(*this, sql);
    statement->restart();
    return *statement;
}

void Database::check(int result)
{
    if (result != SQLITE_OK) fail();
}

void Database::fail() { throw errorOf(m_handle, m_path, m_access); }

void Database::run(const char *sql)
{
    check(sqlite3_exec(m_handle, sql, nullptr, nullptr, nullptr));
}

// --- statements ---------------------------------------------------------------------------------

Statement::Statement(Database &database, std::string_view sql) : m_database(database)
{
    database.check(sqlite3_prepare_v2(database.handle(), sql.data(), static_cast<int>(sql.size()),
                                      &m_statement, nullptr));
}

Statement::~Statement() { sqlite3_finalize(m_statement); }

void Statement::bind(std::int64_t value)
{
    m_database.check(sqlite3_bind_int64(m_statement, ++m_column, value));
}

void Statement::bindText(std::string_view value)
{
    ++m_column;
    m_database.check(value.empty() ? sqlite3_bind_null(m_statement, m_column)
                                   : sqlite3_bind_text64(m_statement, m_column, value.data(),
                                                         value.size(), SQLITE_STATIC, SQLITE_UTF8));
}

void Statement::bindBlob(std::string_view value)
{
    ++m_column;
    m_database.check(value.empty() ? sqlite3_bind_null(m_statement, m_column)
                                   : sqlite3_bind_blob64(m_statement, m_column, value.data(),
                                                         value.size(), SQLITE_STATIC));
}

void Statement::run()
{
    if (sqlite3_step(m_statement) != SQLITE_DONE) m_database.fail();
    restart();
}

void Statement::restart()
{
    sqlite3_reset(m_statement);
    m_column = 0;
    m_bytesRead = 0;
}

bool Statement::next()
{
    m_column = 0;
    const int result = sqlite3_step(m_statement);
    if (result == SQLITE_ROW) return true;
    if (result != SQLITE_DONE) m_database.fail();
    return false;
}

std::int64_t Statement::integer()
{
    sqlite3_value *const found = sqlite3_column_value(m_statement, m_column++);
    if (sqlite3_value_type(found) != SQLITE_INTEGER) throw Malformed{"a value is not an integer"};
    return sqlite3_value_int64(found);
}

std::string_view Statement::text() { return value(SQLITE_TEXT, "a value is not a text"); }

std::string_view Statement::blob() { return value(SQLITE_BLOB, "a value is not a blob"); }

std::string_view Statement::value(int type, const char *otherwise)
{
    sqlite3_value *const found = sqlite3_column_value(m_statement, m_column++);
    const int foundType = sqlite3_value_type(found);
    if (foundType == SQLITE_NULL) return {};
    if (foundType != type) throw Malformed{otherwise};
    const void *data = sqlite3_value_blob(found);
    const int size = sqlite3_value_bytes(found);
    if (!data || size <= 0) throw Malformed{"an empty value is not stored as NULL"};
    m_bytesRead += static_cast<std::size_t>(size);
    return {static_cast<const char *>(data), static_cast<std::size_t>(size)};
}

} // namespace host::store
