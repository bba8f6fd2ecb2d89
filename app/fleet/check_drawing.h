// One drawing against the definitions and the rules.
#pragma once

#include "app/fleet/rules.h"
#include "app/output.h"
#include "app/workspace.h"

namespace app::fleet {

// "sheets" (how many have a format), "matched" (the rules that had a value to look at, by their
// indices) and "findings": each with "sheet", "rule" (an index, or the name of a state), "severity",
// "message" and "remedy"; those of rules also with "block", "field" and "value".
// The drawing is read only, whatever its generation.
Json checkDrawing(Workspace &work, const Rules &rules);

} // namespace app::fleet
