// The way up from a record to the format that it hangs below.
#pragma once

#include "uf_defs.h"

// The record of the format above an object, found by following the first record that links to each
// object on the way; NULL_TAG when the way ends without one.
tag_t formatAbove(tag_t object);
