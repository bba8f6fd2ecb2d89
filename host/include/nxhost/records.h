// A part file's records, read without opening the part: for reports over many files.
#pragma once

#include "../uf_defs.h"

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>
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
    std::string_view className; // empty, as all that follows, for one that was not asked for
    std::span<const int> ints;
    std::span<const std::string_view> strings;
    std::span<const StoredLink> links; // in order, null ones too
    std::span<const RowNumber> owned;  // in order
};

struct StoredNote { // alive; references in its lines are as stored
    RowNumber row = 0;
    std::span<const std::string_view> lines;
};

struct StoredSheet { // alive
    RowNumber row = 0;
    std::string_view name;
};

struct StoredRecords {
    std::vector<StoredRecord> records; // each list in the order of the rows
    std::vector<StoredNote> notes;
    std::vector<StoredSheet> sheets;
};

struct StoredAttribute {
    RowNumber owner; // 0: the part
    std::string_view title;
    std::string_view value;
};

// Reads one file after another, each as of one moment; every row that is read is verified, what is not
// read (lines, patterns, symbols) is not. What it gives out stands until the next call of read().
class DllExport RecordReader {
public:
    // Of records of other classes only the rows are told.
    explicit RecordReader(std::vector<std::string> classes);
    ~RecordReader();
    RecordReader(const RecordReader &) = delete;
    RecordReader &operator=(const RecordReader &) = delete;

    // Null when the file is no part of this version, is damaged, waits for recovery or is being saved:
    // opening it says what is wrong.
    const StoredRecords *read(const std::string &path);
    // Of the file that was read last; null when they are damaged.
    const std::vector<StoredAttribute> *attributes();

private:
    class Files;
    std::unique_ptr<Files> m_files;
};

} // namespace nxhost
