// Other processes, for what only they can do: hold a lock, lack a right, die at a given moment.
#pragma once

#include "store_support.h"

#include <chrono>
#include <csignal>
#include <functional>
#include <sqlite3.h>
#include <string>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace store_test {

inline int statusOf(pid_t child)
{
    int status = 0;
    while (::waitpid(child, &status, 0) < 0 && errno == EINTR) {
    }
    return status;
}

// Runs `body` in a process of its own and hands over its text. Root gives up its rights first.
inline std::string inUnprivilegedProcess(const std::function<std::string()> &body)
{
    int ends[2];
    if (::pipe(ends) != 0) return "no pipe";
    const pid_t child = ::fork();
    if (child == 0) {
        constexpr uid_t kNobody = 65534;
        const bool dropped = ::getuid() != 0 || (::setgid(kNobody) == 0 && ::setuid(kNobody) == 0);
        const std::string text = dropped ? body() : "cannot drop rights";
        const bool written = ::write(ends[1], text.data(), text.size()) >= 0;
        ::_exit(written ? 0 : 1);
    }
    ::close(ends[1]);
    std::string text;
    char buffer[4096];
    for (ssize_t n; (n = ::read(ends[0], buffer, sizeof buffer)) > 0;)
        text.append(buffer, static_cast<std::size_t>(n));
    ::close(ends[0]);
    statusOf(child);
    return text;
}

// A process that has run `sql` on the database and keeps what it locked until it ends.
class LockingProcess {
public:
    LockingProcess(const std::string &path, const std::string &sql,
                   std::chrono::milliseconds time = std::chrono::minutes(1))
    {
        int ready[2];
        if (::pipe(ready) != 0) std::abort();
        m_child = ::fork();
        if (m_child == 0) {
            sqlite3 *database = nullptr;
            sqlite3_open(path.c_str(), &database);
            sqlite3_stmt *statement = nullptr;
            const char *rest = sql.c_str();
            while (*rest) { // the last statement stays open: a reader keeps its lock that way
                sqlite3_prepare_v2(database, rest, -1, &statement, &rest);
                sqlite3_step(statement);
            }
            if (::write(ready[1], "x", 1) == 1) std::this_thread::sleep_for(time);
            ::_exit(0);
        }
        ::close(ready[1]);
        char go = 0;
        EXPECT_EQ(::read(ready[0], &go, 1), 1);
        ::close(ready[0]);
    }
    ~LockingProcess()
    {
        ::kill(m_child, SIGKILL);
        statusOf(m_child);
    }
    LockingProcess(const LockingProcess &) = delete;
    LockingProcess &operator=(const LockingProcess &) = delete;

    pid_t id() const { return m_child; }

private:
    pid_t m_child = 0;
};

} // namespace store_test
