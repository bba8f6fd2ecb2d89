#include "file_layer.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace host::store::files {

namespace {

Hook g_hook = nullptr;

void step(const char *name, const std::string &path)
{
    if (const int number = before(name, path)) throw FileError{name, number};
}

void require(bool succeeded, const char *name)
{
    if (!succeeded) throw FileError{name, errno};
}

class Descriptor {
public:
    Descriptor(const std::string &path, int flags, mode_t mode, const char *name)
        : m_number(::open(path.c_str(), flags | O_CLOEXEC, mode))
    {
        require(m_number >= 0, name);
    }
    ~Descriptor()
    {
        if (m_number >= 0) ::close(m_number);
    }
    Descriptor(const Descriptor &) = delete;
    Descriptor &operator=(const Descriptor &) = delete;

    int number() const { return m_number; }
    void close(const char *name) // some file systems report a failed write only now
    {
        const int number = m_number;
        m_number = -1;
        require(::close(number) == 0, name);
    }

private:
    int m_number;
};

// Removed again unless it became the file that was wanted.
class Temporary {
public:
    explicit Temporary(std::string path) : m_path(std::move(path)) {}
    ~Temporary()
    {
        if (!m_renamed) ::unlink(m_path.c_str());
    }
    Temporary(const Temporary &) = delete;
    Temporary &operator=(const Temporary &) = delete;

    const std::string &path() const { return m_path; }
    void renamed() { m_renamed = true; }

private:
    std::string m_path;
    bool m_renamed = false;
};

// A replaced file keeps who may read and write it.
mode_t modeFor(const std::string &path)
{
    struct stat info;
    return ::stat(path.c_str(), &info) == 0 ? info.st_mode & 0777 : mode_t{0};
}

void writeAll(int file, std::string_view content, const std::string &path)
{
    while (!content.empty()) {
        step("write", path);
        const ssize_t n = ::write(file, content.data(), content.size());
        if (n < 0 && errno == EINTR) continue;
        require(n > 0, "write");
        content.remove_prefix(static_cast<std::size_t>(n));
    }
}

std::string folderOf(const std::string &path)
{
    const std::size_t slash = path.rfind('/');
    return slash == path.npos ? "." : slash ? path.substr(0, slash) : "/";
}

void syncFolder(const std::string &path)
{
    const std::string folder = folderOf(path);
    step("sync folder", folder);
    Descriptor descriptor(folder, O_RDONLY | O_DIRECTORY, 0, "sync folder");
    require(::fsync(descriptor.number()) == 0, "sync folder");
}

// A name that appears only if there is none: a link, since rename would replace.
void appear(const Temporary &temporary, const std::string &path)
{
    require(::link(temporary.path().c_str(), path.c_str()) == 0, "rename");
}

} // namespace

std::string describe(const FileError &error)
{
    return std::string(error.step) + ": " + std::strerror(error.number);
}

void setHook(Hook hook) { g_hook = hook; }

int before(const char *name, const std::string &path) { return g_hook ? g_hook(name, path) : 0; }

void replaceDurably(const std::string &path, std::string_view content, Existing existing)
{
    static unsigned serial = 0;
    Temporary temporary(path + ".tmp-" + std::to_string(::getpid()) + "-" +
                        std::to_string(++serial));
    step("create", path);
    Descriptor file(temporary.path(), O_WRONLY | O_CREAT | O_TRUNC, 0666, "create");
    if (const mode_t mode = modeFor(path)) require(::fchmod(file.number(), mode) == 0, "create");
    writeAll(file.number(), content, path);
    step("sync", path);
    require(::fsync(file.number()) == 0, "sync");
    file.close("sync");
    step("rename", path);
    if (existing == Existing::keep) {
        appear(temporary, path);
    } else {
        require(::rename(temporary.path().c_str(), path.c_str()) == 0, "rename");
        temporary.renamed();
    }
    syncFolder(path);
}

} // namespace host::store::files
