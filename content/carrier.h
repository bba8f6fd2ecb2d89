// The points that carry the attributes of drawing sheets, shared with other programs.
#pragma once

#include "uf_defs.h"

class UgPoint;

namespace QelFmt {

// The view of a sheet, 0 for the current one; NULL_TAG when no sheet is current.
tag_t viewOfSheet(tag_t sheet);

UgPoint *findCarrier(tag_t view); // null when the sheet has none yet
UgPoint *makeCarrier(tag_t view);

} // namespace QelFmt
