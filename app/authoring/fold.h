// Records on their way back to the cell form. The words of the cell form are tried first; what they give
// when they are read again is compared with the record, and the slots that differ are named by their keys
// of the full form. A record that this cannot bring back stands in the full form as a whole.
#pragma once

#include "app/authoring/record.h"

#include <map>
#include <string>
#include <vector>

namespace app::authoring {

struct Fold {
    explicit Fold(const RecordTree &of);

    const RecordTree *record;
    std::map<std::string, std::string> slots; // by their keys of the full form, values as YAML
    bool whole = false;
    // How its pattern is told: 0 as lines, labels and headings that follow from cells and tables, or as a
    // sheet of a family, 1 as art, 2 by the pattern's name.
    int plan = 0;
    std::vector<Fold> children; // as the record's own

    std::vector<Fold *> childrenOf(const std::string &word);
};

inline constexpr int kByName = 2;

// Compares what came back. True when the fold was changed, so that another try makes sense.
bool refine(Fold &fold, const RecordTree &back);

} // namespace app::authoring
