#include "texts.h"

#include "pack.h"

#include <algorithm>
#include <charconv>
#include <limits>

namespace host::store {

// --- lines ----------------------------------------------------------------------------------

void appendLine(std::string &out, std::string_view text)
{
    static constexpr std::string_view kSpecial{"\n\\\0", 3};
    for (std::size_t at; (at = text.find_first_of(kSpecial)) != text.npos;) {
        out.append(text.substr(0, at));
        out += '\\';
        out += text[at] == '\n' ? 'n' : text[at] == '\0' ? '0' : '\\';
        text.remove_prefix(at + 1);
    }
    out.append(text);
    out += '\n';
}

std::size_t unescape(char *line, std::size_t size)
{
    char *to = line;
    for (const char *at = line, *const end = line + size; at != end; ++at) {
        if (*at != '\\') {
            *to++ = *at;
            continue;
        }
        const char code = ++at != end ? *at : ' ';
        if (code != 'n' && code != '0' && code != '\\') throw Malformed{"a text is malformed"};
        *to++ = code == 'n' ? '\n' : code == '0' ? '\0' : '\\';
    }
    return static_cast<std::size_t>(to - line);
}

std::vector<std::string> splitLines(std::string_view stored)
{
    std::vector<std::string> lines;
    if (stored.empty()) return lines;
    if (stored.back() != '\n') throw Malformed{"the last text is cut off"};
    lines.reserve(static_cast<std::size_t>(std::count(stored.begin(), stored.end(), '\n')));
    const bool escapes = stored.find('\\') != stored.npos;
    while (!stored.empty()) {
        const std::size_t end = stored.find('\n');
        const std::string_view line = stored.substr(0, end);
        std::string &text = lines.emplace_back(line);
        if (escapes) text.resize(unescape(text.data(), text.size()));
        stored.remove_prefix(end + 1);
    }
    return lines;
}

// --- numbers and links ------------------------------------------------------------------------

namespace {
template <class T> void appendNumber(std::string &out, T number)
{
    char digits[24];
    out.append(digits, std::to_chars(digits, digits + sizeof digits, number).ptr);
}

// A reader of exactly what is written here: no blanks, no other spellings.
class Scanner {
public:
    explicit Scanner(std::string_view in) : m_at(in.data()), m_end(in.data() + in.size()) {}

    bool took(char c)
    {
        if (m_at == m_end || *m_at != c) return false;
        ++m_at;
        return true;
    }
    void take(char c)
    {
        if (!took(c)) throw Malformed{"a list is malformed"};
    }
    template <class T> T number()
    {
        T value{};
        const auto [next, error] = std::from_chars(m_at, m_end, value);
        if (error != std::errc{}) throw Malformed{"a number in a list is malformed"};
        m_at = next;
        return value;
    }
    void end() const
    {
        if (m_at != m_end) throw Malformed{"a list is malformed"};
    }

private:
    const char *m_at;
    const char *m_end;
};
} // namespace

void appendNumbers(std::string &out, const std::vector<std::uint64_t> &numbers)
{
    char before = '[';
    for (const std::uint64_t number : numbers) {
        out += before;
        appendNumber(out, number);
        before = ',';
    }
    if (!numbers.empty()) out += ']';
}

std::vector<std::uint64_t> parseNumbers(std::string_view stored)
{
    std::vector<std::uint64_t> numbers;
    parseNumbers(stored, numbers);
    return numbers;
}

void parseNumbers(std::string_view stored, std::vector<std::uint64_t> &numbers)
{
    numbers.clear();
    if (stored.empty()) return;
    Scanner in(stored);
    in.take('[');
    do numbers.push_back(in.number<std::uint64_t>());
    while (in.took(','));
    in.take(']');
    in.end();
}

void appendLinks(std::string &out, const std::vector<StoredLink> &links)
{
    char before = '[';
    for (const StoredLink &link : links) {
        out += before;
        out += '[';
        appendNumber(out, link.type), out += ',';
        appendNumber(out, link.target), out += ',';
        appendNumber(out, link.status), out += ',';
        appendNumber(out, link.sequence), out += ']';
        before = ',';
    }
    if (!links.empty()) out += ']';
}

std::vector<StoredLink> parseLinks(std::string_view stored)
{
    std::vector<StoredLink> links;
    parseLinks(stored, links);
    return links;
}

void parseLinks(std::string_view stored, std::vector<StoredLink> &links)
{
    links.clear();
    if (stored.empty()) return;
    constexpr std::size_t kShortest = 10; // "[1,2,0,3],"
    links.reserve(std::min(static_cast<std::size_t>(std::count(stored.begin(), stored.end(), ']')),
                           stored.size() / kShortest + 1));
    Scanner in(stored);
    in.take('[');
    do {
        StoredLink link{};
        in.take('[');
        link.type = in.number<int>(), in.take(',');
        link.target = in.number<std::uint64_t>(), in.take(',');
        link.status = in.number<unsigned>(), in.take(',');
        link.sequence = in.number<std::uint64_t>(), in.take(']');
        links.push_back(link);
    } while (in.took(','));
    in.take(']');
    in.end();
}

// --- references -------------------------------------------------------------------------------

namespace {
constexpr std::string_view kReference = "<W!";

struct Place {
    std::size_t begin;
    std::size_t end;
};

// The digits between `at` and an "@"; blanks and a plus before them are read over, as scanf does.
bool findNumber(std::string_view text, std::size_t at, Place &digits)
{
    digits.begin = text.find_first_not_of(" \t\n\v\f\r", at);
    if (digits.begin == text.npos) return false;
    if (text[digits.begin] == '+') ++digits.begin;
    digits.end = text.find_first_not_of("0123456789", digits.begin);
    return digits.end != text.npos && digits.end > digits.begin && text[digits.end] == '@';
}

std::uint64_t numberIn(std::string_view digits)
{
    std::uint64_t number = 0;
    const auto result = std::from_chars(digits.data(), digits.data() + digits.size(), number);
    return result.ec == std::errc{} ? number : std::numeric_limits<std::uint64_t>::max();
}
} // namespace

bool hasReference(std::string_view text) { return text.find(kReference) != text.npos; }

std::string withReferences(std::string_view text,
                           const std::function<std::uint64_t(std::uint64_t)> &translate)
{
    std::string result;
    for (std::size_t at; (at = text.find_first_of("$<")) != text.npos;) {
        Place digits{};
        std::size_t taken = std::min(at + (text[at] == '$' ? 2 : 1), text.size());
        const bool isReference = text.substr(at).starts_with(kReference) &&
                                 findNumber(text, at + kReference.size(), digits);
        if (isReference) taken = digits.begin;
        result.append(text.substr(0, taken));
        if (isReference) {
            taken = digits.end;
            appendNumber(result,
                         translate(numberIn(text.substr(digits.begin, taken - digits.begin))));
        }
        text.remove_prefix(taken);
    }
    return result.append(text);
}

} // namespace host::store
