// A text of the settings files: bytes, compared as such.
#pragma once

#include <compare>
#include <string>
#include <utility>

namespace QelFmt {

// Ordered byte by byte without regard to language or case; of two texts that begin alike the
// shorter one is first.
class RegString {
public:
    RegString() = default;
    RegString(std::string text) : m_text(std::move(text)) {}
    RegString(const char *text) : m_text(text) {}

    const std::string &str() const { return m_text; }
    bool empty() const { return m_text.empty(); }

    bool operator==(const RegString &) const = default;
    std::strong_ordering operator<=>(const RegString &other) const
    {
        return m_text.compare(other.m_text) <=> 0; // std::string compares as unsigned bytes
    }

private:
    std::string m_text;
};

} // namespace QelFmt
