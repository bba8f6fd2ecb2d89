// The small texts that name cells and columns, which only a text knows apart from other art.
#pragma once

#include "app/authoring/findings.h"
#include "app/authoring/model.h"
#include "app/authoring/text_ruler.h"

#include <string>

namespace app::authoring {

// A label that is wider than what it names, or that the values below it would run into.
void checkLabel(const Field &text, const RecordTree &field, const std::string &where,
                TextRuler &ruler, Findings &findings);
// A heading that is too low for its labels.
void checkHeading(const Table &text, const std::string &where, Findings &findings);

} // namespace app::authoring
