// SQLite, held by objects that close it. Every failure becomes a StoreError that names the file.
#pragma once

#include "errors.h"

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <string_view>

struct sqlite3;
struct sqlite3_stmt;

namespace host::store {

class Statement;

class Database {
public:
    // `flags` as for sqlite3_open_v2; `path` is also what messages name.
    Database(const std::string &path, int flags, const char *vfs = nullptr);
    ~Database();
    Database(const Database &) = delete;
    Database &operator=(const Database &) = delete;

    void run(const char *sql);
    [[noreturn]] void fail(); // with what SQLite says
    void check(int result);   // SQLITE_OK or fail()
    // Prepared when it is first asked for, and ready to be run again: one user at a time. `sql` is constant.
    Statement &kept(std::string_view sql);
    sqlite3 *handle() const { return m_handle; }
    const std::string &path() const { return m_path; }
    void setName(const std::string &name) { m_path = name; } // for messages

private:
    std::string m_path;
    Access m_access;
    sqlite3 *m_handle = nullptr;
    std::map<std::string_view, std::unique_ptr<Statement>> m_kept;
};

class Statement {
public:
    Statement(Database &database, std::string_view sql);
    ~Statement();
    Statement(const Statement &) = delete;
    Statement &operator=(const Statement &) = delete;

    // Binding goes left to right, from the first column again after run().
    void bind(std::int64_t value);
    void bindText(std::string_view value); // nothing is NULL; the bytes must live until run()
    void bindBlob(std::string_view value);
    void run();  // a statement without rows
    bool next(); // steps to the next row
    void restart();

    // Reading goes left to right in the row, from the first column or the one said; a value of another type is damage (Malformed).
    void goTo(int column) { m_column = column; }
    std::int64_t integer();
    std::string_view text();
    std::string_view blob();
    std::size_t bytesRead() const { return m_bytesRead; }

private:
    std::string_view value(int type, const char *otherwise);

    Database &m_database;
    sqlite3_stmt *m_statement = nullptr;
    int m_column = 0;
    std::size_t m_bytesRead = 0;
};

} // namespace host::store
