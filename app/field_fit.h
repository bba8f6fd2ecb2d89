// Whether the text of a field stays inside its cell, by the lengths that the platform gives, and has no
// more lines than the field is for.
#pragma once

#include "app/output.h"

#include <optional>
#include <string>

class TrFieldBase;

namespace app {

// A cell and the text in it, in the units of the sheet; a side of the cell that is 0 has no bounds.
struct Misfit {
    double cellWidth = 0.0, cellHeight = 0.0;
    double textWidth = 0.0, textHeight = 0.0;
    double tooWide = 0.0, tooHigh = 0.0; // what sticks out beyond the cell's lines
    std::size_t lines = 0;               // of a text that should have one; else 0
};

enum class CellHeight { fixed, grows }; // rows of tables grow with their text

// Empty when the text fits, and for a field without a note. A cell without a width or a height has no
// bounds that way.
std::optional<Misfit> misfitOf(const TrFieldBase &field, CellHeight height = CellHeight::fixed);
// "the text is 12.30 too wide for its cell of 60 x 9", and what to do about it
std::string describe(const Misfit &misfit);
std::string excessOf(const Misfit &misfit); // "is 12.30 too wide for its cell of 60 x 9"
Json toJson(const Misfit &misfit);

} // namespace app
