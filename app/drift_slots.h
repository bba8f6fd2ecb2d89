// Two definition records, slot by slot, with all that they own. What slots there are comes from the
// slot tables of the classes.
#pragma once

#include "app/drift.h"

namespace LumUg {
class UDO;
}

namespace app {

// `stored` is the private copy on a sheet. Records that are owned are told apart by their identifiers.
Differences compareDefinitions(const LumUg::UDO &stored, const LumUg::UDO &disk);

// "2.5", the shortest text that is the number again.
std::string numberText(double value);

} // namespace app
