#include "app/fleet/output_file.h"

#include "app/problem.h"

#include <fmt/format.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

namespace app::fleet {

OutputFile::OutputFile(const std::string &path)
    : m_path(path), m_temporary(fmt::format("{}.{}.tmp", path, getpid())),
      m_stream(std::fopen(m_temporary.c_str(), "wb"))
{
    if (!m_stream) fail();
}

OutputFile::~OutputFile()
{
    if (m_stream) std::fclose(m_stream);
    if (!m_temporary.empty()) std::remove(m_temporary.c_str());
}

void OutputFile::fail() const
{
    throw Problem(fmt::format("{}: cannot be written: {}", m_path, std::strerror(errno)));
}

void OutputFile::finish()
{
    if (std::ferror(m_stream) || std::fflush(m_stream) != 0 || fsync(fileno(m_stream)) != 0) fail();
    const int closed = std::fclose(m_stream);
    m_stream = nullptr;
    if (closed != 0 || std::rename(m_temporary.c_str(), m_path.c_str()) != 0) fail();
    m_temporary.clear();
}

} // namespace app::fleet
