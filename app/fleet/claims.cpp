#include "app/fleet/claims.h"

#include "app/fleet/images.h"
#include "app/problem.h"

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <unistd.h>

namespace app::fleet {

std::string Claims::take(const std::string &file, const std::string &owner) const
{
    const auto claim = m_folder.path() / sumOf(absolutePath(file));
    if (symlink(owner.c_str(), claim.c_str()) == 0) return {};
    if (errno != EEXIST) throw Problem(file + ": cannot be claimed: " + std::strerror(errno));
    const std::string holder = std::filesystem::read_symlink(claim).string();
    return holder == owner ? std::string() : holder;
}

} // namespace app::fleet
