// A folder below the system's one for temporary files.
#pragma once

#include <filesystem>

namespace app::fleet {

// Nobody can guess its name or look into it; it goes with all that is in it. A Problem when none can be made.
class PrivateFolder {
public:
    PrivateFolder();
    ~PrivateFolder();
    PrivateFolder(const PrivateFolder &) = delete;
    PrivateFolder &operator=(const PrivateFolder &) = delete;

    const std::filesystem::path &path() const { return m_path; }

private:
    std::filesystem::path m_path;
};

} // namespace app::fleet
