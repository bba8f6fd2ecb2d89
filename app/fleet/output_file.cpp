#include "app/fleet/output_file.h"

#include "app/problem.h"

#include <fmt/format.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <sys/stat.h>
#include <unistd.h>

namespace app::fleet {

namespace {

std::string followed(const std::string &path)
{
    std::error_code error;
    if (!std::filesystem::is_symlink(path, error)) return path;
    const auto target = std::filesystem::weakly_canonical(path, error);
    return error ? path : target.string();
}

mode_t permissionsOfNewFiles()
{
    const mode_t hidden = umask(0);
    umask(hidden);
    return 0666 & ~hidden;
}

} // namespace

OutputFile::OutputFile(const std::string &path) : m_path(path), m_target(followed(path))
{
    struct stat there {};
    if (stat(m_target.c_str(), &there) == 0 && !S_ISREG(there.st_mode))
        m_stream = std::fopen(m_target.c_str(), "wb");
    else
        openBeside();
    if (!m_stream) fail(errno);
}

void OutputFile::openBeside()
{
    std::string name = m_target + ".XXXXXX.tmp";
    const int file = mkostemps(name.data(), 4, O_CLOEXEC);
    if (file < 0) return;
    m_temporary = name;
    m_stream = fdopen(file, "wb");
}

OutputFile::~OutputFile()
{
    if (m_stream) std::fclose(m_stream);
    if (!m_temporary.empty()) std::remove(m_temporary.c_str());
}

void OutputFile::fail(int number) const
{
    throw Problem(fmt::format("{}: cannot be written: {}", m_path, std::strerror(number)));
}

// As far as the system lets this user do so.
void OutputFile::keepOwner() const
{
    struct stat there {};
    const int file = fileno(m_stream);
    if (stat(m_target.c_str(), &there) != 0) {
        if (fchmod(file, permissionsOfNewFiles()) != 0) fail(errno);
        return;
    }
    // The owner first: another one takes bits away.
    const bool same = fchown(file, there.st_uid, there.st_gid) == 0;
    if (fchmod(file, there.st_mode & (same ? 07777 : 0777)) != 0) fail(errno);
}

void OutputFile::syncFolder() const
{
    const std::string folder = std::filesystem::path(m_target).parent_path().string();
    const int file =
        open(folder.empty() ? "." : folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (file < 0) return; // may be written to and not looked into: the system syncs it in time
    fsync(file);
    close(file);
}

void OutputFile::finish()
{
    // What failed before has left no number; a full disk is what it is as a rule.
    errno = 0;
    if (std::ferror(m_stream) || std::fflush(m_stream) != 0) fail(errno ? errno : ENOSPC);
    if (!m_temporary.empty()) {
        keepOwner();
        if (fsync(fileno(m_stream)) != 0) fail(errno);
    }
    const int closed = std::fclose(m_stream);
    m_stream = nullptr;
    if (closed != 0) fail(errno);
    if (m_temporary.empty()) return;
    if (std::rename(m_temporary.c_str(), m_target.c_str()) != 0) fail(errno);
    m_temporary.clear();
    syncFolder();
}

} // namespace app::fleet
