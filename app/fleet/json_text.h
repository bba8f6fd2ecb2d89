// JSON written straight into a text, where a tree of values is not worth its cost.
#pragma once

#include <string>
#include <string_view>

namespace app::fleet {

// In quotes, as compact() writes it.
void appendJson(std::string &to, std::string_view text);

} // namespace app::fleet
