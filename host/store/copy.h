// A loaded part once more.
#pragma once

#include "part_store.h"

namespace host::store {

// As if its file had been read again: tags are new, and texts that refer to objects follow them. The
// original must be as load() gave it, not adopted by the session.
LoadedPart copyOf(const LoadedPart &loaded);

} // namespace host::store
