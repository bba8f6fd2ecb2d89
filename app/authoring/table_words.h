// Tables in the words of the cell form.
#pragma once

#include "app/authoring/art_words.h"
#include "app/authoring/fold.h"
#include "app/authoring/style_book.h"

#include <string>

namespace app::authoring {

TableShape shapeOf(const RecordTree &table);

// `key: ...` and what stands below it, as one of the tables of a block.
std::string tableText(Fold &table, const std::string &key, const TableArt &art,
                      const StyleBook &styles, const LabelStyle &labels, int units);

} // namespace app::authoring
