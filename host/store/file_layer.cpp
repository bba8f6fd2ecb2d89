#include "file_layer.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <sys/stat.h>
#include <unistd.h>

namespace host::store::files {

namespace {

Hook g_hook = nullptr;

void require(bool succeeded, const char *step)
{
    if (!succeeded) throw FileError{step, errno};
}

void enter(const char *step, const std::string &path)
{
    if (const int number = before(step, path)) throw FileError{step, number > 0 ? number : EIO};
}

std::string folderOf(const std::string &path)
{
    const std::size_t slash = path.rfind('/');
    return slash == path.npos ? "." : slash ? path.substr(0, slash) : "/";
}

// A file without a name where the system has such files: the kernel forgets it when the process dies.
// Elsewhere one with a temporary name, removed again unless it got its own.
class NewFile {
public:
    explicit NewFile(const std::string &path);
    ~NewFile();
    NewFile(const NewFile &) = delete;
    NewFile &operator=(const NewFile &) = delete;

    void write(std::string_view content);
    void sync();
    void name(Existing existing);

private:
    void createNamed();
    void link(const std::string &name);

    std::string m_path;
    std::string m_temporary; // empty: there is no such name
    int m_file = -1;
};

NewFile::NewFile(const std::string &path) : m_path(path)
{
    enter("create", path);
    if (::access("/proc/self/fd", F_OK) == 0)
        m_file = ::open(folderOf(path).c_str(), O_TMPFILE | O_WRONLY | O_CLOEXEC, 0666);
    if (m_file < 0) createNamed();
    struct stat replaced; // its readers and writers stay the same
    if (::stat(path.c_str(), &replaced) == 0)
        require(::fchmod(m_file, replaced.st_mode & 0777) == 0, "create");
}

std::string temporaryName(const std::string &path)
{
    static unsigned serial = 0;
    return path + ".tmp-" + std::to_string(::getpid()) + "-" + std::to_string(++serial);
}

void NewFile::createNamed()
{
    const std::string name = temporaryName(m_path);
    m_file = ::open(name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
    require(m_file >= 0, "create");
    m_temporary = name;
}

NewFile::~NewFile()
{
    if (m_file >= 0) ::close(m_file);
    if (!m_temporary.empty()) ::unlink(m_temporary.c_str());
}

void NewFile::write(std::string_view content)
{
    while (!content.empty()) {
        const int trouble = before("write", m_path);
        const std::size_t size = trouble == kTorn ? content.size() / 2 : content.size();
        if (trouble > 0) throw FileError{"write", trouble};
        const ssize_t n = ::write(m_file, content.data(), size);
        if (n < 0 && errno == EINTR) continue;
        require(n >= 0, "write");
        if (trouble) throw FileError{"write", EIO};
        content.remove_prefix(static_cast<std::size_t>(n));
    }
}

void NewFile::sync()
{
    enter("sync", m_path);
    require(::fsync(m_file) == 0, "sync");
}

// Fails when the name is taken.
void NewFile::link(const std::string &name)
{
    const std::string from =
        m_temporary.empty() ? "/proc/self/fd/" + std::to_string(m_file) : m_temporary;
    const int follow = m_temporary.empty() ? AT_SYMLINK_FOLLOW : 0;
    require(::linkat(AT_FDCWD, from.c_str(), AT_FDCWD, name.c_str(), follow) == 0, "rename");
}

void NewFile::name(Existing existing)
{
    enter("rename", m_path);
    if (existing == Existing::keep) return link(m_path);
    if (m_temporary.empty()) {
        const std::string between = temporaryName(m_path);
        link(between);
        m_temporary = between;
    }
    require(::rename(m_temporary.c_str(), m_path.c_str()) == 0, "rename");
    m_temporary.clear();
}

void syncFolder(const std::string &folder)
{
    enter("sync folder", folder);
    const int file = ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    require(file >= 0, "sync folder");
    const bool synced = ::fsync(file) == 0;
    const int number = errno;
    ::close(file);
    if (!synced) throw FileError{"sync folder", number};
}

} // namespace

std::string describe(const FileError &error)
{
    return std::string(error.step) + ": " + std::strerror(error.number);
}

void setHook(Hook hook) { g_hook = hook; }

int before(const char *step, const std::string &path) { return g_hook ? g_hook(step, path) : 0; }

std::string followed(const std::string &path)
{
    std::error_code error;
    if (!std::filesystem::is_symlink(path, error)) return path;
    const auto target = std::filesystem::weakly_canonical(path, error);
    return error ? path : target.string();
}

void putDurably(const std::string &path, std::string_view content, Existing existing)
{
    const std::string target = followed(path);
    NewFile file(target);
    file.write(content);
    file.sync();
    file.name(existing);
    try {
        syncFolder(folderOf(target));
    } catch (const FileError &) {
        if (existing == Existing::keep) ::unlink(target.c_str()); // it was not there before
        throw;
    }
}

} // namespace host::store::files
