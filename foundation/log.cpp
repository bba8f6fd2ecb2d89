#include "foundation/log.h"

namespace QelFmt {

// Both are never destroyed: static objects may log while the process exits.
Base::log::Logger &info_log()
{
    static Base::log::Logger &logger = *new Base::log::Logger("legqelfmt.info");
    return logger;
}

Base::log::Logger &verbose_log()
{
    static Base::log::Logger &logger = *new Base::log::Logger("legqelfmt.verbose");
    return logger;
}

} // namespace QelFmt
