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

// A cascade can be as deep as a part has objects: an object waits here, not on the call stack, for those
// that have to go before it.
struct Session::Inner::Deletion {
    enum class Step { begin, dying, linked, owned, inView, done };

    Object *object = nullptr; // its memory stays until the outermost deletion is over
    Step step = Step::begin;
    std::vector<Tag> below; // to be deleted in this step
    std::size_t next = 0;
    Tag view = 0; // of a sheet
    std::vector<Callback> updated;

    void waitFor(Step now, std::vector<Tag> tags)
    {
        step = now;
        below = std::move(tags);
        next = 0;
    }
};

void Session::Inner::erase(Object &object)
{
    DeletionScope scope{*this};
    std::vector<Deletion> waiting(1);
    waiting.back().object = &object;
    while (!waiting.empty()) {
        Object *first = advance(waiting.back());
        if (first)
            waiting.emplace_back().object = first;
        else
            waiting.pop_back();
    }
}

// Goes on until another object has to go first (that one is answered) or the object is gone or stays.
Object *Session::Inner::advance(Deletion &deletion)
{
    using Step = Deletion::Step;
    Object &object = *deletion.object;
    for (;;) {
        if (Object *first = nextBelow(deletion)) return first;
        // A callback may have closed the part.
        if (deletion.step != Step::begin && deletion.step < Step::inView &&
            object.status == Status::deleted)
            return nullptr;
        switch (deletion.step) {
        case Step::begin:
            if (!beginDeletion(deletion)) return nullptr;
            break;
        case Step::dying:
            if (!object.as<Udo>()) {
                leave(deletion);
                break;
            }
            entry(object.tag)->ending = true;
            deletion.waitFor(Step::linked, linkedByType2(object));
            break;
        case Step::linked:
            for (const Link &link : object.as<Udo>()->links) unindexLink(link);
            object.as<Udo>()->links.clear();
            deletion.waitFor(Step::owned, std::exchange(object.as<Udo>()->owned, {}));
            break;
        case Step::owned:
            leave(deletion);
            break;
        case Step::inView:
            deletion.step = Step::done;
            for (const Callback &update : deletion.updated)
                runUpdateCallback(update.udo, update.link);
            return nullptr;
        case Step::done:
            return nullptr;
        }
    }
}

// The next object that this step deletes; null when they are done.
Object *Session::Inner::nextBelow(Deletion &deletion)
{
    if (deletion.step == Deletion::Step::inView && deletion.next > 0) {
        // A type-2 holder kept it, condemned: its view is going.
        const Tag last = deletion.below[deletion.next - 1];
        Object *kept = last == deletion.view ? nullptr : find(last);
        if (kept) session.setView(*kept, 0);
    }
    while (deletion.next < deletion.below.size()) {
        Object *object = find(deletion.below[deletion.next++]);
        if (!object) continue;
        if (deletion.step == Deletion::Step::owned) {
            object->owner = 0;
            object->part->noteChange(*object);
        }
        return object;
    }
    return nullptr;
}

// False: it is going already, or stays.
bool Session::Inner::beginDeletion(Deletion &deletion)
{
    Object &object = *deletion.object;
    Entry *self = entry(object.tag);
    if (!self || self->going) return false;
    self->going = true;
    Consequences consequences;
    if (!tellHolders(object, consequences)) {
        if (object.status != Status::deleted) self->going = false;
        return false;
    }
    dropInboundLinks(object.tag, false);
    deletion.updated = std::move(consequences.updated);
    deletion.waitFor(Deletion::Step::dying, std::move(consequences.dying));
    return true;
}

std::vector<Tag> Session::Inner::linkedByType2(const Object &udo)
{
    std::vector<Tag> targets;
    for (const Link &link : udo.as<Udo>()->links)
        if (link.type == 2) targets.push_back(link.target);
    return targets;
}

// Nothing hangs below any more: the tag dies. After a sheet nothing can stand in its view.
void Session::Inner::leave(Deletion &deletion)
{
    Object &object = *deletion.object;
    disown(object);
    dropInboundLinks(object.tag, true);
    const Sheet *sheet = object.as<Sheet>();
    deletion.view = sheet ? sheet->view : 0;
    Part &part = *object.part;
    retire(object);
    std::vector<Tag> inside;
    if (const auto found = part.byView.find(deletion.view);
        deletion.view && found != part.byView.end())
        for (const auto &[ordinal, member] : found->second) inside.push_back(member->tag);
    if (deletion.view) inside.push_back(deletion.view);
    deletion.waitFor(Deletion::Step::inView, std::move(inside));
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
    deadObjects.push_back(std::move(entries.find(tag)->object));
    entries.erase(tag);
    for (const auto &listener : session.retirementListeners) listener(tag);
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
