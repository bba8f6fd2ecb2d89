// What somebody may have meant who wrote a word that is not known.
#pragma once

#include <set>
#include <string>

namespace app::authoring {

// ": did you mean color?" when one of the known words is close to it, else ": it is none of ..."; of
// slots that only the full form names, the close one alone.
std::string suggestionFor(const std::string &word, const std::set<std::string> &known);

} // namespace app::authoring
