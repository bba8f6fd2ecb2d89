// Formats on sheets: what stamp, format and block share.
#pragma once

#include "app/workspace.h"

#include <boost/shared_ptr.hpp>

#include <string>

class TrFormatDefV1;

namespace app {

struct FormatName {
    std::string format;
    std::string size;
};

FormatName parseFormatName(const std::string &text); // "ISO/A3"
// The loaded definition that has the size; a Problem that lists what there is otherwise.
boost::shared_ptr<TrFormatDefV1> definitionOf(const FormatName &name);
// Units of a loaded format's definition; a Problem that lists the formats when there is none.
int unitsOf(const FormatName &name);
// Places the format on the sheet, then the blocks that only the site's settings require.
void placeFormat(const Workspace &work, const SheetRef &sheet, const FormatName &name);
// The library places what the definition requires; this what the site's settings add to that.
void addSiteBlocks(const SheetRef &sheet, const TrFormatDefV1 &definition,
                   const std::string &place);
std::string placeOf(const Workspace &work, const SheetRef &sheet); // "a.qdraw, sheet S1"

} // namespace app
