// What checks find, each with the place in a text that a slot comes from.
#pragma once

#include "app/authoring/complaints.h"
#include "app/authoring/record.h"

#include <set>
#include <string>
#include <tuple>
#include <vector>

namespace app::authoring {

class Findings {
public:
    void inFile(const std::string &name) { m_file = name; }

    // What is said of one place once is not said of it again, whatever else follows from it.
    // About the slot of a record, by its key of the full form: `key` and place are those that the text
    // has for it.
    void add(const std::string &where, const RecordTree &record, const std::string &slot,
             const std::string &text);
    void add(const std::string &where, const Origin &origin, const std::string &text);
    std::vector<Complaint> take() { return std::move(m_all); }

private:
    std::string m_file;
    std::vector<Complaint> m_all;
    std::set<std::tuple<std::string, int, int, std::string, std::string>> m_told; // places
};

} // namespace app::authoring
