#include "app/authoring/missing_ids.h"

namespace app::authoring {

std::vector<const RecordTree *> withoutId(const std::vector<RecordTree> &records)
{
    std::vector<const RecordTree *> found;
    for (const RecordTree &record : records) {
        const std::string &word = record.kind->word;
        if ((word == "format" || word == "block") && record.text("id").empty())
            found.push_back(&record);
        const auto inside = withoutId(record.children);
        found.insert(found.end(), inside.begin(), inside.end());
    }
    return found;
}

} // namespace app::authoring
