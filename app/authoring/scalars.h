// Numbers and texts as YAML scalars that bring back every bit and every byte.
#pragma once

#include <yaml-cpp/yaml.h>

#include <optional>
#include <string>

namespace app::authoring {

// The shortest digits that give the same double; ".inf", "-.inf", ".nan", and for a NaN with bits of
// its own "nan(0x7ff8000000000001)".
std::string realText(double value);
std::optional<double> realOf(const YAML::Node &node);
std::optional<int> integerOf(const YAML::Node &node); // the whole range of int

// A name as it is, everything else in quotes; what is no UTF-8 as `!bytes "M\xFCller"`: one character a
// byte.
std::string quoted(const std::string &text);
// The text of a scalar; nothing for lists, mappings and characters above 255 in `!bytes`.
std::optional<std::string> textOf(const YAML::Node &node);

} // namespace app::authoring
