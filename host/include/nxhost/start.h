// Starting the embedded host as the platform starts.
#pragma once

#include "../uf_defs.h"

namespace nxhost {

// Initialises the session (counted) and calls `ufsta` of every library that is loaded in this
// process and exports one, in load order, once a library and process.
DllExport void start();

} // namespace nxhost
