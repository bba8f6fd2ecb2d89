#include "app/authoring/yaml_reader.h"

#include "app/authoring/scalars.h"
#include "app/authoring/suggestion.h"
#include "app/authoring/yaml_errors.h"
#include "app/text_file.h"

#include <fmt/format.h>

#include <cmath>

namespace app::authoring {

Mark markOf(const YAML::Node &node)
{
    if (!node.IsDefined() || node.Mark().is_null()) return {};
    return {node.Mark().line + 1, node.Mark().column + 1};
}

void YamlFile::complain(const YAML::Node &node, const std::string &where, const std::string &key,
                        const std::string &text)
{
    complaints.push_back({path, markOf(node), where, key, text});
}

void YamlFile::complain(const YAML::ParserException &broken)
{
    std::string why;
    complaints.push_back(syntaxComplaint(path, app::readTextFile(path, why).value_or(""), broken));
}

std::optional<double> asNumber(const YAML::Node &node)
{
    if (!node.IsDefined()) return {};
    const auto value = realOf(node);
    return value && std::isfinite(*value) ? value : std::nullopt;
}

namespace {

bool isDigits(const std::string &text)
{
    return !text.empty() && text.find_first_not_of("0123456789") == std::string::npos;
}

// Of "3,5".
std::string pointInstead(const YAML::Node &node)
{
    const std::string text = node.IsScalar() ? node.Scalar() : "";
    const std::size_t comma = text.find(',');
    if (comma == std::string::npos || !isDigits(text.substr(comma + 1))) return "";
    return fmt::format(": write {}.{}, with a point", text.substr(0, comma),
                       text.substr(comma + 1));
}

} // namespace

Mapping::Mapping(YamlFile &file, YAML::Node node, std::string what)
    : m_file(file), m_node(std::move(node)), m_what(std::move(what))
{
    if (m_node.IsDefined() && !m_node.IsMap() && !m_node.IsNull())
        m_file.complain(m_node, m_what, "", "must be a mapping of keys to values");
    if (!m_node.IsDefined() || !m_node.IsMap()) return;
    std::set<std::string> seen;
    for (const auto &entry : m_node) {
        if (!entry.first.IsScalar())
            m_file.complain(entry.first, m_what, "", "a key must be a text");
        else if (!seen.insert(entry.first.Scalar()).second)
            m_file.complain(entry.first, m_what, entry.first.Scalar(),
                            "stands here twice: remove one of them");
    }
}

Mapping::~Mapping()
{
    if (!m_node.IsMap()) return;
    std::set<std::string> reported; // a key that stands here twice has been complained of
    for (const auto &entry : m_node) {
        const std::string key = entry.first.IsScalar() ? entry.first.Scalar() : "";
        if (key.empty() || m_asked.contains(key) || !reported.insert(key).second) continue;
        // In braces a comma ends the value: {size: 3,5}.
        m_file.complain(entry.first, m_what, key,
                        isDigits(key) && entry.second.IsNull()
                            ? "is half a number behind a comma: write the number with a point"
                            : "unknown key" + suggestionFor(key, m_asked));
    }
}

bool Mapping::has(const std::string &key)
{
    m_asked.insert(key);
    return m_node.IsMap() && m_node[key].IsDefined();
}

YAML::Node Mapping::node(const std::string &key)
{
    return has(key) ? m_node[key] : YAML::Node(YAML::NodeType::Undefined);
}

void Mapping::complain(const std::string &key, const std::string &text)
{
    m_file.complain(has(key) ? m_node[key] : m_node, m_what, key, text);
}

Origin Mapping::origin(const std::string &key)
{
    return {key, markOf(has(key) ? m_node[key] : m_node)};
}

void Mapping::require(const std::string &key, const std::string &remedy)
{
    if (!has(key)) m_file.complain(m_node, m_what, key, "is missing: " + remedy);
}

std::optional<std::string> Mapping::text(const std::string &key)
{
    if (!has(key)) return {};
    const auto value = textOf(m_node[key]);
    if (!value) complain(key, "must be a text");
    return value;
}

std::optional<double> Mapping::number(const std::string &key)
{
    if (!has(key)) return {};
    const auto value = asNumber(m_node[key]);
    if (!value) complain(key, "must be a number" + pointInstead(m_node[key]));
    return value;
}

std::optional<double> Mapping::real(const std::string &key)
{
    if (!has(key)) return {};
    const auto value = realOf(m_node[key]);
    if (!value) complain(key, "must be a number");
    return value;
}

std::optional<int> Mapping::integer(const std::string &key)
{
    if (!has(key)) return {};
    const auto value = integerOf(m_node[key]);
    if (!value) complain(key, "must be a whole number");
    return value;
}

std::optional<int> Mapping::word(const std::string &key, std::initializer_list<Word> words)
{
    const auto value = text(key);
    if (!value) return {};
    std::string choices;
    for (const Word &word : words) {
        if (*value == word.word) return word.code;
        choices += choices.empty() ? word.word : std::string(", ") + word.word;
    }
    complain(key, fmt::format("\"{}\" is none of {}", *value, choices));
    return {};
}

std::optional<std::vector<double>> Mapping::numbers(const std::string &key, std::size_t least,
                                                    std::size_t most)
{
    if (!has(key)) return {};
    const YAML::Node list = m_node[key];
    std::vector<double> values;
    if (list.IsScalar() && least <= 1) {
        if (const auto value = asNumber(list)) return std::vector{*value};
    } else if (list.IsSequence() && list.size() >= least && list.size() <= most) {
        for (const YAML::Node &item : list)
            if (const auto value = asNumber(item)) values.push_back(*value);
        if (values.size() == list.size()) return values;
    }
    complain(key, least == most ? fmt::format("must be a list of {} numbers", least)
                                : fmt::format("must be {} to {} numbers", least, most));
    return {};
}

std::optional<std::vector<std::string>> Mapping::texts(const std::string &key)
{
    if (!has(key)) return {};
    const YAML::Node list = m_node[key];
    if (!list.IsSequence()) {
        const auto one = text(key);
        return one ? std::optional(std::vector{*one}) : std::nullopt;
    }
    std::vector<std::string> values;
    for (const YAML::Node &item : list) {
        if (const auto value = textOf(item))
            values.push_back(*value);
        else
            complain(key, "must be a list of texts");
    }
    return values;
}

std::vector<std::pair<std::string, YAML::Node>> Mapping::entries()
{
    std::vector<std::pair<std::string, YAML::Node>> found;
    if (!m_node.IsMap()) return found;
    for (const auto &entry : m_node) {
        m_asked.insert(entry.first.Scalar());
        found.emplace_back(entry.first.Scalar(), entry.second);
    }
    return found;
}

std::vector<std::string> Mapping::unasked() const
{
    std::vector<std::string> keys;
    if (!m_node.IsMap()) return keys;
    for (const auto &entry : m_node) {
        if (!m_asked.contains(entry.first.Scalar())) keys.push_back(entry.first.Scalar());
    }
    return keys;
}

bool Mapping::holdsMapping(const std::string &key) const
{
    return m_node.IsMap() && m_node[key].IsDefined() && m_node[key].IsMap();
}

void requireFileName(YamlFile &file, Mark at, const std::string &where, const std::string &id)
{
    if (id.empty())
        file.complaints.push_back({file.path, at, where, "", "its id is missing: give it one"});
    else if (id.find('/') != std::string::npos)
        file.complaints.push_back({file.path, at, where, "",
                                   "its id holds a \"/\", and files are named after it: use a "
                                   "\"-\" instead"});
}

} // namespace app::authoring
