// The few SQLite calls of the journal, with errors that name the file.
#pragma once

#include <sqlite3.h>

#include <cstdint>
#include <string>
#include <string_view>

namespace app::fleet {

class Connection {
public:
    enum class Access { create, change, read }; // the first two write, the last two need the file
    // An empty path: a private file that nobody sees.
    explicit Connection(const std::string &path, Access access = Access::create);
    ~Connection();
    Connection(const Connection &) = delete;
    Connection &operator=(const Connection &) = delete;

    void run(const char *sql);
    const std::string &path() const { return m_path; }
    sqlite3 *handle() const { return m_database; }
    [[noreturn]] void fail() const; // a Problem with what SQLite says

private:
    std::string m_path;
    sqlite3 *m_database = nullptr;
};

// Prepared once; bind() what the question marks stand for, then step() through the rows.
class Statement {
public:
    Statement(Connection &connection, const char *sql);
    ~Statement();
    Statement(const Statement &) = delete;
    Statement &operator=(const Statement &) = delete;

    template <class... Values> Statement &bind(const Values &...values)
    {
        sqlite3_reset(m_statement);
        int at = 0;
        (bindOne(++at, values), ...);
        return *this;
    }
    bool step(); // false after the last row, and then ready to be bound again
    void run();  // steps to the end

    std::string text(int column) const;
    std::int64_t number(int column) const;

private:
    void bindOne(int at, std::int64_t value);
    void bindOne(int at,
                 std::string_view text); // as a blob when read back so; must outlive the steps

    Connection &m_connection;
    sqlite3_stmt *m_statement = nullptr;
};

} // namespace app::fleet
