#include "app/fleet/wide_pattern.h"

#include <boost/locale/encoding_utf.hpp>
#include <fmt/format.h>

#include <stdexcept>
#include <string_view>

namespace app::fleet {

namespace {

using boost::locale::conv::utf_to_utf; // bytes that are no UTF-8 are left out

// Boost's own texts name the wrong bracket.
std::string reasonOf(const boost::regex_error &wrong)
{
    switch (wrong.code()) {
    case boost::regex_constants::error_paren:
    case boost::regex_constants::error_brack:
        return "a ( or [ that is not closed, or a ) that was not opened";
    case boost::regex_constants::error_brace:
    case boost::regex_constants::error_badbrace:
        return "{ } has to hold a count, as in {2} or {2,4}";
    case boost::regex_constants::error_badrepeat:
        return "there is nothing before *, +, ? or { that could be repeated";
    default:
        return wrong.what();
    }
}

boost::wregex compiled(const std::string &pattern)
{
    try {
        return boost::wregex(utf_to_utf<wchar_t>(pattern), boost::regex::perl);
    } catch (const boost::regex_error &wrong) {
        throw std::invalid_argument(
            fmt::format("\"{}\" is no regular expression: {}", pattern, reasonOf(wrong)));
    }
}

} // namespace

WidePattern::WidePattern(const std::string &pattern) : m_pattern(compiled(pattern)) {}

std::optional<std::vector<std::string>> WidePattern::match(const std::string &text) const
{
    const std::wstring wide = utf_to_utf<wchar_t>(text);
    boost::wsmatch found;
    const auto flags = boost::match_default | boost::match_not_dot_newline; // as in Perl
    try {
        if (!boost::regex_match(wide, found, m_pattern, flags)) return {};
    } catch (const std::runtime_error &) { // the engine gives up where it would take for ever
        throw PatternTooComplex();
    }
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
