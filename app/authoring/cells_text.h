// Definition parts in the cell form: what people write, as far as a part can be said in its words.
#pragma once

#include "app/authoring/format_words.h"
#include "app/authoring/record.h"

#include <string>

namespace app::authoring {

// Built again, the text gives the same records in the same order. What its words cannot say stands in it
// by the keys of the full form, at the worst as whole records under `records:`.
std::string cellsToText(const RecordFile &file, const PatternArt &patterns);

} // namespace app::authoring
