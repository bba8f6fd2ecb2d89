// The text of ID symbols.
#pragma once

#include <cstddef>
#include <string>

namespace QelFmt {

std::size_t charactersIn(const std::string &utf8); // not bytes

} // namespace QelFmt
