#include "masters.h"

#include <unordered_set>

namespace host::store {

namespace {

// The row as stored, without its id, as one text.
std::string contentOf(Encoder &encoder, const PatternMaster &master)
{
    const MasterRow row = encoder.row(0, master);
    std::string content;
    for (const std::string_view text : {row.fileName, row.fonts, row.texts, row.shapes}) {
        content.append(std::to_string(text.size())).append(":");
        content.append(text);
    }
    return content.append(std::to_string(row.units));
}

// Every pattern's master once, in order of first use.
std::vector<std::shared_ptr<const PatternMaster>> usedMasters(const Part &part)
{
    std::vector<std::shared_ptr<const PatternMaster>> used;
    std::unordered_set<const PatternMaster *> seen;
    const auto patterns = part.byKind.find(Body(Pattern{}).index());
    if (patterns == part.byKind.end()) return used;
    for (const auto &[ordinal, object] : patterns->second) {
        const auto &master = object->as<Pattern>()->master;
        if (master && seen.insert(master.get()).second) used.push_back(master);
    }
    return used;
}

} // namespace

StoredMasters mastersOf(const Part &part) { return mastersOf(part, {}); }

StoredMasters mastersOf(const Part &part, const MastersById &stored)
{
    StoredMasters result;
    Encoder encoder(part, result.ids);
    std::unordered_map<const PatternMaster *, std::int64_t> known;
    for (const auto &[id, master] : stored) known[master.get()] = id;
    std::map<std::string, std::int64_t> idByContent; // made when a master is met that is not known
    std::int64_t last = stored.empty() ? 0 : stored.rbegin()->first;
    const auto idOf = [&](const PatternMaster &master) {
        if (const auto found = known.find(&master); found != known.end()) return found->second;
        if (idByContent.empty())
            for (const auto &[id, other] : stored)
                idByContent.emplace(contentOf(encoder, *other), id);
        const auto [place, isNew] = idByContent.try_emplace(contentOf(encoder, master), last + 1);
        if (isNew) ++last;
        return place->second;
    };
    for (const auto &master : usedMasters(part)) {
        const std::int64_t id = idOf(*master);
        result.ids[master.get()] = id;
        const auto before = stored.find(id);
        result.byId.emplace(id, before == stored.end() ? master : before->second);
    }
    return result;
}

} // namespace host::store
