// Which qelfmt this is.
#pragma once

namespace app {

inline constexpr const char *kVersion = "1.0.0";

} // namespace app
