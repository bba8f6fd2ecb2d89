// What objects say of each other: owners, links and the references in texts.
#include "draft.h"

#include "schema.h"

#include <algorithm>
#include <unordered_map>

namespace host::store {

namespace {

using Kind = Finding::Kind;

std::string numbered(Ordinal ordinal) { return "object " + std::to_string(ordinal); }

// --- owners ---------------------------------------------------------------------------------------

// Lists keep what is there, says the same and stands in them once.
void mendOwnedLists(Draft &draft)
{
    for (auto &[ordinal, piece] : draft.pieces) {
        std::set<Ordinal> listed;
        std::erase_if(piece.owned, [&, owner = ordinal](Ordinal owned) {
            const Piece *object = draft.find(owned);
            if (object && object->row.owner == static_cast<std::int64_t>(owner) &&
                listed.insert(owned).second)
                return false;
            if (object)
                draft.tell(Kind::damage, owner,
                           "it lists " + draft.name(owned) + " as its own, which does not agree",
                           "the list goes on without it");
            else
                draft.tell(Kind::dangling, owner,
                           "it owns " + numbered(owned) + ", which is not there",
                           "the list goes on without it");
            return true;
        });
    }
}

void mendOwnersOfObjects(Draft &draft)
{
    std::set<Ordinal> listed; // each in the list of its own owner: mendOwnedLists() has seen to it
    for (const auto &[ordinal, piece] : draft.pieces)
        listed.insert(piece.owned.begin(), piece.owned.end());
    for (auto &[ordinal, piece] : draft.pieces) {
        if (!piece.row.owner || listed.count(ordinal)) continue;
        const auto owner = static_cast<Ordinal>(piece.row.owner);
        const Piece *there = draft.find(owner);
        if (!there)
            draft.tell(Kind::dangling, ordinal, "its owner, " + numbered(owner) + ", is not there",
                       "it stands free");
        else
            draft.tell(Kind::damage, ordinal,
                       "its owner, " + draft.name(owner) + ", does not list it", "it stands free");
        piece.row.owner = 0;
    }
}

void cutOwnerCycles(Draft &draft)
{
    std::unordered_map<Ordinal, Ordinal> seenFrom; // where the walk began that passed here
    for (const auto &[start, piece] : draft.pieces) {
        for (Ordinal at = start; at;) {
            const auto [place, isNew] = seenFrom.try_emplace(at, start);
            if (!isNew && place->second != start) break; // known to end well
            Piece &object = *draft.find(at);
            const auto owner = static_cast<Ordinal>(object.row.owner);
            if (!isNew) { // all around
                std::erase(draft.find(owner)->owned, at);
                object.row.owner = 0;
                draft.tell(Kind::damage, at, "objects own each other in a cycle", "it stands free");
                break;
            }
            at = owner;
        }
    }
}

// --- links ------------------------------------------------------------------------------------------

void mendTargets(Draft &draft)
{
    for (auto &[ordinal, piece] : draft.pieces) {
        for (std::size_t i = 0; i < piece.links.size(); ++i) {
            StoredLink &link = piece.links[i];
            if (!link.target) continue;
            const std::string which =
                "link " + std::to_string(i + 1) + ", of type " + std::to_string(link.type) + ", ";
            const Piece *target = draft.find(link.target);
            if (!target)
                draft.tell(Kind::dangling, ordinal,
                           which + "leads to " + numbered(link.target) + ", which is not there",
                           "it leads nowhere");
            else if (target->row.kind == "font_table")
                draft.tell(Kind::damage, ordinal, which + "leads to the font table",
                           "it leads nowhere");
            else
                continue;
            link.target = 0;
            link.status = 0;
        }
    }
}

bool sequencesAreInOrder(const Draft &draft)
{
    std::set<std::uint64_t> all;
    for (const auto &[ordinal, piece] : draft.pieces) {
        std::uint64_t last = 0;
        bool first = true;
        for (const StoredLink &link : piece.links) {
            if ((!first && link.sequence <= last) || !all.insert(link.sequence).second)
                return false;
            last = link.sequence;
            first = false;
        }
    }
    return all.empty() || *all.rbegin() < static_cast<std::uint64_t>(kMostNumbers);
}

// The order within an object holds; over objects it follows the old numbers as far as it can.
void renumberLinks(Draft &draft)
{
    struct Numbered {
        std::uint64_t key;
        StoredLink *link;
    };
    std::vector<Numbered> all;
    for (auto &[ordinal, piece] : draft.pieces) {
        std::uint64_t key = 0;
        for (StoredLink &link : piece.links)
            all.push_back({key = std::max(key, link.sequence), &link});
    }
    std::stable_sort(all.begin(), all.end(),
                     [](const Numbered &a, const Numbered &b) { return a.key < b.key; });
    std::uint64_t next = 1;
    for (const Numbered &numbered : all) numbered.link->sequence = next++;
    draft.part.nextLinkSequence = static_cast<std::int64_t>(next);
}

void mendSequences(Draft &draft)
{
    if (!sequencesAreInOrder(draft)) {
        draft.say(Kind::damage, 0, "links are out of order", "they are numbered anew");
        return renumberLinks(draft);
    }
    std::uint64_t highest = 0;
    for (const auto &[ordinal, piece] : draft.pieces)
        if (!piece.links.empty()) highest = std::max(highest, piece.links.back().sequence);
    const auto next = static_cast<std::int64_t>(highest + 1);
    if (draft.part.nextLinkSequence >= next) return;
    if (draft.partIsSure)
        draft.say(Kind::damage, 0, "there are more links than the part has numbered",
                  "they are counted again");
    draft.part.nextLinkSequence = next;
}

// Links are followed down; one that leads back to an object on the way is cut.
class CycleStep {
public:
    explicit CycleStep(Draft &draft) : m_draft(draft) {}

