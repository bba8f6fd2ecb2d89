// Drawings that give trouble, really.
#pragma once

#include <sqlite3.h>

#include <csignal>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

// A part file with a page of noise in its middle.
inline void breakDrawing(const std::filesystem::path &path)
{
    std::fstream file(path, std::ios::binary | std::ios::in | std::ios::out);
    file.seekp(static_cast<std::streamoff>(std::filesystem::file_size(path) / 2 / 4096 * 4096));
    for (int i = 0; i < 4096; ++i) file.put(static_cast<char>(i * 37));
}

// Somebody else is in the middle of saving it: a process of its own, since a process loses its locks on a
// file as soon as it closes any other handle to it.
class DrawingLock {
public:
    explicit DrawingLock(const std::filesystem::path &path)
    {
        int ready[2];
        if (pipe(ready) != 0) return;
        m_holder = fork();
        if (m_holder == 0) {
            sqlite3 *database = nullptr;
            sqlite3_open(path.c_str(), &database);
            const bool held =
                sqlite3_exec(database, "BEGIN EXCLUSIVE", nullptr, nullptr, nullptr) == SQLITE_OK;
            if (write(ready[1], held ? "y" : "n", 1) == 1) pause();
            _exit(0);
        }
        char answer = 'n';
        m_held = read(ready[0], &answer, 1) == 1 && answer == 'y';
        close(ready[0]);
        close(ready[1]);
    }
    ~DrawingLock()
    {
        if (m_holder <= 0) return;
        kill(m_holder, SIGKILL);
        waitpid(m_holder, nullptr, 0);
    }
    DrawingLock(const DrawingLock &) = delete;
    DrawingLock &operator=(const DrawingLock &) = delete;
    bool held() const { return m_held; }

private:
    pid_t m_holder = -1;
    bool m_held = false;
};

inline void makeUnwritable(const std::filesystem::path &path) { chmod(path.c_str(), 0444); }

// Before a command: modes of files bind the superuser too.
inline std::vector<std::string> wordsWithoutPrivileges()
{
    if (geteuid() != 0) return {};
    return {"setpriv", "--bounding-set=-dac_override"};
}

inline std::string withoutPrivileges()
{
    std::string line;
    for (const std::string &word : wordsWithoutPrivileges()) line += word + " ";
    return line;
}
