#include "app/fleet/journal_lock.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

namespace app::fleet {

namespace {

constexpr auto kPause = std::chrono::milliseconds(20);

bool isStillThere(int file, const std::string &path)
{
    struct stat opened {
    }, named{};
    return fstat(file, &opened) == 0 && stat(path.c_str(), &named) == 0 &&
           opened.st_dev == named.st_dev && opened.st_ino == named.st_ino;
}

} // namespace

JournalLock::~JournalLock()
{
    if (m_file >= 0) close(m_file);
}

bool JournalLock::tryOnce(const std::string &path)
{
    if (m_file >= 0) close(m_file);
    m_file = open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0644);
    if (m_file < 0) return true;
    if (flock(m_file, LOCK_EX | LOCK_NB) != 0) return errno != EWOULDBLOCK;
    return isStillThere(m_file,
                        path); // else its holder has removed it, and the next one is another
}

bool JournalLock::take(const std::string &path, std::chrono::milliseconds patience)
{
    const auto end = std::chrono::steady_clock::now() + patience;
    while (!tryOnce(path)) {
        if (std::chrono::steady_clock::now() >= end) return false;
        std::this_thread::sleep_for(kPause);
    }
    return true;
}

} // namespace app::fleet
