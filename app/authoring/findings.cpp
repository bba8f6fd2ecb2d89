#include "app/authoring/findings.h"

namespace app::authoring {

void Findings::add(const std::string &where, const RecordTree &record, const std::string &slot,
                   const std::string &text)
{
    const auto known = record.origins.find(slot);
    const bool named = known != record.origins.end();
    add(where, {named ? known->second.key : slot, named ? known->second.at : record.origin.at},
        text);
}

void Findings::add(const std::string &where, const Origin &origin, const std::string &text)
{
    Complaint finding{m_file, origin.at, where, origin.key, text};
    // One key may give two slots, and one style the slots of many fields.
    if (origin.at.line == 0) {
        if (!m_all.empty() && toText(m_all.back()) == toText(finding)) return;
    } else if (!m_told.emplace(m_file, origin.at.line, origin.at.column, origin.key, text).second) {
        return;
    }
    m_all.push_back(std::move(finding));
}

} // namespace app::authoring
