#include "display/utf8.h"

namespace host::display {

namespace {

// Bytes of the sequence that a lead byte announces; 0 when it is none.
int sequenceLength(unsigned char lead)
{
    if (lead < 0x80) return 1;
    if (lead >= 0xc2 && lead < 0xe0) return 2;
    if (lead >= 0xe0 && lead < 0xf0) return 3;
    return lead >= 0xf0 && lead < 0xf5 ? 4 : 0;
}

bool allowed(char32_t character, int length)
{
    constexpr char32_t least[]{0, 0, 0x80, 0x800, 0x10000};
    return character >= least[length] && character <= 0x10ffff &&
           !(character >= 0xd800 && character < 0xe000);
}

} // namespace

char32_t nextCharacter(std::string_view text, std::size_t &at)
{
    const auto lead = static_cast<unsigned char>(text[at]);
    const int length = sequenceLength(lead);
    if (length <= 1) {
        ++at;
        return lead;
    }
    if (at + static_cast<std::size_t>(length) > text.size()) return ++at, lead;
    char32_t character = lead & (0xffu >> (length + 1));
    for (int i = 1; i < length; ++i) {
        const auto byte = static_cast<unsigned char>(text[at + static_cast<std::size_t>(i)]);
        if ((byte & 0xc0) != 0x80) return ++at, lead;
        character = character << 6 | (byte & 0x3fu);
    }
    if (!allowed(character, length)) return ++at, lead;
    at += static_cast<std::size_t>(length);
    return character;
}

void appendUtf8(std::string &text, char32_t character)
{
    const auto put = [&](char32_t byte) { text += static_cast<char>(byte); };
    if (character < 0x80) {
        put(character);
    } else if (character < 0x800) {
        put(0xc0 | character >> 6);
        put(0x80 | (character & 0x3f));
    } else if (character < 0x10000) {
        put(0xe0 | character >> 12);
        put(0x80 | (character >> 6 & 0x3f));
        put(0x80 | (character & 0x3f));
    } else {
        put(0xf0 | character >> 18);
        put(0x80 | (character >> 12 & 0x3f));
        put(0x80 | (character >> 6 & 0x3f));
        put(0x80 | (character & 0x3f));
    }
}

std::string validUtf8(std::string_view text)
{
    std::string result;
    result.reserve(text.size());
    for (std::size_t at = 0; at < text.size();) appendUtf8(result, nextCharacter(text, at));
    return result;
}

std::u32string charactersOf(std::string_view text)
{
    std::u32string result;
    for (std::size_t at = 0; at < text.size();) result += nextCharacter(text, at);
    return result;
}

} // namespace host::display
