// Whether the library's update of a block gives what a block placed today would be.
#pragma once

#include "app/update.h"

namespace app {

// Empty: it does. Else why not, in words.
std::vector<std::string> reasonsAgainstLibrary(TrBlockBase &block, const BlockDrift &drift,
                                               const TrBlockDefV1 &disk);

} // namespace app
