// The sheet that a format stands on.
#pragma once

#include "uf_defs.h"

class TrFormatBase;

// Raises an error that names the format when its record, damaged, is linked to no sheet.
tag_t sheetOf(const TrFormatBase &format);
