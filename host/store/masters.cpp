#include "masters.h"

#include "checksum.h"

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

} // namespace

StoredMasters mastersOf(const Part &part)
{
    StoredMasters result;
    const auto patterns = part.byKind.find(Body(Pattern{}).index());
    if (patterns == part.byKind.end()) return result;
    Encoder encoder(part, result.ids);
    std::map<std::string, std::int64_t> idByContent;
    for (const auto &[ordinal, object] : patterns->second) {
        const PatternMaster *master = object->as<Pattern>()->master.get();
        if (!master || result.ids.count(master)) continue;
        const auto next = static_cast<std::int64_t>(idByContent.size()) + 1;
        const auto [place, isNew] = idByContent.try_emplace(contentOf(encoder, *master), next);
        result.ids[master] = place->second;
        if (isNew) result.byId[next] = master;
    }
    return result;
}

} // namespace host::store
