#include "app/authoring/yaml_errors.h"

#include <fmt/format.h>

#include <algorithm>
#include <optional>
#include <sstream>
#include <vector>

namespace app::authoring {

namespace {

std::vector<std::string> linesOf(const std::string &text)
{
    std::vector<std::string> lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);) lines.push_back(line);
    return lines;
}

std::size_t indentOf(const std::string &line)
{
    const std::size_t first = line.find_first_not_of(" \t");
    return first == std::string::npos ? line.size() : first;
}

bool isBlank(const std::string &line)
{
    return line.find_first_not_of(" \t\r") == std::string::npos || line[indentOf(line)] == '#';
}

// Brackets that a line opens and does not close, outside of quotes and comments; the column of the last.
struct Brackets {
    std::vector<std::pair<char, std::size_t>> open;
    bool quoteOpen = false;
    bool tooMany = false; // one was closed that was not open
};

void follow(const std::string &line, Brackets &state)
{
    char quote = 0;
    for (std::size_t i = 0; i < line.size(); ++i) {
        const char c = line[i];
        if (quote) {
            if (c == '\\' && quote == '"')
                ++i;
            else if (c == quote)
                quote = 0;
        } else if ((c == '"' || c == '\'') &&
                   (i == 0 || std::string(" [{,:").find(line[i - 1]) != std::string::npos)) {
            quote = c;
        } else if (c == '#' && (i == 0 || line[i - 1] == ' ')) {
            break;
        } else if (c == '[' || c == '{') {
            state.open.emplace_back(c, i);
        } else if (c == ']' || c == '}') {
            state.tooMany = state.open.empty();
            if (!state.tooMany) state.open.pop_back();
        }
    }
    state.quoteOpen = quote != 0;
}

// A text without quotes that holds what YAML takes for something of its own, on that line.
std::optional<std::string> neededQuotes(const std::string &line)
{
    const std::size_t colon = line.find(": ");
    if (colon == std::string::npos) return {};
    const std::string value = line.substr(colon + 2);
    const std::size_t first = value.find_first_not_of(' ');
    if (first == std::string::npos) return {};
    if (std::string("\"'{[|>").find(value[first]) == std::string::npos &&
        value.find(": ") != std::string::npos)
        return fmt::format("a text with \": \" needs quotes: {}: \"{}\"",
                           line.substr(indentOf(line), colon - indentOf(line)),
                           value.substr(first));
    if (std::string("@`%").find(value[first]) != std::string::npos)
        return fmt::format("a text that begins with {} needs quotes", value[first]);
    return {};
}

class Diagnosis {
public:
    Diagnosis(const std::string &text, std::size_t line) : m_lines(linesOf(text)), m_line(line) {}

    // Where, and what to do; the parser's line unless the mistake stands before it.
    std::optional<std::pair<std::size_t, std::string>> run()
    {
        if (m_lines.empty()) return {};
        m_line = std::min(m_line, m_lines.size() - 1);
        if (const auto found = tab()) return found;
        if (const auto found = bracket()) return found;
        for (const std::size_t line : {m_line, before()})
            if (const auto quotes = neededQuotes(m_lines[line])) return {{line, *quotes}};
        return indentation();
    }

private:
    using Found = std::optional<std::pair<std::size_t, std::string>>;

    std::size_t before() const // the line above that says something
    {
        for (std::size_t i = m_line; i-- > 0;)
            if (!isBlank(m_lines[i])) return i;
        return m_line;
    }

    Found tab() const
    {
        for (const std::size_t line : {before(), m_line}) {
            const std::string &text = m_lines[line];
            if (text.substr(0, indentOf(text)).find('\t') != std::string::npos)
                return {{line, "a tab stands in the indentation: write blanks"}};
        }
        return {};
    }

    // The last bracket that is open where the parser stumbled.
    Found bracket() const
    {
        Brackets state;
        std::size_t opened = 0;
        for (std::size_t i = 0; i <= m_line; ++i) {
            const std::size_t open = state.open.size();
            follow(m_lines[i], state);
            if (state.open.size() > open) opened = i;
            if (state.quoteOpen && i >= before())
                return {{i, "a quote is opened here and not closed: add it"}};
        }
        if (state.open.empty()) {
            if (state.tooMany) return {{m_line, "a bracket is closed that is not open: remove it"}};
            return {};
        }
        // A '#' behind a blank begins a comment, which hides the rest of the line.
        const std::string &line = m_lines[opened];
        const std::size_t comment = line.find(" #");
        const char wanted = state.open.back().first == '{' ? '}' : ']';
        if (comment != std::string::npos && line.find(wanted, comment) != std::string::npos)
            return {{opened, "a '#' behind a blank begins a comment: a text with it needs quotes"}};
        return {{opened, fmt::format("a '{}' or a ',' is missing behind the '{}' here", wanted,
                                     state.open.back().first)}};
    }

    Found indentation() const
    {
        const std::size_t above = before();
        if (above == m_line) return {};
        return {{m_line, fmt::format("is not indented like the lines above: it begins with {} "
                                     "blanks, the line above with {}; or a ':' is missing",
                                     indentOf(m_lines[m_line]), indentOf(m_lines[above]))}};
    }

    std::vector<std::string> m_lines;
    std::size_t m_line;
};

} // namespace

Complaint syntaxComplaint(const std::string &file, const std::string &text,
                          const YAML::ParserException &broken)
{
    const Mark mark{broken.mark.line + 1, broken.mark.column + 1};
    const auto found =
        Diagnosis(text, static_cast<std::size_t>(std::max(broken.mark.line, 0))).run();
    if (!found) return {file, mark, "", "", fmt::format("is no YAML: {}", broken.msg)};
    const int line = static_cast<int>(found->first) + 1;
    return {file,
            {line, line == mark.line ? mark.column : 1},
            "",
            "",
            fmt::format("is no YAML ({}): {}", broken.msg, found->second)};
}

} // namespace app::authoring
