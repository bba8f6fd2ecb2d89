#include "app/definition_folders.h"

#include "app/problem.h"

#include <filesystem>

namespace app {

void requireDefinitionFolders(const Options &options)
{
    std::error_code ignored;
    for (const std::string &folder : options.definitions)
        if (!std::filesystem::is_directory(folder, ignored))
            throw Problem(folder + ": is no folder: --defs needs one with format_defs in it");
}

} // namespace app
