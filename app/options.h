// What every verb understands.
#pragma once

#include <string>
#include <vector>

namespace app {

struct Options {
    bool json = false;
    bool quiet = false;
    bool dryRun = false;
    bool verbose = false;
    std::vector<std::string> definitions; // --defs: folders with format_defs, patterns and config
};

} // namespace app
