// The findings of a check in the form that code hosts and editors show: SARIF 2.1.0.
#pragma once

#include "app/fleet/findings.h"

#include <cstdio>

namespace app::fleet {

// Places are whole files, since drawings have no lines; sheet, block and field are logical places. Files
// named by a relative path are relative to "%SRCROOT%", the folder of the command.
void writeSarif(const CheckResults &results, std::FILE *to);

} // namespace app::fleet
