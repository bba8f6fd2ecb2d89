// Reading YAML with complaints instead of exceptions: every key is asked for by name and type, what
// nobody asked for is an unknown key, and reading goes on after each complaint.
#pragma once

#include "app/authoring/complaints.h"
#include "app/authoring/origin.h"

#include <yaml-cpp/yaml.h>

#include <initializer_list>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace app::authoring {

// One definition file while it is read.
struct YamlFile {
    std::string path;
    std::vector<Complaint> complaints;

    void complain(const YAML::Node &node, const std::string &where, const std::string &key,
                  const std::string &text);
    void complain(const YAML::ParserException &broken);
    void complain(const std::string &text) { complaints.push_back({path, {}, "", "", text}); }
};

Mark markOf(const YAML::Node &node);

// A word that stands for a number in the stored record.
struct Word {
    const char *word;
    int code;
};

// One mapping of the file. When it goes out of sight, keys that nobody asked for are complained of.
class Mapping {
public:
    // `what` names the mapping in complaints: "block TITLE".
    Mapping(YamlFile &file, YAML::Node node, std::string what);
    ~Mapping();
    Mapping(const Mapping &) = delete;
    Mapping &operator=(const Mapping &) = delete;

    bool has(const std::string &key);
    YAML::Node node(const std::string &key);                 // undefined when absent
    std::optional<std::string> text(const std::string &key); // `01`, `no`, `1.10` stay text
    std::optional<double> number(const std::string &key);
    std::optional<double> real(const std::string &key); // infinite and no numbers too
    std::optional<int> integer(const std::string &key);
    std::optional<int> word(const std::string &key, std::initializer_list<Word> words);
    std::optional<std::vector<double>> numbers(const std::string &key, std::size_t least,
                                               std::size_t most);
    std::optional<std::vector<std::string>>
    texts(const std::string &key); // one text is a list of one
    // The mapping's own keys in their order, with their values. Asked for, all of them.
    std::vector<std::pair<std::string, YAML::Node>> entries();

    // A key that must be there.
    void require(const std::string &key, const std::string &remedy);
    void complain(const std::string &key, const std::string &text);
    // Where the key stands; the mapping itself when it is absent.
    Origin origin(const std::string &key);
    Origin origin() const { return {"", markOf(m_node)}; }
    const std::string &what() const { return m_what; }
    YamlFile &file() { return m_file; }
    bool wasAsked(const std::string &key) const { return m_asked.contains(key); }
    std::vector<std::string> unasked() const;        // keys nobody has asked for yet
    bool holdsMapping(const std::string &key) const; // without asking for it
    void forgive(const std::string &key) { m_asked.insert(key); }

private:
    YamlFile &m_file;
    const YAML::Node m_node;
    std::string m_what;
    std::set<std::string> m_asked;
};

std::optional<double> asNumber(const YAML::Node &node);

// Pattern files are named after formats, sizes and blocks.
void requireFileName(YamlFile &file, Mark at, const std::string &where, const std::string &id);

} // namespace app::authoring
