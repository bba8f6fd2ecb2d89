#include "app/authoring/sheet_family.h"

#include "app/authoring/asme_sheets.h"
#include "app/authoring/iso_sheets.h"
#include "app/authoring/words.h"

namespace app::authoring {

std::optional<Sheet> familySheet(SheetFamily family, const std::string &id, const std::string &font)
{
    if (family == SheetFamily::iso) {
        const IsoSheet *sheet = isoSheet(id);
        if (!sheet) return {};
        return Sheet{isoSize(*sheet, kFrameLayer), [sheet, font](const auto &occupied) {
                         return isoFrame(*sheet, font, occupied);
                     }};
    }
    const AsmeSheet *sheet = asmeSheet(id);
    if (!sheet) return {};
    return Sheet{asmeSize(*sheet, kFrameLayer),
                 [sheet, font](const auto &) { return asmeFrame(*sheet, font); }};
}

std::string familyIds(SheetFamily family)
{
    return family == SheetFamily::iso ? isoSheetIds() : asmeSheetIds();
}

int familyUnits(SheetFamily family) { return family == SheetFamily::iso ? 1 : 2; }

} // namespace app::authoring
