#include "app/formats.h"

#include "app/output.h"
#include "app/problem.h"
#include "app/site_blocks.h"

#include "api/trv_fmt.h"
#include "definitions/definition_file_manager.h"
#include "definitions/format_def.h"
#include "definitions/format_size.h"
#include "drawing/drawing.h"
#include "drawing/format.h"

#include <fmt/format.h>

namespace app {

boost::shared_ptr<TrFormatDefV1> definitionOf(const FormatName &name)
{
    const auto definition = TrDefinitionFileManager::GetFormatDefinition(name.format);
    if (!definition)
        throw Problem(fmt::format("no format {} is defined in the search directories: see 'qelfmt "
                                  "defs list', or name a folder with --defs",
                                  name.format));
    if (definition->GetSizeDef(name.size).IsNull()) {
        std::vector<std::string> sizes;
        for (const TrFormatSizeV1 &size : definition->GetAvailableSizes())
            sizes.push_back(size.GetId());
        throw Problem(fmt::format("format {} has no size {}: it has {}", name.format, name.size,
                                  joined(sizes, ", ")));
    }
    return definition;
}

FormatName parseFormatName(const std::string &text)
{
    const auto slash = text.find('/');
    if (slash == std::string::npos || slash == 0 || slash + 1 == text.size())
        throw Problem(
            fmt::format("\"{}\": write a format and one of its sizes, as in ISO/A3", text), kUsage);
    return {text.substr(0, slash), text.substr(slash + 1)};
}

int unitsOf(const FormatName &name) { return definitionOf(name)->GetUnits() == 1 ? 1 : 2; }

void placeFormat(const Workspace &work, const SheetRef &sheet, const FormatName &name)
{
    const auto definition = definitionOf(name);
    const std::string place = placeOf(work, sheet);
    checkLibrary(TRV_FMT_add_format(sheet.tag, name.format.c_str(), name.size.c_str()), place);
    addSiteBlocks(sheet, *definition, place);
}

void addSiteBlocks(const SheetRef &sheet, const TrFormatDefV1 &definition, const std::string &place)
{
    const auto format = TrDrawing::getDrawing(sheet.tag)->format();
    for (const std::string &id : siteBlocks(definition))
        if (!format->hasBlock(id)) checkLibrary(TRV_FMT_add_block(sheet.tag, id.c_str()), place);
}

std::string placeOf(const Workspace &work, const SheetRef &sheet)
{
    return fmt::format("{}, sheet {}", work.shownPath(), sheet.name);
}

} // namespace app
