// Mappings of YAML on one line: "{cell: [0, 0, 40, 27], value: Drawing}".
#pragma once

#include <string>
#include <utility>
#include <vector>

namespace app::authoring {

class FlowMapping {
public:
    void put(const std::string &key, const std::string &value); // value as YAML
    void putText(const std::string &key, const std::string &text);
    void putNumber(const std::string &key, double number);
    bool has(const std::string &key) const;
    bool empty() const { return m_entries.empty(); }
    std::string text() const;
    const std::vector<std::pair<std::string, std::string>> &entries() const { return m_entries; }

private:
    std::vector<std::pair<std::string, std::string>> m_entries;
};

std::string flowList(const std::vector<double> &numbers);
std::string flowList(const std::vector<std::string> &texts);

} // namespace app::authoring
