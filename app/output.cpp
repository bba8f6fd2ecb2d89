#include "app/output.h"

#include "app/library_output.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstdio>

namespace app {

void printJson(const Json &json)
{
    // Bytes that are no UTF-8 are shown replaced: a report never fails for an old text.
    fmt::print(results(), "{}\n", json.dump(2, ' ', false, Json::error_handler_t::replace));
}

void printLine(const std::string &text) { fmt::print(results(), "{}\n", text); }

void printText(const std::string &text) { fmt::print(results(), "{}", text); }

void printNote(const Options &options, const std::string &text)
{
    if (!options.quiet) fmt::print(stderr, "{}\n", text);
}

std::string counted(std::size_t count, const std::string &thing)
{
    return fmt::format("{} {}{}", count, thing, count == 1 ? "" : "s");
}

std::string joined(const std::vector<std::string> &texts, const std::string &separator)
{
    return fmt::format("{}", fmt::join(texts, separator));
}

namespace {

std::size_t characters(const std::string &utf8)
{
    return static_cast<std::size_t>(std::count_if(utf8.begin(), utf8.end(), [](char c) {
        return (static_cast<unsigned char>(c) & 0xC0) != 0x80;
    }));
}

void printRow(const std::vector<std::string> &row, const std::vector<std::size_t> &widths)
{
    std::string line;
    for (std::size_t i = 0; i < row.size(); ++i) {
        line += row[i];
        if (i + 1 < row.size()) line.append(widths[i] - characters(row[i]) + 2, ' ');
    }
    printLine(line);
}

} // namespace

void printTable(const std::vector<std::string> &header,
                const std::vector<std::vector<std::string>> &rows)
{
    std::vector<std::size_t> widths;
    for (const std::string &title : header) widths.push_back(characters(title));
    for (const auto &row : rows)
        for (std::size_t i = 0; i < row.size(); ++i)
            widths[i] = std::max(widths[i], characters(row[i]));
    printRow(header, widths);
    for (const auto &row : rows) printRow(row, widths);
}

} // namespace app
