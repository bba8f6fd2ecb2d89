// A TrueType font of a few glyphs, as PDF embeds it: outlines without hints and no more tables than a
// PDF reader needs. It is made from outlines, so that it does not matter what kind of font they are of.
#pragma once

#include "display/face.h"

#include <span>
#include <string>

namespace host::display {

// With the face's measures. Glyph 0 is its box for what it lacks; glyph n is shapes[n - 1].
std::string trueTypeSubset(const Face &face, std::span<const GlyphShape *const> shapes);

} // namespace host::display
