// Regular expressions that count characters, not bytes.
#pragma once

#include <boost/regex.hpp>

#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

namespace app::fleet {

class PatternTooComplex : public std::runtime_error {
public:
    PatternTooComplex() : std::runtime_error("the pattern takes far too long") {}
};

class WidePattern {
public:
    // Perl's syntax; std::invalid_argument says what is wrong with it.
    explicit WidePattern(const std::string &pattern);

    // The groups of a text in UTF-8 that matches as a whole, the first one being the text itself. A
    // match that takes far too long is PatternTooComplex.
    std::optional<std::vector<std::string>> match(const std::string &text) const;
    std::size_t groups() const { return m_pattern.mark_count(); } // without the whole

private:
    boost::wregex m_pattern;
};

std::string escapedForPattern(const std::string &text);

} // namespace app::fleet
