// A place for a block on a sheet.
#pragma once

#include "point2.hxx"

#include <string>

namespace QelFmt {

struct LocationInfoType {
    std::string name; // empty when nothing fitted the sheet
    Point2 location;  // of the block's reference point, in sheet coordinates and drawing units
};

} // namespace QelFmt
