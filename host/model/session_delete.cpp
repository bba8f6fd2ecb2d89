// Deletion. The order of the steps, and what each link type means for the two sides, is what the
// records on a sheet rely on: see host/README.md.
#include "session_inner.h"

#include "calls.h"
#include "uf.h"
#include "uf_obj.h"

#include <algorithm>
#include <utility>

namespace host {

void Session::remove(Tag tag)
{
    Object &object = require(tag);
    const bool refused =
        object.owner || object.as<Sheet>() || object.as<View>() || object.as<FontTable>();
    host::require(!refused, UF_OBJ_err_cannot_delete);
    m_inner->erase(object);
}

void Session::removeSheet(Tag tag)
{
    Object &object = require(tag);
    host::require(object.as<Sheet>() != nullptr, UF_err_wrong_class);
    m_inner->erase(object);
}

Session::Inner::DeletionScope::~DeletionScope()
{
    if (--m_inner.deletionDepth > 0) return;
    m_inner.deadObjects.clear();
    m_inner.deadParts.clear();
}

void Session::Inner::erase(Object &object)
{
    const Tag tag = object.tag;
    Entry *self = entry(tag);
    if (!self || self->going) return;
    DeletionScope scope{*this};
    self->going = true;

    Consequences consequences;
    if (!tellHolders(object, consequences)) {
        if (object.status != Status::deleted) self->going = false;
        return;
    }
    dropInboundLinks(tag, false);
    for (const Tag udo : consequences.dying)
        if (Object *dying = find(udo)) erase(*dying);
    if (object.status == Status::deleted) return; // a callback closed the part
    if (object.as<Udo>()) {
        self->ending = true;
        endUdo(object);
    }
    disown(object);
    dropInboundLinks(tag, true);
    const Sheet *sheet = object.as<Sheet>();
    const Tag view = sheet ? sheet->view : 0;
    retire(object);
    if (view) eraseViewContents(view);
    for (const Callback &update : consequences.updated) runUpdateCallback(update.udo, update.link);
}

// Asks the UDOs that link here, in the order in which the links were made. A type-2 holder that
// lives keeps the object: it stays in the data model, condemned, and nothing more happens.
bool Session::Inner::tellHolders(Object &object, Consequences &consequences)
{
    for (const Inbound &inbound : session.linksTo(object.tag)) {
        const Entry *holder = entry(inbound.udo);
        const Link *link = linkOf(inbound.udo, inbound.link.sequence);
        if (!holder || holder->going || !link || link->target != object.tag) continue;
        const Link told = *link;
        switch (told.type) {
        case 1:
            consequences.dying.push_back(inbound.udo);
            break;
        case 2:
            runDeleteCallback(inbound.udo, told);
            if (object.status == Status::deleted) return false;
            // The callback may have let the object go.
            link = linkOf(inbound.udo, told.sequence);
            if (!link || link->target != object.tag || link->type != 2) break;
            if (object.status != Status::condemned) record("condemned", object);
            object.status = Status::condemned;
            if (object.part->currentSheet == object.tag) object.part->currentSheet = 0;
            object.part->modified = true;
            object.part->noteChange(object);
            return false;
        case 3:
            consequences.updated.push_back({inbound.udo, told});
            runDeleteCallback(inbound.udo, told);
            if (object.status == Status::deleted) return false;
            break;
        default:
            break;
        }
    }
    return true;
}

// Before the cascade: types 3 and 4. At the end: whatever a UDO that stays (condemned itself, say)
// still holds, so that no live object names a dead one.
void Session::Inner::dropInboundLinks(Tag target, bool ofLivingHoldersToo)
{
    for (const Inbound &inbound : session.linksTo(target)) {
        const Entry *holder = entry(inbound.udo);
        if (!holder || holder->ending) continue;
        if (ofLivingHoldersToo || inbound.link.type >= 3)
            removeInbound(inbound.udo, inbound.link.sequence);
    }
}

void Session::Inner::removeInbound(Tag udo, std::uint64_t sequence)
{
    Object &holder = *find(udo);
    const Link *link = linkOf(udo, sequence);
    if (!link) return;
    session.changing(holder, "links");
    unindexLink(*link);
    auto &links = holder.as<Udo>()->links;
    links.erase(links.begin() + (link - links.data()));
}

// What hangs below a dying UDO: first what it links by type 2, then what it owns.
void Session::Inner::endUdo(Object &object)
{
    const std::vector<Link> links = object.as<Udo>()->links;
    for (const Link &link : links) {
        if (link.type != 2) continue;
        if (Object *child = find(link.target)) erase(*child);
    }
    for (const Link &link : object.as<Udo>()->links) unindexLink(link);
    object.as<Udo>()->links.clear();
    const std::vector<Tag> owned = std::exchange(object.as<Udo>()->owned, {});
    for (const Tag tag : owned) {
        Object *child = find(tag);
        if (!child) continue;
        child->owner = 0;
        child->part->noteChange(*child);
        erase(*child);
    }
}

// An owned object that a cascade takes leaves its owner's list.
void Session::Inner::disown(Object &object)
{
    Object *owner = find(object.owner);
    if (!owner) return;
    auto &owned = owner->as<Udo>()->owned;
    const auto place = std::find(owned.begin(), owned.end(), object.tag);
    if (place != owned.end()) owned.erase(place);
    owner->part->noteChange(*owner);
    object.owner = 0;
}

void Session::Inner::retire(Object &object)
{
    const Tag tag = object.tag;
    record("deleted", object);
    object.part->modified = true;
    object.part->noteRemoval(object);
    if (object.part->currentSheet == tag) object.part->currentSheet = 0;
    unindex(object);
    object.status = Status::deleted;
    session.highlighted.erase(tag);
    outOfDateTargets.erase(tag);
    const auto place = entries.find(tag);
    deadObjects.push_back(std::move(place->second.object));
    entries.erase(place);
    for (const auto &listener : session.retirementListeners) listener(tag);
}

// After a sheet: nothing can stand in its view any more.
void Session::Inner::eraseViewContents(Tag view)
{
    Object *viewObject = find(view);
    if (!viewObject) return;
    std::vector<Tag> inside;
    if (const auto found = viewObject->part->byView.find(view);
        found != viewObject->part->byView.end())
        for (const auto &[ordinal, object] : found->second) inside.push_back(object->tag);
    for (const Tag tag : inside) {
        if (Object *object = find(tag)) erase(*object);
        if (Object *condemned = find(tag)) session.setView(*condemned, 0);
    }
    erase(*viewObject);
}

void Session::Inner::runDeleteCallback(Tag udo, const Link &link)
{
    const Object *holder = find(udo);
    if (!holder) return;
    const auto callback = session.classRecord(holder->as<Udo>()->classId).onDelete;
    UF_UDOBJ_link_t told{link.type, link.target, link.status};
    if (callback) callback(udo, &told);
}

void Session::Inner::runUpdateCallback(Tag udo, const Link &link)
{
    const Object *holder = find(udo);
    if (!holder || holder->status != Status::alive) return;
    const auto callback = session.classRecord(holder->as<Udo>()->classId).onUpdate;
    UF_UDOBJ_link_t cause{link.type, link.target, 1};
    if (callback) callback(udo, &cause);
}

} // namespace host
