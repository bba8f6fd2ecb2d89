#include "app/authoring/complaints.h"

#include <fmt/format.h>

namespace app::authoring {

std::string toText(const Complaint &complaint)
{
    std::string text = complaint.file;
    if (complaint.at.line != 0)
        text += fmt::format(":{}:{}", complaint.at.line, complaint.at.column);
    for (const std::string &more : {complaint.where, complaint.key, complaint.text})
        if (!more.empty()) text += ": " + more;
    return text;
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
