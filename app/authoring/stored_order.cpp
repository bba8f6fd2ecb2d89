#include "app/authoring/stored_order.h"

#include <algorithm>
#include <map>

namespace app::authoring {

std::string identityOf(const RecordTree &record)
{
    // Both generations of block locations stand for the same thing.
    const std::string &word = record.kind->word;
    if (word == "block_location" || word == "block_location_v1")
        return "places for " + record.text("format_id");
    if (word == "size_location") return "size " + record.text("size_id");
    if (word == "location") return "place " + record.text("name");
    return word + " " + record.text("id");
}

void keepOrder(std::vector<RecordTree> &records, const std::vector<RecordTree> &old)
{
    std::map<std::string, std::size_t> rank;
    for (std::size_t i = 0; i < old.size(); ++i) rank.try_emplace(identityOf(old[i]), i);
    const auto rankOf = [&](const RecordTree &record) {
        const auto found = rank.find(identityOf(record));
        return found == rank.end() ? old.size() : found->second;
    };
    std::stable_sort(records.begin(), records.end(), [&](const RecordTree &a, const RecordTree &b) {
        return rankOf(a) < rankOf(b);
    });
    for (RecordTree &record : records) {
        if (const std::size_t at = rankOf(record); at < old.size())
            keepOrder(record.children, old[at].children);
    }
}

} // namespace app::authoring
