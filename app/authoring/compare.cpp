#include "app/authoring/compare.h"

#include "app/authoring/record_text.h"
#include "app/authoring/stored_order.h"

#include <fmt/format.h>

#include <map>

namespace app::authoring {

namespace {

using Records = std::vector<RecordTree>;
using Key = std::pair<std::string, int>; // of several with one identity, which

std::string inside(const std::string &where, const RecordTree &record)
{
    return where.empty() ? identityOf(record) : where + ", " + identityOf(record);
}

std::vector<Key> keysOf(const Records &records)
{
    std::vector<Key> keys;
    std::map<std::string, int> count;
    for (const RecordTree &record : records) {
        const std::string identity = identityOf(record);
        keys.emplace_back(identity, count[identity]++);
    }
    return keys;
}

using Places = std::map<Key, std::size_t>;

Places placesOf(const std::vector<Key> &keys)
{
    Places places;
    for (std::size_t i = 0; i < keys.size(); ++i) places[keys[i]] = i;
    return places;
}

class Comparison {
public:
    std::vector<Difference> run(const RecordFile &old, const RecordFile &fresh)
    {
        if (old.units != fresh.units)
            m_found.push_back({"the part", fmt::format("units: {} -> {}", unitsWord(old.units),
                                                       unitsWord(fresh.units))});
        compare(old.records, fresh.records, "");
        return std::move(m_found);
    }

private:
    static const char *unitsWord(int units) { return units == 1 ? "mm" : "in"; }

    void compareKeys(const RecordTree &old, const RecordTree &fresh, const std::string &where)
    {
        if (old.kind != fresh.kind) {
            m_found.push_back(
                {where, fmt::format("kind: {} -> {}", old.kind->word, fresh.kind->word)});
            return;
        }
        const auto before = storedKeys(old), after = storedKeys(fresh);
        const auto valueOf = [](const auto &keys, const std::string &key) {
            for (const auto &[name, value] : keys)
                if (name == key) return value;
            return std::string("not stored");
        };
        for (const auto &[key, value] : before)
            if (const std::string now = valueOf(after, key); now != value)
                m_found.push_back({where, fmt::format("{}: {} -> {}", key, value, now)});
        for (const auto &[key, value] : after)
            if (valueOf(before, key) == "not stored")
                m_found.push_back({where, fmt::format("{}: not stored -> {}", key, value)});
    }

    void compare(const Records &old, const Records &fresh, const std::string &where)
    {
        const auto before = keysOf(old), after = keysOf(fresh);
        const auto oldPlaces = placesOf(before), places = placesOf(after);
        for (std::size_t i = 0; i < old.size(); ++i)
            if (!places.contains(before[i])) m_found.push_back({inside(where, old[i]), "removed"});
        for (std::size_t i = 0; i < fresh.size(); ++i) {
            const std::string here = inside(where, fresh[i]);
            const auto known = oldPlaces.find(after[i]);
            if (known == oldPlaces.end()) {
                m_found.push_back({here, "added"});
                continue;
            }
            const RecordTree &was = old[known->second];
            compareKeys(was, fresh[i], here);
            if (was.kind == fresh[i].kind) compare(was.children, fresh[i].children, here);
        }
        compareOrder(before, after, where);
    }

    // Of the records that both have: what has been added or removed moves nothing.
    void compareOrder(const std::vector<Key> &before, const std::vector<Key> &after,
                      const std::string &where)
    {
        const auto from = placesOf(before), to = placesOf(after);
        const auto common = [](const std::vector<Key> &keys, const Places &others) {
            std::vector<Key> found;
            for (const Key &key : keys)
                if (others.contains(key)) found.push_back(key);
            return found;
        };
        const auto was = common(before, to), is = common(after, from);
        for (std::size_t i = 0; i < is.size(); ++i)
            if (was[i] != is[i])
                m_found.push_back(
                    {where.empty() ? is[i].first : where + ", " + is[i].first,
                     fmt::format("position {} -> {}", from.at(is[i]) + 1, to.at(is[i]) + 1)});
    }

    std::vector<Difference> m_found;
};

} // namespace

std::vector<Difference> differences(const RecordFile &old, const RecordFile &fresh)
{
    return Comparison().run(old, fresh);
}

} // namespace app::authoring
