// New drafting objects are born in the view of the current sheet; this puts them where they belong.
#pragma once

#include "uf_defs.h"

namespace LumUg {
class UDO;
}

// Converts a newly made note, line, symbol or pattern of the record to the view of the sheet that
// the record's format stands on, when that sheet is not the current one.
void putOnSheetOf(const LumUg::UDO &udo, tag_t object);
