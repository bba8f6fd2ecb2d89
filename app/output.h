// What a command prints: results to the standard output, notes to the standard error.
#pragma once

#include "app/options.h"

#include <nlohmann/json.hpp>

#include <string>
#include <vector>

namespace app {

using Json = nlohmann::ordered_json;

void printJson(const Json &json);
void printLine(const std::string &text);
void printText(const std::string &text);                         // as it is
void printNote(const Options &options, const std::string &text); // not with --quiet

// Columns as wide as their widest text (counted in characters), two blanks between them.
void printTable(const std::vector<std::string> &header,
                const std::vector<std::vector<std::string>> &rows);

std::string counted(std::size_t count, const std::string &thing); // "1 format", "2 formats"
std::string joined(const std::vector<std::string> &texts, const std::string &separator);

} // namespace app
