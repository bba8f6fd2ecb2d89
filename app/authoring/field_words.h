// Fields in the words of the cell form.
#pragma once

#include "app/authoring/cell_lines.h"
#include "app/authoring/flow.h"
#include "app/authoring/fold.h"
#include "app/authoring/style_book.h"

#include <optional>
#include <set>
#include <string>

namespace app::authoring {

// Numbers with as few digits as it takes; empty when none fits to the last bit.
std::optional<double> addendOf(double sum, double part);         // that + part is the sum
std::optional<double> subtrahendOf(double whole, double result); // whole - that is the result

// The box of a field in its block. Empty when it has none that the cell form could say.
std::optional<Box> cellOf(const RecordTree &field);

// What a cell or a column of a table says besides its place: style, value, where it comes from, and the
// slots that need their own names.
void putFieldWords(const Fold &field, const StyleBook &styles, int units, bool column,
                   FlowMapping &keys);
void putSlots(const Fold &fold, FlowMapping &keys);

// A key for the record: its id, if that is unlike the ids before and can be a key. `taken` grows.
std::string keyOf(const Fold &fold, std::set<std::string> &taken);

} // namespace app::authoring
