// Pattern parts: art drawn through the platform's calls and saved with its pattern data.
#pragma once

#include "app/authoring/model.h"

#include <string>

namespace app::authoring {

// "ISO-A3-1f0c22ab": the stem, cut so that the name fits an object's name, and a hash of the art, so that
// changed art is a changed definition. Empty for empty art.
std::string patternName(const std::string &stem, const Art &art, int units);

// Writes `folder`/`name`.prt. The art of a name never changes, so a file that stands there already is
// left alone.
void writePattern(const std::string &folder, const std::string &name, const Art &art, int units);

} // namespace app::authoring
