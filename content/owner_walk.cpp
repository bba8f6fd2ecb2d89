#include "content/owner_walk.h"

#include "drawing/block.h"
#include "drawing/links_to.h"

namespace QelFmt {

tag_t firstLinking(tag_t object)
{
    const LinksTo to(object);
    return to.links().empty() ? NULL_TAG : to.links().front().assoc_ug_tag;
}

void detachFromParents(const LumUg::UDO &child)
{
    const LinksTo to(child.tag());
    for (const UF_UDOBJ_link_t &inbound : to.links()) {
        if (inbound.link_type != static_cast<int>(LumUg::kChildLink)) continue;
        UF_UDOBJ_link_t link{inbound.link_type, child.tag(), 0};
        UgException::throwOnFailure(UF_UDOBJ_delete_link(inbound.assoc_ug_tag, &link));
    }
}

boost::shared_ptr<TrBlockBase> blockAbove(const LumUg::UDO &udo)
{
    if (udo.IsNull()) return {};
    for (tag_t at = firstLinking(udo.tag()); at != NULL_TAG; at = firstLinking(at)) {
        if (auto block = boost::dynamic_pointer_cast<TrBlockBase>(LumUg::UDO::Create(at)))
            return block;
    }
    return {};
}

} // namespace QelFmt
