// A save of a drawing by a process that dies in the middle of it, or that is not done yet.
#pragma once

#include <sqlite3.h>

#include <csignal>
#include <stdexcept>
#include <string>

#include <sys/wait.h>
#include <unistd.h>

// A transaction on the drawing by this process, for as long as it lives.
class OpenTransaction {
public:
    explicit OpenTransaction(const std::string &path)
    {
        if (sqlite3_open(path.c_str(), &m_database) != SQLITE_OK) throw std::runtime_error(path);
        run("BEGIN IMMEDIATE");
    }
    ~OpenTransaction() { sqlite3_close(m_database); }
    OpenTransaction(const OpenTransaction &) = delete;
    OpenTransaction &operator=(const OpenTransaction &) = delete;

    void run(const char *sql)
    {
        if (sqlite3_exec(m_database, sql, nullptr, nullptr, nullptr) != SQLITE_OK)
            throw std::runtime_error(sqlite3_errmsg(m_database));
    }

private:
    sqlite3 *m_database = nullptr;
};

// The file has pages of the new content, its journal those of the old one.
inline void saveAndDie(const std::string &path)
{
    const pid_t child = fork();
    if (child == 0) {
        OpenTransaction save(path);
        save.run("PRAGMA cache_size=1; UPDATE object SET texts=zeroblob(3000)");
        kill(getpid(), SIGKILL);
    }
    waitpid(child, nullptr, 0);
}

// What somebody does to a drawing without this program.
inline void tamper(const std::string &path, const char *sql)
{
    OpenTransaction change(path);
    change.run(sql);
    change.run("COMMIT");
}
