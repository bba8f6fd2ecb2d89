// Data files with a sheet a record.
#pragma once

#include "app/output.h"

#include <string>
#include <vector>

namespace app::fleet {

struct Record {
    std::string name; // key of the JSON object, or number from 1
    Json values;      // field to value
};

// JSON: an object of records, or a list of them. CSV: a column a field, a row a record.
std::vector<Record> readRecords(const std::string &path);

// A path with {FIELD} for the value of a record, {record} for its name and {index} for its number from 1,
// as in "out/{number}_{rev}.pdf".
class NamePattern {
public:
    // A Problem unless the braces pair; `path` is the pattern's text, `data` where the records come from.
    NamePattern(const std::string &path, std::string data);
    static bool isPattern(const std::string &path);

    // Characters that no file name may have become "_". A Problem when the record lacks a value.
    std::string nameOf(const Record &record, std::size_t index) const;
    bool uses(const std::string &column) const;

private:
    struct Piece {
        std::string text;
        bool isColumn;
    };
    std::string m_path;
    std::string m_data; // for messages
    std::vector<Piece> m_pieces;
};

} // namespace app::fleet
