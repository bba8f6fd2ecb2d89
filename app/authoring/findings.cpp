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
    // One key may give two slots.
    if (!m_all.empty() && toText(m_all.back()) == toText(finding)) return;
    m_all.push_back(std::move(finding));
}

} // namespace app::authoring
