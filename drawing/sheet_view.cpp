#include "drawing/sheet_view.h"

#include "drawing/format.h"
#include "drawing/hierarchy.h"
#include "drawing/sheet_of.h"

#include "uf_draw.h"
#include "uf_view.h"
#include "ug_exception.hxx"

namespace {

// NULL_TAG for a record that hangs below no format.
tag_t sheetUnder(const LumUg::UDO &udo)
{
    if (const auto *format = dynamic_cast<const TrFormatBase *>(&udo)) return sheetOf(*format);
    const tag_t format = formatAbove(udo.tag());
    if (format == NULL_TAG) return NULL_TAG;
    const auto above = boost::dynamic_pointer_cast<TrFormatBase>(LumUg::UDO::Create(format));
    return above ? sheetOf(*above) : NULL_TAG;
}

} // namespace

tag_t otherSheetsView(const LumUg::UDO &udo)
{
    const tag_t sheet = sheetUnder(udo);
    tag_t current = NULL_TAG;
    UgException::throwOnFailure(UF_DRAW_ask_current_drawing(&current));
    if (sheet == NULL_TAG || sheet == current) return NULL_TAG;

    tag_t view = NULL_TAG;
    UgException::throwOnFailure(UF_DRAW_ask_view_of_drawing(sheet, &view));
    return view;
}

void putInView(tag_t view, tag_t object)
{
    if (view != NULL_TAG) UgException::throwOnFailure(UF_VIEW_convert_to_view(view, object));
}

void putOnSheetOf(const LumUg::UDO &udo, tag_t object) { putInView(otherSheetsView(udo), object); }
