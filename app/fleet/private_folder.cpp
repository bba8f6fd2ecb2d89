#include "app/fleet/private_folder.h"

#include "app/problem.h"

#include <fmt/format.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>

namespace app::fleet {

PrivateFolder::PrivateFolder()
{
    std::string name = (std::filesystem::temp_directory_path() / "qelfmt-XXXXXX").string();
    if (!mkdtemp(name.data()))
        throw Problem(
            fmt::format("{}: no folder can be made there: {}: see that it has room, or set "
                        "TMPDIR to another one",
                        std::filesystem::path(name).parent_path().string(), std::strerror(errno)));
    m_path = name;
}

PrivateFolder::~PrivateFolder()
{
    std::error_code ignored;
    std::filesystem::remove_all(m_path, ignored);
}

} // namespace app::fleet
