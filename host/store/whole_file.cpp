#include "whole_file.h"

#include "file_layer.h"
#include "locks.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace host::store {

namespace {

class OpenFile {
public:
    // A link is followed first: the journal lies beside the file itself.
    explicit OpenFile(std::string path) : m_path(std::move(path))
    {
        constexpr int kFlags = O_RDONLY | O_CLOEXEC | O_NONBLOCK; // a pipe is not waited for
        m_file = ::open(m_path.c_str(), kFlags | O_NOFOLLOW);
        if (m_file >= 0 || errno != ELOOP) return;
        m_path = files::followed(m_path);
        m_file = ::open(m_path.c_str(), kFlags);
    }
    ~OpenFile()
    {
        if (m_file >= 0) ::close(m_file);
    }
    OpenFile(const OpenFile &) = delete;
    OpenFile &operator=(const OpenFile &) = delete;

    int file() const { return m_file; }
    bool hasJournal() const { return ::access((m_path + "-journal").c_str(), F_OK) == 0; }

private:
    std::string m_path;
    int m_file = -1;
};

bool readAll(int file, char *to, std::size_t size)
{
    for (std::size_t at = 0; at < size;) {
        const ssize_t got = ::pread(file, to + at, size - at, static_cast<off_t>(at));
        if (got < 0 && errno == EINTR) continue;
        if (got <= 0) return false;
        at += static_cast<std::size_t>(got);
    }
    return true;
}

} // namespace

void WholeFile::makeRoom(std::size_t size)
{
    constexpr std::size_t kKept = 4 << 20; // of a bigger file the memory goes with the next
    if (size <= m_room && (m_room <= kKept || size > kKept)) return;
    m_bytes.reset();
    m_bytes.reset(new char[size + kSlack]);
    m_room = size;
}

bool WholeFile::read(const std::string &path, std::size_t most, Fits fits)
{
    m_size = 0;
    m_tooLarge = false;
    const OpenFile file(path);
    struct stat info;
    if (file.file() < 0 || !lockForReading(file.file()) || file.hasJournal() ||
        ::fstat(file.file(), &info) != 0 || !S_ISREG(info.st_mode))
        return false;
    const auto size = static_cast<std::size_t>(info.st_size);
    if (fits) {
        char head[100];
        const std::size_t there = std::min(size, sizeof head);
        if (!readAll(file.file(), head, there) || !fits({head, there})) return false;
    }
    m_tooLarge = size > most;
    if (m_tooLarge) return false;
    makeRoom(size);
    if (!readAll(file.file(), m_bytes.get(), size)) return false;
    std::memset(m_bytes.get() + size, 0, kSlack); // a larger file may have stood there
    m_size = size;
    return true;
}

} // namespace host::store
