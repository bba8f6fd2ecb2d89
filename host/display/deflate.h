// The zlib format, as PDF and PNG hold it.
#pragma once

#include <string>
#include <string_view>

namespace host::display {

std::string deflated(std::string_view data);

} // namespace host::display
