#include "drawing/sheet_of.h"

#include "drawing/format.h"

#include "ug_typed.hxx"

#include <stdexcept>

tag_t sheetOf(const TrFormatBase &format)
{
    // Deleting a sheet takes its format along: only damage leaves a record without one.
    const bool unlinked = !format.IsNull() && format.GetLinks(LumUg::kSheetLink).empty();
    const UgTypedObject *sheet = unlinked ? nullptr : format.GetDrawing();
    if (!sheet)
        throw std::runtime_error("Format " + format.GetFormatDefName() +
                                 " is linked to no drawing sheet: its record is damaged. Delete "
                                 "the record and place the format anew.");
    return sheet->getTag();
}
