#include "session_inner.h"

#include "calls.h"
#include "uf.h"

#include <algorithm>
#include <unordered_set>
#include <utility>

namespace host {

// --- index --------------------------------------------------------------------------------------

void Session::Inner::indexLink(const Object &udo, const Link &link)
{
    Entry *target = entry(link.target);
    if (!target) return;
    target->inbound.set(link.sequence, udo.tag);
}

void Session::Inner::unindexLink(const Link &link)
{
    Entry *target = entry(link.target);
    if (target) target->inbound.erase(link.sequence);
}

// New links come at the end and replaced ones keep their sequence: the array is in this order.
Link *Session::Inner::linkOf(Tag udo, std::uint64_t sequence)
{
    Object *object = find(udo);
    if (!object) return nullptr;
    auto &links = object->as<Udo>()->links;
    const auto found = std::lower_bound(
        links.begin(), links.end(), sequence,
        [](const Link &link, std::uint64_t wanted) { return link.sequence < wanted; });
    return found == links.end() || found->sequence != sequence ? nullptr : &*found;
}

bool Session::Inner::heldByType2(Tag target)
{
    const auto inbound = session.linksTo(target);
    return std::any_of(inbound.begin(), inbound.end(),
                       [](const Inbound &held) { return held.link.type == 2; });
}

std::vector<Session::Inbound> Session::linksTo(Tag target) const
{
    std::vector<Inbound> result;
    const Inner::Entry *entry = m_inner->entry(target);
    if (!entry) return result;
    result.reserve(entry->inbound.size());
    for (const auto &[sequence, udo] : entry->inbound)
        if (const Link *link = m_inner->linkOf(udo, sequence)) result.push_back({udo, *link});
    return result;
}

// --- making and changing ------------------------------------------------------------------------

// Two searches take turns, one from the target downwards and one from the UDO upwards, so that
// hanging a leaf below a big tree costs as little as putting a new root above one.
bool Session::Inner::reaches(Tag from, Tag to)
{
    if (from == to) return true;
    std::vector<Tag> down{from};
    std::vector<Tag> up{to};
    std::unordered_set<Tag> seenDown{from};
    std::unordered_set<Tag> seenUp{to};
    while (!down.empty() && !up.empty()) {
        const Object *below = find(down.back());
        down.pop_back();
        if (const Udo *udo = below ? below->as<Udo>() : nullptr) {
            for (const Link &link : udo->links) {
                if (!link.target || !seenDown.insert(link.target).second) continue;
                if (link.target == to) return true;
                down.push_back(link.target);
            }
        }
        if (down.empty()) break;
        const Entry *above = entry(up.back());
        up.pop_back();
        if (!above) continue;
        for (const auto &[sequence, udo] : above->inbound) {
            if (!seenUp.insert(udo).second) continue;
            if (udo == from) return true;
            up.push_back(udo);
        }
    }
    return false;
}

void Session::Inner::checkTarget(const Object &udo, int type, Tag target)
{
    host::require(udo.as<Udo>() != nullptr, UF_err_wrong_class);
    host::require(type >= 1 && type <= 4, UF_err_bad_parameter_number_3);
    if (!target) return; // a null link keeps a place
    const Object &linked = session.require(target);
    host::require(linked.part == udo.part, UF_err_other_part);
    host::require(!linked.as<FontTable>(), UF_err_wrong_class);
    host::require(!linked.as<Udo>() || !reaches(target, udo.tag), UF_err_link_cycle);
}

void Session::addLink(Object &udo, int type, Tag target) { addLinks(udo, {Link{type, target}}); }

void Session::addLinks(Object &udo, const std::vector<Link> &links)
{
    for (const Link &link : links) m_inner->checkTarget(udo, link.type, link.target);
    if (links.empty()) return;
    changing(udo, "links");
    for (const Link &asked : links) {
        const Link link{asked.type, asked.target, 0, udo.part->nextLinkSequence++};
        udo.as<Udo>()->links.push_back(link);
        m_inner->indexLink(udo, link);
    }
}

void Session::replaceLinks(Object &udo, std::size_t index, int type, Tag target)
{
    rewriteLinks(udo, index, {Link{type, target}});
}

void Session::rewriteLinks(Object &udo, std::size_t first, const std::vector<Link> &links)
{
    host::require(udo.as<Udo>() != nullptr, UF_err_wrong_class);
    auto &stored = udo.as<Udo>()->links;
    host::require(first <= stored.size() && links.size() <= stored.size() - first,
                  UF_err_count_mismatch);
    const auto unchanged = [&](std::size_t i) {
        const Link &place = stored[first + i];
        return place.type == links[i].type && place.target == links[i].target;
    };
    std::vector<std::size_t> changed;
    for (std::size_t i = 0; i < links.size(); ++i) {
        if (unchanged(i)) continue;
        m_inner->checkTarget(udo, links[i].type, links[i].target);
        changed.push_back(i);
    }
    if (changed.empty()) return;
    changing(udo, "links");
    std::vector<Tag> letGo;
    for (const std::size_t i : changed) {
        Link &place = stored[first + i];
        m_inner->unindexLink(place);
        if (place.type == 2) letGo.push_back(place.target);
        place = {links[i].type, links[i].target, 0, place.sequence};
        m_inner->indexLink(udo, place);
    }
    for (const Tag target : letGo) m_inner->letGo(target);
}

void Session::removeLinkAt(Object &udo, std::size_t index)
{
    host::require(udo.as<Udo>() != nullptr, UF_err_wrong_class);
    auto &stored = udo.as<Udo>()->links;
    host::require(index < stored.size(), UF_err_no_such_link);
    changing(udo, "links");
    const Link link = stored[index];
    m_inner->unindexLink(link);
    stored.erase(stored.begin() + static_cast<std::ptrdiff_t>(index));
    if (link.type == 2) m_inner->letGo(link.target);
}

void Session::Inner::letGo(Tag target)
{
    Object *object = find(target);
    if (object && object->status == Status::condemned && !heldByType2(target)) erase(*object);
}

// --- owning -------------------------------------------------------------------------------------

void Session::own(Object &udo, const std::vector<Tag> &objects)
{
    host::require(udo.as<Udo>() != nullptr, UF_err_wrong_class);
    std::unordered_set<Tag> seen;
    for (const Tag tag : objects) {
        host::require(tag != 0, UF_err_bad_parameter_number_3);
        const Object &object = require(tag);
        host::require(object.part == udo.part, UF_err_other_part);
        host::require(!object.as<Sheet>() && !object.as<View>() && !object.as<FontTable>(),
                      UF_err_wrong_class);
        host::require(!object.owner && seen.insert(tag).second, UF_err_already_owned);
        for (const Object *above = &udo; above; above = find(above->owner))
            host::require(above->tag != tag, UF_err_link_cycle);
    }
    if (objects.empty()) return;
    changing(udo, "owned objects");
    for (const Tag tag : objects) {
        Object &object = require(tag);
        object.owner = udo.tag;
        object.part->noteChange(object);
        udo.as<Udo>()->owned.push_back(tag);
    }
}

void Session::release(Object &udo, Tag object)
{
    host::require(udo.as<Udo>() != nullptr, UF_err_wrong_class);
    auto &owned = udo.as<Udo>()->owned;
    const auto place = std::find(owned.begin(), owned.end(), object);
    host::require(place != owned.end(), UF_err_no_such_link);
    changing(udo, "owned objects");
    owned.erase(place);
    Object *released = find(object);
    if (!released) return;
    released->owner = 0;
    released->part->noteChange(*released);
}

// --- update -------------------------------------------------------------------------------------

// Types 2 and 4 never hear of changes: their links stay up to date.
void Session::Inner::markOutOfDate(Tag target)
{
    const Entry *changed = entry(target);
    if (!changed) return;
    for (const auto &[sequence, udo] : changed->inbound) {
        Link *link = linkOf(udo, sequence);
        if (!link || (link->type != 1 && link->type != 3)) continue;
        link->status = 1;
        const Object &holder = *find(udo);
        holder.part->noteChange(holder);
        outOfDateTargets.insert(target);
    }
}

void Session::touch(Tag object)
{
    require(object);
    m_inner->markOutOfDate(object);
}

void Session::updatePart(Part &part)
{
    std::map<std::uint64_t, Inner::Callback> due; // in the order in which the links were made
    for (const Tag target : std::exchange(m_inner->outOfDateTargets, {})) {
        const Object *object = find(target);
        if (!object) continue;
        if (object->part != &part) {
            m_inner->outOfDateTargets.insert(target);
            continue;
        }
        for (const Inbound &inbound : linksTo(target))
            if (inbound.link.status) due[inbound.link.sequence] = {inbound.udo, inbound.link};
    }
    Inner::DeletionScope scope{*m_inner};
    for (const auto &[sequence, callback] : due) {
        Link *link = m_inner->linkOf(callback.udo, sequence);
        if (!link || link->target != callback.link.target) continue;
        link->status = 0;
        part.noteChange(*find(callback.udo));
        m_inner->runUpdateCallback(callback.udo, callback.link);
    }
}

} // namespace host
