// The two loggers through which the library tells what it does. A message is one statement,
//
//     QELFMT_INFO << "Adding block " << id;
//     QELFMT_VERBOSE << "value " << i << ": " << value;
//
// whose parts are evaluated only while the logger is on; the line end is added. In tests:
//
//     Base::log::Recording recording{&QelFmt::info_log()};
//     ... EXPECT_TRUE(recording.has("Adding block TITLE"));
#pragma once

#include "base/log.h"
#include "udo/export.h"

namespace QelFmt {

QELFMT_API Base::log::Logger &info_log();    // "legqelfmt.info": milestones
QELFMT_API Base::log::Logger &verbose_log(); // "legqelfmt.verbose": every step

} // namespace QelFmt

// A loop that runs once or not at all: unlike an if, it cannot steal the else of its surroundings.
#define QELFMT_LOG_LINE(logger)                                                                    \
    for (Base::log::LoggerStream qelfmt_log_line(logger); qelfmt_log_line.isActive();              \
         qelfmt_log_line.close())                                                                  \
    qelfmt_log_line

#define QELFMT_INFO QELFMT_LOG_LINE(QelFmt::info_log())
#define QELFMT_VERBOSE QELFMT_LOG_LINE(QelFmt::verbose_log())
