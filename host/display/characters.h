// What shaping must know of characters.
#pragma once

namespace host::display {

bool isCombiningMark(char32_t character);
// Joiners, marks of direction, variation selectors: neither drawn nor wide.
bool isInvisible(char32_t character);
// The one character that a letter and a mark make; 0: none.
char32_t composed(char32_t base, char32_t mark);

} // namespace host::display
