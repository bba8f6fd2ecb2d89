// Names of files that several processes write, each name for one owner.
#pragma once

#include "app/fleet/private_folder.h"

#include <string>

namespace app::fleet {

// Made before the workers start: all of them see the claims of each other.
class Claims {
public:
    // Empty when the file is the owner's from now on, or was before; else whose it is.
    std::string take(const std::string &file, const std::string &owner) const;

private:
    PrivateFolder
        m_folder; // a link a name, which leads to the owner: made in one step or not at all
};

} // namespace app::fleet
