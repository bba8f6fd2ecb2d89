#include "app/csv.h"

#include "app/problem.h"
#include "app/text_file.h"

#include <fmt/format.h>

#include <cstdint>

namespace app {

namespace {

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

// Bytes of the UTF-8 character at the start of the text; 0 when there is none.
std::size_t characterLength(std::string_view text)
{
    const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
    const unsigned char lead = byte(0);
    if (lead < 0x80) return 1;
    const std::size_t length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : lead >= 0xC0 ? 2 : 0;
    if (length == 0 || lead > 0xF4 || text.size() < length) return 0;
    std::uint32_t code = lead & (0xFF >> (length + 1));
    for (std::size_t i = 1; i < length; ++i) {
        if ((byte(i) & 0xC0) != 0x80) return 0;
        code = code << 6 | (byte(i) & 0x3F);
    }
    constexpr std::uint32_t kSmallest[] = {0, 0, 0x80, 0x800, 0x10000};
    const bool surrogate = code >= 0xD800 && code <= 0xDFFF;
    return code < kSmallest[length] || code > 0x10FFFF || surrogate ? 0 : length;
}

class Parser {
public:
    Parser(std::string_view text, const std::string &name) : m_text(text), m_name(name)
    {
        if (m_text.substr(0, 3) == kByteOrderMark) m_text.remove_prefix(3);
    }

    std::vector<CsvRow> parse()
    {
        while (!m_text.empty()) {
            if (takeLineEnd()) continue; // a blank line
            const std::size_t line = m_line;
            CsvRow row = parseRow();
            if (!m_rows.empty() && row.size() != m_rows.front().size())
                complain(line, fmt::format("{} cells, but the first line has {}", row.size(),
                                           m_rows.front().size()));
            m_rows.push_back(std::move(row));
        }
        return std::move(m_rows);
    }

private:
    [[noreturn]] void complain(std::size_t line, const std::string &what) const
    {
        throw Problem(fmt::format("{}, line {}: {}", m_name, line, what));
    }

    bool at(char c) const { return !m_text.empty() && m_text.front() == c; }

    bool takeLineEnd()
    {
        const std::size_t length = m_text.substr(0, 2) == "\r\n" ? 2 : at('\n') || at('\r') ? 1 : 0;
        m_text.remove_prefix(length);
        if (length > 0) ++m_line;
        return length > 0;
    }

    void takeCharacter(std::string &cell)
    {
        const std::size_t length = characterLength(m_text);
        if (length == 0) complain(m_line, "a byte that is no UTF-8: save the file as UTF-8");
        if (at('\0'))
            complain(m_line, "a zero byte, which no value can hold: save the file as UTF-8");
        cell += m_text.substr(0, length);
        m_text.remove_prefix(length);
    }

    CsvRow parseRow()
    {
        CsvRow row;
        for (;;) {
            row.push_back(at('"') ? quotedCell() : plainCell());
            if (m_text.empty() || takeLineEnd()) return row;
            if (!at(','))
                complain(m_line, "text after a closing quote: double quotes inside a cell");
            m_text.remove_prefix(1);
        }
    }

    std::string plainCell()
    {
        std::string cell;
        while (!m_text.empty() && !at(',') && !at('\n') && !at('\r')) takeCharacter(cell);
        return cell;
    }

    // Line breaks of either kind mean the next line of a value.
    std::string quotedCell()
    {
        const std::size_t opened = m_line;
        std::string cell;
        m_text.remove_prefix(1);
        for (;;) {
            if (m_text.empty()) complain(opened, "a quote is opened and never closed");
            if (at('"')) {
                m_text.remove_prefix(1);
                if (!at('"')) return cell;
                takeCharacter(cell);
            } else if (takeLineEnd()) {
                cell += '\n';
            } else {
                takeCharacter(cell);
            }
        }
    }

    std::string_view m_text;
    const std::string &m_name;
    std::size_t m_line = 1;
    std::vector<CsvRow> m_rows;
};

std::string quoted(const std::string &cell)
{
    if (cell.find_first_of(",\"\r\n") == std::string::npos) return cell;
    std::string text = "\"";
    for (const char c : cell) text += c == '"' ? std::string("\"\"") : std::string(1, c);
    return text + '"';
}

} // namespace

std::vector<CsvRow> parseCsv(std::string_view text, const std::string &name)
{
    return Parser(text, name).parse();
}

std::vector<CsvRow> readCsv(const std::string &path)
{
    std::string why;
    const auto text = readTextFile(path, why);
    if (!text) throw Problem(path + ": " + why);
    return parseCsv(*text, path);
}

// A line of one empty cell would be read as no line at all, so it is quoted.
std::string writeCsv(const std::vector<CsvRow> &rows)
{
    std::string text;
    for (const CsvRow &row : rows) {
        std::string line;
        for (std::size_t i = 0; i < row.size(); ++i) line += (i > 0 ? "," : "") + quoted(row[i]);
        text += (line.empty() ? "\"\"" : line) + "\r\n";
    }
    return text;
}

} // namespace app
