// Mistakes of a caller, which no data can cause.
#pragma once

#include <stdexcept>

namespace QelFmt {

inline void require(bool holds, const char *otherwise)
{
    if (!holds) throw std::logic_error(otherwise);
}

} // namespace QelFmt
