// Blocks that the site's settings require beyond what the definition of a format does.
#pragma once

#include <string>
#include <vector>

class TrFormatBase;
class TrFormatDefV1;

namespace app {

std::vector<std::string> siteBlocks(const TrFormatDefV1 &def);
// Those that are not on the format though it has a place for them.
std::vector<std::string> missingSiteBlocks(const TrFormatDefV1 &def, const TrFormatBase &format);

} // namespace app
