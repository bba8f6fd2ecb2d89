#include "loader.h"

#include "pack.h"

#include <algorithm>
#include <unordered_map>

namespace host::store {

namespace {

// The loader has given out tags one after the other.
std::size_t placeOf(const std::vector<std::unique_ptr<Object>> &objects, Tag tag)
{
    return tag - objects.front()->tag;
}

// From UDO to linked UDO: a UDO whose inbound links have all been followed is taken out; what can
// never be taken out stands on a cycle.
class CycleCheck {
public:
    explicit CycleCheck(const std::vector<std::unique_ptr<Object>> &objects)
        : m_objects(objects), m_inbound(objects.size(), 0)
    {
        for (const auto &object : objects)
            forEachTarget(*object, [&](std::size_t place) { ++m_inbound[place]; });
    }

    bool passes()
    {
        std::vector<std::size_t> ready;
        for (std::size_t i = 0; i < m_objects.size(); ++i)
            if (!m_inbound[i]) ready.push_back(i);
        std::size_t done = 0;
        while (!ready.empty()) {
            const std::size_t place = ready.back();
            ready.pop_back();
            ++done;
            forEachTarget(*m_objects[place], [&](std::size_t target) {
                if (!--m_inbound[target]) ready.push_back(target);
            });
        }
        return done == m_objects.size();
    }

private:
    template <class Visit> void forEachTarget(const Object &object, Visit &&visit) const
    {
        const Udo *udo = object.as<Udo>();
        if (!udo) return;
        for (const Link &link : udo->links)
            if (link.target) visit(placeOf(m_objects, link.target));
    }

    const std::vector<std::unique_ptr<Object>> &m_objects;
    std::vector<std::uint32_t> m_inbound;
};

} // namespace

void checkLinks(const std::vector<std::unique_ptr<Object>> &objects, std::uint64_t nextSequence)
{
    std::vector<std::uint64_t> sequences;
    for (const auto &object : objects) {
        const Udo *udo = object->as<Udo>();
        if (!udo) continue;
        for (std::size_t i = 0; i < udo->links.size(); ++i) {
            const std::uint64_t sequence = udo->links[i].sequence;
            if (sequence >= nextSequence || (i && sequence <= sequences.back()))
                throw Malformed{"links are out of order"};
            sequences.push_back(sequence);
        }
    }
    std::sort(sequences.begin(), sequences.end());
    if (std::adjacent_find(sequences.begin(), sequences.end()) != sequences.end())
        throw Malformed{"two links have the same sequence number"};
    if (!CycleCheck(objects).passes()) throw Malformed{"links form a cycle"};
}

// An object is in its owner's list once, and no object owns itself, directly or in the end.
void checkOwners(const std::vector<std::unique_ptr<Object>> &objects)
{
    std::size_t listed = 0;
    std::size_t owned = 0;
    std::vector<Tag> all;
    for (const auto &object : objects) {
        if (object->owner) ++owned;
        const Udo *udo = object->as<Udo>();
        if (!udo) continue;
        listed += udo->owned.size();
        all.insert(all.end(), udo->owned.begin(), udo->owned.end());
    }
    std::sort(all.begin(), all.end());
    if (listed != owned || std::adjacent_find(all.begin(), all.end()) != all.end())
        throw Malformed{"owned objects and their owners do not agree"};
    // Chains are followed once each: `clear` holds the places known to lead to a free object.
    std::vector<char> clear(objects.size(), 0);
    std::vector<std::size_t> chain;
    for (std::size_t start = 0; start < objects.size(); ++start) {
        chain.clear();
        for (std::size_t at = start; !clear[at]; at = placeOf(objects, objects[at]->owner)) {
            if (chain.size() > objects.size()) throw Malformed{"objects own each other in a cycle"};
            chain.push_back(at);
            if (!objects[at]->owner) break;
        }
        for (const std::size_t at : chain) clear[at] = 1;
    }
}

} // namespace host::store
