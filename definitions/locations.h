// Where a block may stand, sheet size by sheet size: a block location for a format holds size
// locations, each of which holds named places. All of them, for those who read or write them.
#pragma once

#include "definitions/block_location.h"
#include "definitions/block_location_v1.h"
#include "definitions/location.h"
#include "definitions/location_info.h"
#include "definitions/size_location.h"
