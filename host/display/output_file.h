// A file that appears whole or not at all.
#pragma once

#include <string>
#include <string_view>

namespace host::display {

// Under a temporary name in the same folder, then renamed. RenderError with the path and the remedy.
void writeWhole(const std::string &path, std::string_view bytes);

} // namespace host::display
