// A point as listings show it: "5,-10".
#pragma once

#include <sstream>
#include <string>

namespace QelFmt {

inline std::string pointText(double x, double y)
{
    std::ostringstream text;
    text << x << ',' << y;
    return text.str();
}

} // namespace QelFmt
