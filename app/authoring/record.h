// A definition record as plain values, with the records that it owns: what stands between a part and
// its text. Nothing stored is left out, whatever wrote it.
#pragma once

#include "app/authoring/origin.h"
#include "app/authoring/record_kinds.h"

#include "uf_defs.h"

#include <string>
#include <utility>
#include <vector>

namespace app::authoring {

inline constexpr int kRecordLayer = 254; // where definition records stand

struct RecordTree {
    const RecordKind *kind = nullptr;
    int layer = kRecordLayer;
    std::string name; // of the object; nearly always none
    std::vector<int> ints;
    std::vector<double> doubles;
    std::vector<std::string> strings;
    std::vector<std::pair<std::string, std::string>>
        attributes;                   // title and value, as they were set
    std::vector<RecordTree> children; // in stored order
    Origin origin;                    // of the record and its slots in a text, if it comes from one
    Origins origins;

    // Of a text or attribute slot; empty when not stored.
    std::string text(const std::string &key) const;
    std::vector<std::string> texts(const std::string &key) const;
    int integer(const std::string &key) const;
    double real(const std::string &key) const;
    std::vector<const RecordTree *> childrenOf(const std::string &word) const;

    void put(const SlotInfo &slot, int value);
    void put(const SlotInfo &slot, double value);
    void put(const SlotInfo &slot, const std::string &value);
    void put(const SlotInfo &slot, const std::vector<std::string> &values);
    void put(const SlotInfo &slot, const std::vector<double> &values);
};

struct RecordFile {
    int units = 1;                    // of the part
    std::vector<RecordTree> records;  // those that no other one owns, in order of creation
    std::vector<std::string> leftOut; // what the part holds besides, in words
};

// Of an open part.
RecordFile scanPart(tag_t part);
// Makes the records in the work part: each before those it owns.
void writeRecords(const std::vector<RecordTree> &records);

} // namespace app::authoring
