// What is wrong with a definition text: everything found in one run, each with its place.
#pragma once

#include <stdexcept>
#include <string>
#include <vector>

namespace app::authoring {

struct Complaint {
    std::string file;
    int line = 0; // from 1; 0 when the place is the whole file
    int column = 0;
    std::string text; // names the key and what would be right
};

std::string toText(const Complaint &complaint); // "file:line:column: text"

class Complaints : public std::runtime_error {
public:
    explicit Complaints(std::vector<Complaint> complaints);
    const std::vector<Complaint> &all() const { return m_complaints; }

private:
    std::vector<Complaint> m_complaints;
};

} // namespace app::authoring
