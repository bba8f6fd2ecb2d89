// The kinds of records that definitions are made of, with their slots and children by name: what the
// full form, its schema, its document, listings of differences and checks have in common. Everything
// comes from the slot tables of the definition classes.
#pragma once

#include <string>
#include <vector>

namespace LumUg {
class UDOClass;
}

namespace app::authoring {

enum class SlotShape {
    integer,   // one element of the ints
    real,      // one element of the doubles
    text,      // one element of the strings
    texts,     // every string from the index on
    reals,     // every stride-th double from the index on
    attribute, // a string attribute of the record
};

struct SlotInfo {
    std::string key; // "text_color"
    SlotShape shape = SlotShape::integer;
    unsigned index = 0;
    unsigned stride = 1;
    std::string title; // of an attribute
};

struct RecordKind {
    std::string word;      // "field"
    std::string className; // as stored
    std::string owner;     // the C++ class, for documents
    std::vector<SlotInfo> slots;
    const LumUg::UDOClass *registration = nullptr;
    std::vector<std::string> children; // words of the kinds that it may own

    const SlotInfo *slot(const std::string &key) const; // null when there is none
    const SlotInfo *attribute(const std::string &title) const;
};

const std::vector<RecordKind> &recordKinds();
const RecordKind *kindOfWord(const std::string &word);
const RecordKind *kindOfClass(const std::string &className);

std::string snakeCase(const std::string &accessor); // "TextColor" -> "text_color"

} // namespace app::authoring
