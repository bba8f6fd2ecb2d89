#include "drawing/hierarchy.h"

#include "drawing/links_to.h"
#include "udo/class_names.h"
#include "udo/udo_class.h"

namespace {

tag_t firstLinking(tag_t object)
{
    const LinksTo to(object);
    return to.links().empty() ? NULL_TAG : to.links().front().assoc_ug_tag;
}

bool isFormat(tag_t udo)
{
    return LumUg::UDOClass::sameClass(dynamic_cast<UgUDO *>(UgObject::find(udo)),
                                      QelFmt::kFormatV1Classname);
}

} // namespace

tag_t formatAbove(tag_t object)
{
    // Links between records never form a circle.
    while (object != NULL_TAG) {
        object = firstLinking(object);
        if (object != NULL_TAG && isFormat(object)) break;
    }
    return object;
}
