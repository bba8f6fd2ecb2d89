// What is wrong with a part's file, and a new part of all that can be read out of it. Works on any file
// that was a part once; the file is never changed.
#pragma once

#include "part_store.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace host::store {

struct Finding {
    enum class Kind {
        damage,    // what was stored cannot be read, or cannot be
        dangling,  // something refers to an object that is not there
        orphan,    // nothing leads to it
        condemned, // deleted, and kept by a link of type 2
    };
    Kind kind;
    std::uint64_t object = 0; // its ordinal; 0: of the part or the file
    std::string text;         // names the object and says what is wrong
    std::string mended;       // what a salvaged part has instead; empty: the same
};

// Which records must hang on something, by the names of their classes.
struct RecordRules {
    std::vector<std::string> belowOthers; // a link of type 2 leads to them
    std::vector<std::string> onSheets;    // they link to their sheet by type 1
};

struct Examination {
    std::string refusal;     // why the part cannot be opened; empty: it can
    std::size_t objects = 0; // that were read
    std::vector<Finding> findings;
    std::string image; // the salvaged part as a file; empty: nothing of a part was found
};

// Throws StoreError when the file is missing, cannot be read, is being saved or was never a part of
// this version.
Examination examine(const std::string &path, const RecordRules &rules = {});

// The same of bytes; `name` is what messages call them.
Examination examineImage(std::string_view bytes, const std::string &name,
                         const RecordRules &rules = {});

// Writes a new part of what can be read. Throws StoreError, also when there is a file of the new name
// or nothing can be read. Result: what was lost or changed, each with `mended`.
struct Salvage {
    std::size_t objects = 0;
    std::vector<Finding> lost;
};
Salvage salvage(const std::string &path, const std::string &newPath);

} // namespace host::store
