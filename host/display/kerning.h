// Kerning pairs of an OpenType font. We do not kern: a text is as wide as the metrics say. Other
// renderers do it unasked, and the SVG painter must know where to stop them.
#pragma once

#include <cstdint>
#include <span>
#include <unordered_map>

namespace host::display {

// Pairs by first glyph << 16 | second glyph with the move in font units, from the table GPOS: the pair
// lists (format 1) and the classes (format 2) of every pair lookup. A damaged table gives what can be
// read of it.
std::unordered_map<std::uint32_t, int> kerningPairs(std::span<const unsigned char> gpos);

} // namespace host::display
