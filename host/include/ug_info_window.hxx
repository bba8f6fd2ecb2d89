#ifndef UG_INFO_WINDOW_HXX_INCLUDED
#define UG_INFO_WINDOW_HXX_INCLUDED

#include "uf_defs.h"

#include <string>

class DllExport UgInfoWindow {
public:
    static void open();
    static void write(const std::string &text); // adds no line end
};

#endif
