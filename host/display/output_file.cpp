#include "display/output_file.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "display/render.h"

namespace host::display {

namespace {

std::string remedyFor(int error)
{
    switch (error) {
    case ENOENT:
        return "make the folder first";
    case EACCES:
    case EPERM:
    case EROFS:
        return "choose a folder that you may write to";
    case ENOSPC:
    case EDQUOT:
        return "free some room or choose another disk";
    case EISDIR:
        return "name a file, not a folder";
    default:
        return "choose another place";
    }
}

[[noreturn]] void fail(const std::string &path, int error)
{
    throw RenderError("Cannot write " + path + ": " + std::strerror(error) + "; " +
                      remedyFor(error) + ".");
}

class TemporaryFile {
public:
    explicit TemporaryFile(const std::string &target)
        : m_target(target), m_name(target + ".tmp-" + std::to_string(::getpid())),
          m_file(::open(m_name.c_str(), O_CREAT | O_WRONLY | O_TRUNC | O_CLOEXEC, 0666))
    {
        if (m_file < 0) fail(target, errno);
    }
    ~TemporaryFile()
    {
        if (m_file >= 0) ::close(m_file);
        if (!m_done) ::unlink(m_name.c_str());
    }
    TemporaryFile(const TemporaryFile &) = delete;
    TemporaryFile &operator=(const TemporaryFile &) = delete;

    void write(std::string_view bytes)
    {
        while (!bytes.empty()) {
            const ssize_t count = ::write(m_file, bytes.data(), bytes.size());
            if (count < 0 && errno == EINTR) continue;
            if (count < 0) fail(m_target, errno);
            bytes.remove_prefix(static_cast<std::size_t>(count));
        }
    }

    void rename()
    {
        const int closed = ::close(m_file);
        m_file = -1;
        if (closed != 0) fail(m_target, errno); // some file systems tell of a full disk only here
        if (::rename(m_name.c_str(), m_target.c_str()) != 0) fail(m_target, errno);
        m_done = true;
    }

private:
    const std::string &m_target;
    std::string m_name;
    int m_file;
    bool m_done = false;
};

// A picture takes the place of a file, not of the link that leads to it.
std::string followed(const std::string &path)
{
    std::error_code error;
    if (!std::filesystem::is_symlink(path, error)) return path;
    const auto target = std::filesystem::weakly_canonical(path, error);
    return error ? path : target.string();
}

// A pipe or a device.
bool isNoFile(const std::string &path)
{
    struct stat there {};
    return ::stat(path.c_str(), &there) == 0 && !S_ISREG(there.st_mode) && !S_ISDIR(there.st_mode);
}

void writeInto(const std::string &path, std::string_view bytes)
{
    const int file = ::open(path.c_str(), O_WRONLY | O_CLOEXEC);
    int error = file < 0 ? errno : 0;
    while (!error && !bytes.empty()) {
        const ssize_t count = ::write(file, bytes.data(), bytes.size());
        if (count >= 0)
            bytes.remove_prefix(static_cast<std::size_t>(count));
        else if (errno != EINTR)
            error = errno;
    }
    if (file >= 0) ::close(file);
    if (error) fail(path, error);
}

} // namespace

void writeWhole(const std::string &path, std::string_view bytes)
{
    if (path.empty()) throw RenderError("There is no file name to write the picture to; give one.");
    if (isNoFile(path)) return writeInto(path, bytes);
    const std::string target = followed(path);
    TemporaryFile file(target);
    file.write(bytes);
    file.rename();
}

} // namespace host::display
