// What is wrong or doubtful about definitions: everything found in one run, each with its place.
#pragma once

#include <stdexcept>
#include <string>
#include <vector>

namespace app::authoring {

// A place in a file; line and column count from 1, 0 when the place is the whole file or a part.
struct Mark {
    int line = 0;
    int column = 0;
};

struct Complaint {
    std::string file;
    Mark at;
    std::string where; // "block TITLE, cell title"; may be empty
    std::string key;   // that is wrong or missing; may be empty
    std::string text;  // what is wrong and what would be right
};

std::string toText(const Complaint &complaint); // "file:line:column: where: key: text"

class Complaints : public std::runtime_error {
public:
    explicit Complaints(std::vector<Complaint> complaints);
    const std::vector<Complaint> &all() const { return m_complaints; }

private:
    std::vector<Complaint> m_complaints;
};

} // namespace app::authoring
