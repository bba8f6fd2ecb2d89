#include "drawing/owned_patterns.h"

#include "drawing/pattern.h"
#include "drawing/sheet_view.h"
#include "drawing/transformation.h"
#include "udo/udo.h"

#include "uf_obj.h"
#include "ug_exception.hxx"

namespace {

std::vector<UgTypedObject *> patternsOf(const LumUg::UDO &owner)
{
    if (owner.IsNull()) return {};
    return owner.GetOwnedObjects(ZemPattern::kObjectType);
}

} // namespace

void drawOwnedPattern(LumUg::UDO &owner, const PatternSpec &spec)
{
    const auto patterns = patternsOf(owner);
    if (!spec.name.empty() && !patterns.empty() && patterns.front()->getName() == spec.name) return;
    removeOwnedPatterns(owner);
    if (spec.name.empty()) return;

    ZemPattern *pattern = ZemPattern::Create(spec.name, spec.layer, spec.at);
    owner.AddOwnedObjects({pattern});
    putOnSheetOf(owner, pattern->getTag());
}

void removeOwnedPatterns(LumUg::UDO &owner)
{
    for (UgTypedObject *pattern : patternsOf(owner)) {
        const tag_t tag = pattern->getTag();
        owner.DeleteOwnedObject(pattern); // an owned object cannot be deleted
        UgException::throwOnFailure(UF_OBJ_delete_object(tag));
    }
}

void moveOwnedPatterns(const LumUg::UDO &owner, double dx, double dy)
{
    if (dx == 0.0 && dy == 0.0) return;
    std::vector<tag_t> tags;
    for (const UgTypedObject *pattern : patternsOf(owner)) tags.push_back(pattern->getTag());
    if (tags.empty()) return;

    moveObjects(tags, dx, dy);
}

void handOverPatterns(LumUg::UDO &from, LumUg::UDO &to)
{
    const auto patterns = patternsOf(from);
    if (patterns.empty()) return;
    for (UgTypedObject *pattern : patterns) from.DeleteOwnedObject(pattern);
    to.AddOwnedObjects(patterns);
}
