#include "app/authoring/scalars.h"

#include <fmt/format.h>

#include <bit>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <limits>

namespace app::authoring {

namespace {

constexpr const char *kBytesTag = "!bytes";

// The character at `at`, which then stands behind it; nothing where the bytes are no UTF-8.
std::optional<std::uint32_t> nextCharacter(const std::string &text, std::size_t &at)
{
    const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
    const unsigned first = byte(at);
    const int more = first < 0x80 ? 0 : first >= 0xf0 ? 3 : first >= 0xe0 ? 2 : 1;
    if (more == 0) {
        ++at;
        return first;
    }
    if (first < 0xc2 || first > 0xf4 || at + more >= text.size()) return {};
    std::uint32_t code = first & (0x3f >> more);
    for (int i = 1; i <= more; ++i) {
        if ((byte(at + i) & 0xc0) != 0x80) return {};
        code = code << 6 | (byte(at + i) & 0x3f);
    }
    constexpr std::uint32_t least[] = {0, 0x80, 0x800, 0x10000};
    if (code < least[more] || code > 0x10ffff || (code >= 0xd800 && code < 0xe000)) return {};
    at += more + 1;
    return code;
}

bool isUtf8(const std::string &text)
{
    for (std::size_t at = 0; at < text.size();)
        if (!nextCharacter(text, at)) return false;
    return true;
}

bool isName(const std::string &text)
{
    if (text.empty() || text == "null" || text == "Null" || text == "NULL") return false;
    if (!std::isalpha(static_cast<unsigned char>(text[0]))) return false;
    for (const char c : text)
        if (!std::isalnum(static_cast<unsigned char>(c)) && c != '_' && c != '-' && c != '.')
            return false;
    return true;
}

bool needsEscape(std::uint32_t code)
{
    return code < 0x20 || (code >= 0x7f && code <= 0xa0) || code == 0x2028 || code == 0x2029 ||
           code == 0xfeff || code >= 0xfffe;
}

std::string escaped(std::uint32_t code)
{
    if (code < 0x100) return fmt::format("\\x{:02X}", code);
    if (code < 0x10000) return fmt::format("\\u{:04X}", code);
    return fmt::format("\\U{:08X}", code);
}

} // namespace

std::string realText(double value)
{
    if (std::isinf(value)) return value > 0 ? ".inf" : "-.inf";
    if (!std::isnan(value)) return fmt::format("{}", value);
    const auto bits = std::bit_cast<std::uint64_t>(value);
    const auto usual = std::bit_cast<std::uint64_t>(std::numeric_limits<double>::quiet_NaN());
    return bits == usual ? ".nan" : fmt::format("nan({:#018x})", bits);
}

std::optional<double> realOf(const YAML::Node &node)
{
    if (!node.IsScalar()) return {};
    const std::string &text = node.Scalar();
    if (text == ".inf") return std::numeric_limits<double>::infinity();
    if (text == "-.inf") return -std::numeric_limits<double>::infinity();
    if (text == ".nan") return std::numeric_limits<double>::quiet_NaN();
    const char *end = text.data() + text.size();
    if (text.starts_with("nan(0x") && text.ends_with(")")) {
        std::uint64_t bits = 0;
        const auto [stop, error] = std::from_chars(text.data() + 6, end - 1, bits, 16);
        const auto value = std::bit_cast<double>(bits);
        if (error != std::errc() || stop != end - 1 || !std::isnan(value)) return {};
        return value;
    }
    double value = 0.0;
    const auto [stop, error] = std::from_chars(text.data(), end, value);
    if (error != std::errc() || stop != end || !std::isfinite(value)) return {};
    return value;
}

std::optional<int> integerOf(const YAML::Node &node)
{
    if (!node.IsScalar()) return {};
    const std::string &text = node.Scalar();
    int value = 0;
    const auto [stop, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || stop != text.data() + text.size()) return {};
    return value;
}

std::string quoted(const std::string &text)
{
    if (isName(text)) return text;
    const bool utf8 = isUtf8(text);
    std::string result = utf8 ? "\"" : std::string(kBytesTag) + " \"";
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t start = at;
        const std::uint32_t code =
            utf8 ? *nextCharacter(text, at) : static_cast<unsigned char>(text[at++]);
        if (code == '"' || code == '\\')
            result += std::string("\\") + text[start];
        else if (code == '\n')
            result += "\\n";
        else if (code == '\t')
            result += "\\t";
        else if (needsEscape(code) || (!utf8 && code >= 0x80))
            result += escaped(code);
        else
            result += text.substr(start, at - start);
    }
    return result + '"';
}

std::optional<std::string> textOf(const YAML::Node &node)
{
    if (node.IsNull()) return std::string();
    if (!node.IsScalar()) return {};
    if (node.Tag() != kBytesTag) return node.Scalar();
    std::string bytes;
    const std::string &text = node.Scalar();
    for (std::size_t at = 0; at < text.size();) {
        const auto code = nextCharacter(text, at);
        if (!code || *code > 0xff) return {};
        bytes += static_cast<char>(*code);
    }
    return bytes;
}

} // namespace app::authoring
