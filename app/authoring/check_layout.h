// Blocks on sheets: whether they stand inside the frame, and required ones beside each other.
#pragma once

#include "app/authoring/check_fields.h"
#include "app/authoring/findings.h"

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace app::authoring {

struct LaidOutBlock {
    std::string file;
    const RecordTree *record;
    std::optional<FieldBox> extent; // of its size and its lines, if they are known
};
struct LaidOutFormat {
    const RecordTree *record;
    // What the frame of a size draws, if it can be read.
    std::function<std::optional<Art>(const RecordTree &size)> frameOf;
};

// Each finding once for all sizes of a format that it holds of.
void checkLayout(const std::vector<LaidOutFormat> &formats, const std::vector<LaidOutBlock> &blocks,
                 Findings &findings);

} // namespace app::authoring
