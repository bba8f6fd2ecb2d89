// What a worker does to one drawing after another.
#pragma once

#include "app/fleet/worker_pool.h"
#include "app/options.h"
#include "app/workspace.h"

#include <functional>
#include <string>
#include <vector>

namespace app::fleet {

// The library is started once a worker. Each drawing is opened, given to `work`, and closed again
// whatever happens.
std::function<Handler()> onDrawings(const Options &options, const std::vector<std::string> &paths,
                                    bool loadDefinitions,
                                    std::function<std::string(Workspace &)> work);

} // namespace app::fleet
