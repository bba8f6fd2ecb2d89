// Definition parts: a library's records, made through the definition classes and saved.
#pragma once

#include "app/authoring/model.h"

#include <string>
#include <vector>

namespace app::authoring {

struct WrittenLibrary {
    std::string definitionPart;
    std::size_t formats = 0;
    std::size_t blocks = 0;
    std::size_t patterns = 0;
};

// Writes `folder`/format_defs/`name`.prt and the pattern parts below `folder`/patterns. An existing
// definition part is replaced when the new one is complete. `keepOrderOf`: an older state of the library,
// whose order of records stays (see stored_order.h).
WrittenLibrary writeLibrary(const Library &library, const std::string &name,
                            const std::string &folder, const RecordFile *keepOrderOf = nullptr);

} // namespace app::authoring
