// New drafting objects are born in the view of the current sheet; this puts them where they belong.
#pragma once

#include "uf_defs.h"

namespace LumUg {
class UDO;
}

// Converts a newly made note, line, symbol or pattern of the record to the view of the sheet that
// the record's format stands on, when that sheet is not the current one.
void putOnSheetOf(const LumUg::UDO &udo, tag_t object);

// The same in two steps, for several objects of one record: the view that they are to be converted to,
// NULL_TAG when they are in the right one.
tag_t otherSheetsView(const LumUg::UDO &udo);
void putInView(tag_t view, tag_t object);
