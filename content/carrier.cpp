#include "content/carrier.h"

#include "content/new_object.h"

#include "uf_draw.h"
#include "uf_view.h"
#include "ug_exception.hxx"
#include "ug_point.hxx"

#include <unordered_map>

namespace QelFmt {

namespace {

constexpr int kCarrierLayer = 254;
constexpr char kCarrierName[] = "DWG_ATTR";
// Outside of every sheet; cycling a sheet's view finds it all the same.
const Point3 kCarrierPlace(0.0, -3000.0, 0.0);

// Null for everything that is no carrier, or is blanked and so not found by cycling.
UgPoint *asCarrier(tag_t object)
{
    UF_OBJ_disp_props_t shown{};
    int type = 0, subtype = 0;
    if (UF_OBJ_ask_type_and_subtype(object, &type, &subtype) != 0 || type != UF_point_type)
        return nullptr;
    if (UF_OBJ_ask_display_properties(object, &shown) != 0) return nullptr;
    if (shown.layer != kCarrierLayer || shown.blank_status == UF_OBJ_BLANKED) return nullptr;
    auto *point = dynamic_cast<UgPoint *>(UgObject::find(object));
    return point && point->getName().starts_with(kCarrierName) ? point : nullptr;
}

// Where the carrier of a view was met last: on a full sheet it may stand behind thousands of notes.
std::unordered_map<tag_t, tag_t> &lastMet()
{
    static std::unordered_map<tag_t, tag_t> carriers;
    return carriers;
}

} // namespace

tag_t viewOfSheet(tag_t sheet)
{
    if (sheet == NULL_TAG) UgException::throwOnFailure(UF_DRAW_ask_current_drawing(&sheet));
    if (sheet == NULL_TAG) return NULL_TAG;
    tag_t view = NULL_TAG;
    UgException::throwOnFailure(UF_DRAW_ask_view_of_drawing(sheet, &view));
    return view;
}

UgPoint *findCarrier(tag_t view)
{
    if (const auto known = lastMet().find(view); known != lastMet().end()) {
        UgPoint *point = UgObject::find(known->second) ? asCarrier(known->second) : nullptr;
        if (point) return point;
        lastMet().erase(known);
    }
    for (tag_t object = NULL_TAG;;) {
        UgException::throwOnFailure(UF_VIEW_cycle_objects(view, UF_VIEW_VISIBLE_OBJECTS, &object));
        if (object == NULL_TAG) return nullptr;
        if (UgPoint *point = asCarrier(object)) {
            lastMet()[view] = object;
            return point;
        }
    }
}

UgPoint *makeCarrier(tag_t view)
{
    UgPoint *point = UgPoint::create(kCarrierPlace);
    NewObject fresh(point->getTag());
    point->setLayer(kCarrierLayer);
    point->setName(kCarrierName);
    UgException::throwOnFailure(UF_VIEW_convert_to_view(view, point->getTag()));
    fresh.keep();
    lastMet()[view] = point->getTag();
    return point;
}

} // namespace QelFmt
