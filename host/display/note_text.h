// A stored line as it is read on the sheet.
#pragma once

#include <string>
#include <string_view>

namespace host::display {

// Takes a line whose references have been evaluated. `$<` and `$>` become brackets; what is left of
// the commands `<`, letter, parameter, `>` shows nothing, but two strings with `!` between show as
// "upper/lower"; any other bracket is ordinary text.
std::string visibleText(std::string_view evaluated);

} // namespace host::display
