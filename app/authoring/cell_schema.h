// The cell form for editors: which keys stand where, what they hold, what they mean.
#pragma once

#include <nlohmann/json.hpp>

namespace app::authoring {

// Adds definitions ("cell", "table", ...) to `defs` and gives the properties of a whole file. `defs` has
// those of the full form already: "text", "real" and one for each kind of record.
nlohmann::ordered_json cellFormProperties(nlohmann::ordered_json &defs);

} // namespace app::authoring
