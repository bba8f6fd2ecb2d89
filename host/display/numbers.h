// Numbers as the text formats want them: short, with a point, whatever the locale.
#pragma once

#include <string>

namespace host::display {

// Up to three decimals (a thousandth of a millimetre), no trailing zeros, "0" for not-a-number.
void appendNumber(std::string &text, double value);
// Up to `decimals` (at most 9).
void appendNumber(std::string &text, double value, int decimals);

} // namespace host::display
