// Drawings that give trouble, really.
#pragma once

#include <sqlite3.h>

#include <filesystem>
#include <fstream>
#include <string>

#include <sys/stat.h>
#include <unistd.h>

// A part file with a page of noise in its middle.
inline void breakDrawing(const std::filesystem::path &path)
{
    std::fstream file(path, std::ios::binary | std::ios::in | std::ios::out);
    file.seekp(static_cast<std::streamoff>(std::filesystem::file_size(path) / 2 / 4096 * 4096));
    for (int i = 0; i < 4096; ++i) file.put(static_cast<char>(i * 37));
}

// Somebody else is in the middle of saving it.
class DrawingLock {
public:
    explicit DrawingLock(const std::filesystem::path &path)
    {
        sqlite3_open(path.c_str(), &m_database);
        m_held =
            sqlite3_exec(m_database, "BEGIN EXCLUSIVE", nullptr, nullptr, nullptr) == SQLITE_OK;
    }
    ~DrawingLock() { sqlite3_close(m_database); }
    DrawingLock(const DrawingLock &) = delete;
    DrawingLock &operator=(const DrawingLock &) = delete;
    bool held() const { return m_held; }

private:
    sqlite3 *m_database = nullptr;
    bool m_held = false;
};

inline void makeUnwritable(const std::filesystem::path &path) { chmod(path.c_str(), 0444); }

// Before a command: modes of files bind the superuser too.
inline std::string withoutPrivileges()
{
    return geteuid() == 0 ? "setpriv --bounding-set=-dac_override" : "";
}
