#include "api/guard.h"
#include "api/trv_fmt.h"

namespace QelFmt::api {

std::string &lastError()
{
    static auto *text = new std::string;
    return *text;
}

} // namespace QelFmt::api

extern "C" const char *TRV_FMT_ask_last_error(void) { return QelFmt::api::lastError().c_str(); }
