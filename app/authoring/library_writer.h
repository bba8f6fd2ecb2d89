// Definition parts: a library's records, made through the definition classes and saved.
#pragma once

#include "app/authoring/model.h"

#include <string>

namespace app::authoring {

struct WrittenLibrary {
    std::string definitionPart;
    std::size_t formats = 0;
    std::size_t blocks = 0;
    std::size_t patterns = 0;
};

// Writes `folder`/format_defs/`name`.prt and the pattern parts below `folder`/patterns. An existing
// definition part is replaced when the new one is complete.
WrittenLibrary writeLibrary(const Library &library, const std::string &name,
                            const std::string &folder);

} // namespace app::authoring
