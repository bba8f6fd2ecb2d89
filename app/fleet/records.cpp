#include "app/fleet/records.h"

#include "app/csv.h"
#include "app/file_name.h"
#include "app/problem.h"
#include "app/read_text.h"

#include <fmt/format.h>

#include <algorithm>
#include <filesystem>

namespace app::fleet {

namespace {

std::vector<Record> recordsOfCsv(const std::string &path)
{
    const std::vector<CsvRow> rows = readCsv(path);
    if (rows.empty())
        throw Problem(path + ": is empty: a first line with the field names is needed");
    std::vector<Record> records;
    for (std::size_t i = 1; i < rows.size(); ++i) {
        Json values = Json::object();
        for (std::size_t column = 0; column < rows[0].size(); ++column)
            values[rows[0][column]] = rows[i][column];
        if (values.size() != rows[0].size())
            throw Problem(path + ": two columns have one name: remove one");
        records.push_back({std::to_string(i), std::move(values)});
    }
    return records;
}

std::vector<Record> recordsOfJson(const std::string &path)
{
    Json whole = readJson(path);
    std::vector<Record> records;
    std::size_t number = 0;
    if (whole.is_object() || whole.is_array())
        for (auto &[key, values] : whole.items()) {
            ++number;
            records.push_back(
                {whole.is_object() ? key : std::to_string(number), std::move(values)});
        }
    const bool sound = (whole.is_object() || whole.is_array()) &&
                       std::all_of(records.begin(), records.end(),
                                   [](const Record &one) { return one.values.is_object(); });
    if (!sound)
        throw Problem(path + ": must hold a list of records, or an object of them: each an object "
                             "of field names to values");
    return records;
}

// A column by its whole name, or by that of its field alone.
const Json *valueOf(const Json &values, const std::string &column)
{
    if (values.contains(column)) return &values[column];
    for (const auto &[key, value] : values.items()) {
        const std::size_t dot = key.find('.');
        if (dot != std::string::npos && key.substr(dot + 1) == column) return &value;
        if (value.is_object() && value.contains(column)) return &value[column];
    }
    return nullptr;
}

// Nothing for what is no single text or number.
std::string textOf(const Json *value)
{
    if (!value || value->is_null() || value->is_structured()) return {};
    return value->is_string() ? value->get<std::string>() : value->dump();
}

} // namespace

std::vector<Record> readRecords(const std::string &path)
{
    return std::filesystem::path(path).extension() == ".csv" ? recordsOfCsv(path)
                                                             : recordsOfJson(path);
}

bool NamePattern::isPattern(const std::string &path) { return path.find('{') != std::string::npos; }

NamePattern::NamePattern(const std::string &path, std::string data)
    : m_path(path), m_data(std::move(data))
{
    for (std::size_t at = 0; at < path.size();) {
        const std::size_t open = path.find('{', at);
        if (open != at)
            m_pieces.push_back(
                {path.substr(at, open == std::string::npos ? open : open - at), false});
        if (open == std::string::npos) return;
        const std::size_t close = path.find('}', open);
        if (close == std::string::npos || close == open + 1)
            throw Problem(path + ": write a field's name between { and }, as in {number}", kUsage);
        m_pieces.push_back({path.substr(open + 1, close - open - 1), true});
        at = close + 1;
    }
}

bool NamePattern::uses(const std::string &column) const
{
    return std::any_of(m_pieces.begin(), m_pieces.end(),
                       [&](const Piece &piece) { return piece.isColumn && piece.text == column; });
}

std::string NamePattern::nameOf(const Record &record, std::size_t index) const
{
    std::string name;
    for (const Piece &piece : m_pieces) {
        if (!piece.isColumn) {
            name += piece.text;
            continue;
        }
        if (piece.text == "record") {
            name += safeFileName(record.name);
            continue;
        }
        if (piece.text == "index") {
            name += std::to_string(index + 1);
            continue;
        }
        const std::string text = textOf(valueOf(record.values, piece.text));
        if (text.empty() || text == "." || text == "..")
            throw Problem(fmt::format("{}, record {}: {} needs a value of {}, one text", m_data,
                                      record.name, m_path, piece.text));
        name += safeFileName(text);
    }
    return name;
}

} // namespace app::fleet