    void run()
    {
        std::set<Ordinal> below;
        for (const auto &[ordinal, piece] : m_draft.pieces)
            for (const StoredLink &link : piece.links) below.insert(link.target);
        for (const auto &[ordinal, piece] : m_draft.pieces)
            if (!below.count(ordinal)) follow(ordinal);
        for (const auto &[ordinal, piece] : m_draft.pieces) follow(ordinal);
    }

private:
    enum class State { unseen, onTheWay, done };
    struct Step {
        Ordinal ordinal;
        std::size_t link = 0;
    };

    void follow(Ordinal root)
    {
        if (m_states[root] != State::unseen) return;
        std::vector<Step> way{{root}};
        m_states[root] = State::onTheWay;
        while (!way.empty()) {
            auto &links = m_draft.find(way.back().ordinal)->links;
            if (way.back().link == links.size()) {
                m_states[way.back().ordinal] = State::done;
                way.pop_back();
                continue;
            }
            StoredLink &link = links[way.back().link++];
            if (!link.target) continue;
            State &state = m_states[link.target];
            if (state == State::onTheWay) {
                cut(way.back(), link);
            } else if (state == State::unseen) {
                state = State::onTheWay;
                way.push_back({link.target});
            }
        }
    }
    void cut(const Step &at, StoredLink &link)
    {
        m_draft.tell(Kind::damage, at.ordinal,
                     "link " + std::to_string(at.link) + ", of type " + std::to_string(link.type) +
                         ", to " + m_draft.name(link.target) + " closes a cycle",
                     "it leads nowhere");
        link.target = 0;
        link.status = 0;
    }

    Draft &m_draft;
    std::unordered_map<Ordinal, State> m_states;
};

} // namespace

void mendOwners(Draft &draft)
{
    mendOwnedLists(draft);
    mendOwnersOfObjects(draft);
    cutOwnerCycles(draft);
}

void mendLinks(Draft &draft)
{
    mendTargets(draft);
    mendSequences(draft);
    CycleStep(draft).run();
}

// A reference to what is not there is read as one to nothing. It is a loss where the object was lost; one
// to an object that was deleted is as it was.
void mendTexts(Draft &draft)
{
    const auto look = [&](std::string_view texts, Ordinal ordinal, const std::string &name) {
        if (!hasReference(texts)) return;
        withReferences(texts, [&](Ordinal target) {
            if (target == kPartItself || (target && draft.find(target))) return target;
            const bool lost = target && (draft.lost.count(target) || draft.leftOut.count(target) ||
                                         draft.lostUnknown);
            draft.say(Kind::dangling, ordinal,
                      name + ": its text refers to " +
                          (lost ? numbered(target) + ", which is not there"
                                : std::string("an object that is gone")),
                      lost ? "the reference shows nothing" : "");
            return target;
        });
    };
    for (const auto &[ordinal, piece] : draft.pieces)
        if (piece.row.kind == "note" || piece.row.kind == "id_symbol")
            look(piece.row.texts, ordinal, draft.name(ordinal));
    for (const auto &[id, master] : draft.masters)
        look(master.texts, 0, "pattern master " + std::to_string(id));
}

} // namespace host::store
