#include "app/fleet/wide_pattern.h"

#include <boost/locale/encoding_utf.hpp>
#include <fmt/format.h>

#include <stdexcept>
#include <string_view>

namespace app::fleet {

namespace {

using boost::locale::conv::utf_to_utf; // bytes that are no UTF-8 are left out

boost::wregex compiled(const std::string &pattern)
{
    try {
        return boost::wregex(utf_to_utf<wchar_t>(pattern), boost::regex::perl);
    } catch (const boost::regex_error &wrong) {
        throw std::invalid_argument(
            fmt::format("\"{}\" is no regular expression: {}", pattern, wrong.what()));
    }
}

} // namespace

WidePattern::WidePattern(const std::string &pattern) : m_pattern(compiled(pattern)) {}

std::optional<std::vector<std::string>> WidePattern::match(const std::string &text) const
{
    const std::wstring wide = utf_to_utf<wchar_t>(text);
    boost::wsmatch found;
    if (!boost::regex_match(wide, found, m_pattern)) return {};
    std::vector<std::string> groups;
    for (const auto &group : found) groups.push_back(utf_to_utf<char>(group.str()));
    return groups;
}

std::string escapedForPattern(const std::string &text)
{
    std::string escaped;
    for (const char c : text) {
        if (std::string_view("\\^$.|?*+()[]{}").find(c) != std::string_view::npos) escaped += '\\';
        escaped += c;
    }
    return escaped;
}

} // namespace app::fleet
