#include "app/authoring/complaints.h"

#include <fmt/format.h>

namespace app::authoring {

std::string toText(const Complaint &complaint)
{
    if (complaint.line == 0) return fmt::format("{}: {}", complaint.file, complaint.text);
    return fmt::format("{}:{}:{}: {}", complaint.file, complaint.line, complaint.column,
                       complaint.text);
}

namespace {

std::string joined(const std::vector<Complaint> &complaints)
{
    std::string text;
    for (const Complaint &complaint : complaints) {
        if (!text.empty()) text += '\n';
        text += toText(complaint);
    }
    return text;
}

} // namespace

Complaints::Complaints(std::vector<Complaint> complaints)
    : std::runtime_error(joined(complaints)), m_complaints(std::move(complaints))
{}

} // namespace app::authoring
