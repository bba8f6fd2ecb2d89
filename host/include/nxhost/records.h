// A part file's records, read without opening the part: for reports over many files.
#pragma once

#include "../uf_defs.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace nxhost {

// What refers to another object does so by the number of its row, which no two objects of a part share
// and which rises in the order in which they were made.
using RowNumber = std::uint64_t;

struct StoredLink {
    int type; // 1 to 4
    RowNumber target;
    std::uint64_t sequence; // when it was made, over the whole part
};

struct StoredRecord { // alive
    RowNumber row = 0;
    std::string className;
    std::vector<int> ints;
    std::vector<double> doubles;
    std::vector<std::string> strings;
    std::vector<StoredLink> links; // in order, null ones too
    std::vector<RowNumber> owned;  // in order
};

struct StoredNote { // alive; references in its lines are as stored
    RowNumber row = 0;
    std::vector<std::string> lines;
};

struct StoredSheet { // alive
    RowNumber row = 0;
    std::string name;
};

struct StoredRecords {
    std::vector<StoredRecord> records; // each list in the order of the rows
    std::vector<StoredNote> notes;
    std::vector<StoredSheet> sheets;
};

struct StoredAttribute {
    RowNumber owner; // 0: the part
    std::string title;
    std::string value;
};

// Every row that is read is verified, what is not read (lines, patterns, symbols) is not. Nothing when the
// file is no part of this version, is damaged or waits for recovery: opening it says what is wrong.
DllExport std::optional<StoredRecords> readRecords(const std::string &path);
DllExport std::optional<std::vector<StoredAttribute>> readAttributes(const std::string &path);

} // namespace nxhost
