#include "foundation/registry.h"

#include "foundation/log.h"

#include "lumug/nx_search_file_list.h"

#include <charconv>
#include <cmath>
#include <optional>

namespace QelFmt {

namespace {

// The whole text as a number, blanks around it left aside; nothing when it is none or when the
// type cannot hold it.
template <class Number> std::optional<Number> numberFrom(const std::string &text)
{
    const std::size_t first = text.find_first_not_of(" \t");
    if (first == std::string::npos) return {};
    const char *begin = text.data() + first;
    const char *end = text.data() + text.find_last_not_of(" \t") + 1;
    Number number{};
    std::from_chars_result result{};
    if constexpr (std::is_integral_v<Number>) {
        const bool hexadecimal =
            end - begin > 2 && begin[0] == '0' && (begin[1] == 'x' || begin[1] == 'X');
        if (hexadecimal && begin[2] == '-') return {};
        if (!hexadecimal && *begin == '+' && end - begin > 1 && begin[1] != '-') ++begin;
        result = hexadecimal ? std::from_chars(begin + 2, end, number, 16)
                             : std::from_chars(begin, end, number, 10);
    } else {
        if (*begin == '+' && end - begin > 1 && begin[1] != '-') ++begin;
        result = std::from_chars(begin, end, number);
        if (!std::isfinite(number)) return {};
    }
    if (result.ec != std::errc() || result.ptr != end) return {};
    return number;
}

} // namespace

Registry::Registry(const std::string &name) : m_name(name) { read(); }

void Registry::read()
{
    if (m_name.empty()) return;
    for (const boost::filesystem::path &path : LumUg::NxSearchFileList("config").filePaths(m_name))
        parsePath(path);
}

void Registry::resetTo(const std::string &name)
{
    m_name = name;
    m_modified = false;
    m_sections.clear();
    read();
}

bool Registry::keyExists(const std::string &section, const std::string &key) const
{
    QELFMT_VERBOSE << "Looking for key " << key << " in section " << section;
    return find(section, key) != nullptr;
}

std::vector<std::string> Registry::getKeys(const std::string &section) const
{
    std::vector<std::string> keys;
    const auto found = m_sections.find(section);
    if (found == m_sections.end()) return keys;
    for (const auto &[key, value] : found->second) keys.push_back(key.str());
    return keys;
}

int Registry::readIntEntry(const std::string &section, const std::string &key, int fallback) const
{
    if (!keyExists(section, key)) return fallback;
    return numberFrom<int>(find(section, key)->str()).value_or(fallback);
}

unsigned Registry::readUnsignedEntry(const std::string &section, const std::string &key,
                                     unsigned fallback) const
{
    if (!keyExists(section, key)) return fallback;
    return numberFrom<unsigned>(find(section, key)->str()).value_or(fallback);
}

double Registry::readRealEntry(const std::string &section, const std::string &key,
                               double fallback) const
{
    if (!keyExists(section, key)) return fallback;
    return numberFrom<double>(find(section, key)->str()).value_or(fallback);
}

std::string Registry::readStringEntry(const std::string &section, const std::string &key,
                                      const std::string &fallback) const
{
    if (!keyExists(section, key)) return fallback;
    return find(section, key)->str();
}

const RegString *Registry::find(const std::string &section, const std::string &key) const
{
    const auto entries = m_sections.find(section);
    if (entries == m_sections.end()) return nullptr;
    const auto entry = entries->second.find(key);
    return entry == entries->second.end() ? nullptr : &entry->second;
}

} // namespace QelFmt
