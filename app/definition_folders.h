// The folders of --defs.
#pragma once

#include "app/options.h"

namespace app {

// A Problem that names the first that is no folder.
void requireDefinitionFolders(const Options &options);

} // namespace app
