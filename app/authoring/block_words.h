// Blocks in the words of the cell form.
#pragma once

#include "app/authoring/art_words.h"
#include "app/authoring/fold.h"
#include "app/authoring/style_book.h"

#include <optional>
#include <string>
#include <vector>

namespace app::authoring {

// What the blocks of a file have in common.
struct BlockWords {
    int units;
    const StyleBook &styles;
    const LabelStyle &labels;
};

// `key: ...` and what stands below it, indented by two. `art`: of its pattern, if that could be read.
std::string blockText(Fold &block, const std::string &key, const std::optional<Art> &art,
                      const BlockWords &words);

// A record in the full form as the value of a key, below which it is indented.
std::string wholeText(const RecordTree &record, int depth);

} // namespace app::authoring
