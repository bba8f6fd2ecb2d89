// Lists as text that the stock sqlite3 shell shows: lines, numbers, links; and the references to
// objects inside note texts.
#pragma once

#include "model/object.h"

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace host::store {

// One line a text, each ended by a line feed. A line feed inside a text is stored as \n, a zero byte
// as \0, a backslash as \\; every other byte as it is, UTF-8 or not. No texts: no bytes.
void appendLine(std::string &out, std::string_view text);
std::vector<std::string> splitLines(std::string_view stored); // throws Malformed
// One line without its end, as it was before, in place. Result: its size, which is no greater. Throws
// Malformed.
std::size_t unescape(char *line, std::size_t size);

// "[4,17,18]"; nothing when empty.
void appendNumbers(std::string &out, const std::vector<std::uint64_t> &numbers);
std::vector<std::uint64_t> parseNumbers(std::string_view stored); // throws Malformed
void parseNumbers(std::string_view stored,
                  std::vector<std::uint64_t> &numbers); // instead of what is there

// "[[type,target,status,sequence],...]", the target as an ordinal; nothing when empty.
struct StoredLink {
    int type;
    std::uint64_t target;
    unsigned status;
    std::uint64_t sequence;
};
void appendLinks(std::string &out, const std::vector<StoredLink> &links);
std::vector<StoredLink> parseLinks(std::string_view stored); // throws Malformed
void parseLinks(std::string_view stored, std::vector<StoredLink> &links);

// The text with the number in each "<W!number@" replaced by what `translate` makes of it. A "$" makes
// the next character literal: "$<W!5@" is no reference.
// Stored as the number where a text refers to the part itself; 0 is what is not in the part.
inline constexpr std::uint64_t kPartItself = ~std::uint64_t{0};
bool hasReference(std::string_view text);
std::string withReferences(std::string_view text,
                           const std::function<std::uint64_t(std::uint64_t)> &translate);

} // namespace host::store
