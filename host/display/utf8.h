// UTF-8 in and out. Bytes that are no UTF-8 are taken as Latin-1, which is what parts of the eight-bit
// days hold; so every text can be drawn, and what is written is always valid.
#pragma once

#include <string>
#include <string_view>

namespace host::display {

// The character at `at`, which moves behind it.
char32_t nextCharacter(std::string_view text, std::size_t &at);
void appendUtf8(std::string &text, char32_t character);
std::string validUtf8(std::string_view text);
std::u32string charactersOf(std::string_view text);

} // namespace host::display
