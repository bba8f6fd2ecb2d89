// The sizes that the platform's drawing sheets have, by size code.
#pragma once

#include "point2.hxx"

#include "uf_draw.h"

// Width and height: millimetres for metric sizes, inches for English ones, as given for a custom
// size. An unknown size code is an error that names it.
Point2 sheetSize(const UF_DRAW_info_t &info);
