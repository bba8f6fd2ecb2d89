// The grammar of the settings files.
#include "foundation/registry.h"

#include "foundation/log.h"

#include <cstdio>
#include <memory>

namespace QelFmt {

namespace {

constexpr std::size_t kLongestPiece = 1999; // of a line, without its end
constexpr std::size_t kNameLimit = 200;     // a name of this length is already too long
constexpr int kErrorLimit = 10;             // in one file

// Of the plain 8-bit alphabet, whatever the locale of the process.
bool isSpace(char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }
bool isPrintable(char c) { return c >= ' ' && c <= '~'; }
bool isNameCharacter(char c)
{
    return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || c == ' ' ||
           c == '-' || c == '.' || c == '_';
}

int hexDigit(char c)
{
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    return -1;
}

std::size_t skipSpace(const std::string &text, std::size_t at)
{
    while (at < text.size() && isSpace(text[at])) ++at;
    return at;
}

bool complain(const std::string &file_name, int line_number, const char *message)
{
    std::printf("%s:%d: %s\n", file_name.c_str(), line_number, message);
    return false;
}

// One line with its end, or the next piece of a line that is too long to be one. The pieces count
// as lines of their own, ends included; only the last line of a file may lack its end.
bool readPiece(std::FILE *file, std::string &piece)
{
    piece.clear();
    for (int c = std::getc(file); c != EOF; c = std::getc(file)) {
        if (c != '\n' && piece.size() == kLongestPiece) {
            std::ungetc(c, file);
            piece += '\n';
            return true;
        }
        piece += static_cast<char>(c);
        if (c == '\n') return true;
    }
    return !piece.empty();
}

// What a backslash at text[at] stands for; moves `at` behind it. The caller has seen to it that
// something follows the backslash.
char escaped(const std::string &text, std::size_t &at)
{
    static const std::string letters = "abfnrtv", meanings = "\a\b\f\n\r\t\v";
    const char c = text[at + 1];
    at += 2;
    if (const std::size_t i = letters.find(c); i != std::string::npos) return meanings[i];
    if (c != 'x' || at + 1 >= text.size()) return c;
    const int high = hexDigit(text[at]), low = hexDigit(text[at + 1]);
    if (high < 0 || low < 0) return c;
    at += 2;
    return static_cast<char>(high * 16 + low);
}

} // namespace

void Registry::parsePath(const boost::filesystem::path &path) { parseFile(path.string()); }

void Registry::parseFile(const std::string &file_name)
{
    const std::unique_ptr<std::FILE, int (*)(std::FILE *)> file(std::fopen(file_name.c_str(), "r"),
                                                                std::fclose);
    if (!file) return;
    QELFMT_INFO << "Reading registry file: " << file_name;

    Section *current = nullptr;
    int errors = 0, line_number = 0;
    for (std::string line; readPiece(file.get(), line);) {
        ++line_number;
        if (parseBuffer(current, line, file_name, line_number)) continue;
        if (++errors > kErrorLimit) {
            complain(file_name, line_number, "too many errors; parsing terminated.");
            return;
        }
    }
}

bool Registry::parseBuffer(Section *&current, const std::string &line, const std::string &file_name,
                           int line_number)
{
    const std::size_t at = skipSpace(line, 0);
    if (at == line.size() || line[at] == '#' || line[at] == ';') return true;
    if (line[at] == '[') return parseSectionName(current, line, at + 1, file_name, line_number);
    if (!current)
        return complain(file_name, line_number, "registry entry should follow a section.");
    return parseEntry(*current, line, at, file_name, line_number);
}

bool Registry::parseSectionName(Section *&current, const std::string &line, std::size_t at,
                                const std::string &file_name, int line_number)
{
    std::string name;
    // A last line without its end may lack the bracket: the name is then what there is.
    for (; at < line.size() && line[at] != ']'; ++at) {
        if (!isNameCharacter(line[at]))
            return complain(file_name, line_number, "illegal section name.");
        name += line[at];
        if (name.size() > kNameLimit) break;
    }
    if (name.size() >= kNameLimit) return complain(file_name, line_number, "section name to long.");
    current = &m_sections[name];
    return true;
}

bool Registry::parseEntry(Section &section, const std::string &line, std::size_t at,
                          const std::string &file_name, int line_number)
{
    std::string key;
    for (; at < line.size() && line[at] != '=' && line[at] != '\n'; ++at) {
        // A warning: the character is kept and the line does not fail for it.
        if (!isNameCharacter(line[at])) complain(file_name, line_number, "illegal key name.");
        key += line[at];
        if (key.size() > kNameLimit) break;
    }
    if (key.size() >= kNameLimit) return complain(file_name, line_number, "key name to long.");
    key.erase(key.find_last_not_of(' ') + 1);

    if (at == line.size() || line[at] != '=') {
        // The line end was read as a character of the key as well.
        if (at < line.size()) complain(file_name, line_number, "illegal key name.");
        return complain(file_name, line_number, "expected '=' to follow key.");
    }
    RegString value;
    const std::string rest = line.substr(skipSpace(line, at + 1));
    if (!parseValue(value, rest, file_name, line_number)) return false;
    section[key] = value;
    return true;
}

bool Registry::parseValue(RegString &destination, const std::string &text,
                          const std::string &file_name, int line_number)
{
    std::string value;
    if (text.empty() || text[0] != '"') {
        for (const char c : text) {
            if (isSpace(c) || !isPrintable(c)) break;
            value += c;
        }
        destination = value;
        return true;
    }
    for (std::size_t at = 1; at < text.size() && text[at] != '\n';) {
        if (text[at] == '"') {
            destination = value;
            return true;
        }
        const bool escape = text[at] == '\\' && at + 1 < text.size() && text[at + 1] != '\n';
        value += escape ? escaped(text, at) : text[at++];
    }
    return complain(file_name, line_number, "unterminated string constant.");
}

} // namespace QelFmt
