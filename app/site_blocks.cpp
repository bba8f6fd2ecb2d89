#include "app/site_blocks.h"

#include "app/update_block.h"

#include "definitions/block_def.h"
#include "definitions/definition_file_manager.h"
#include "definitions/format_def.h"
#include "drawing/format.h"

#include <algorithm>

namespace app {

std::vector<std::string> siteBlocks(const TrFormatDefV1 &def)
{
    const auto own = def.GetRequiredBlockIds(true);
    std::vector<std::string> ids;
    for (const std::string &id : def.GetRequiredBlockIds(false))
        if (std::count(own.begin(), own.end(), id) == 0) ids.push_back(id);
    return ids;
}

std::vector<std::string> missingSiteBlocks(const TrFormatDefV1 &def, const TrFormatBase &format)
{
    std::vector<std::string> ids;
    for (const std::string &id : siteBlocks(def)) {
        const auto block = TrDefinitionFileManager::GetBlockDefinition(id);
        if (block && !format.hasBlock(id) && hasPlace(*block, format)) ids.push_back(id);
    }
    return ids;
}

} // namespace app
