// The files of one folder name along the platform's search directories.
#pragma once

#include "uf_defs.h"

#include <boost/filesystem/path.hpp>

#include <string>
#include <vector>

namespace LumUg {

// Search directories, in order: those of UGII_VENDOR_DIR, UGII_SITE_DIR and UGII_GROUP_DIR, those
// listed in the file that UGII_CUSTOM_DIRECTORY_FILE names (one a line, "#" starts a comment,
// ${NAME} is replaced), that of UGII_USER_DIR; with none of these variables set, the folder
// share/qelfmt beside the library. They are read at each construction. A directory or file that
// does not exist or cannot be read is no error.
class DllExport NxSearchFileList {
public:
    struct Place {
        std::string origin; // the variable, or "installation"
        boost::filesystem::path folder;
    };

    explicit NxSearchFileList(const std::string &folder); // "config", "format_defs"

    // The regular files of that name, or whose names match: "*" is any run of characters, all else
    // is literal and case counts. In the order of the directories, by name within one; a file
    // reached twice comes once.
    std::vector<boost::filesystem::path> filePaths(const std::string &name_or_pattern) const;

    // Every folder that is looked at, whether it exists or not.
    const std::vector<Place> &places() const { return m_places; }

    // Replaces the directories for all lists constructed from now on; an empty list restores the
    // variables.
    static void setSearchDirectories(const std::vector<boost::filesystem::path> &directories);

private:
    std::vector<Place> m_places;
};

} // namespace LumUg
