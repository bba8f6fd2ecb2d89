// Definitions that somebody keeps editing, at random: the same seed makes the same history.
#pragma once

#include "definitions/field_def.h"
#include "tests/drawing/catalog.h"

#include <map>
#include <random>
#include <string>
#include <vector>

struct FieldModel {
    FieldDesc desc;
    int defaultType = 0; // 0 the text, 3 the label of the size
    int indentation = 0;
    int flip = 0;
    int multiline = 0;
    int borderColor = 7;
    int syncAll = 0;
    double textSize = 3.5;
    double textAngle = 0.0;
    double margin = 1.0; // a box without any height would keep the lines that it had
    std::string broadcast;
    int broadcastType = 0; // 0 the sheet, 1 the part
    int broadcastTable = 0;
    int zoneField = 0, symbolFile = 0;
    double userSymbol = 0.0; // length and height
};

struct TableModel {
    std::string id;
    double x = 0.0, y = 0.0;
    int direction = 1;
    std::vector<FieldModel> fields;
};

struct BlockModel {
    BlockDesc desc; // without fields and tables
    std::vector<FieldModel> fields;
    std::vector<TableModel> tables;
};

// Format ISO with the blocks TITLE, REV (with tables) and NOTES.
class DefinitionWorld {
public:
    explicit DefinitionWorld(unsigned seed) : m_random(seed) { reset(); }

    void reset();
    std::string edit(); // one edit that changes something; says which
    Catalog catalog() const;
    int art(const std::string &pattern) const { return m_art.at(pattern); }
    const std::map<std::string, int> &allArt() const { return m_art; }
    bool isTyped(const std::string &block, const std::string &table,
                 const std::string &field) const; // keeps what somebody typed

    bool isRequired(const std::string &block) const;
    bool computesValues() const; // some field does, whenever it is placed

    int upTo(int n) { return std::uniform_int_distribution<int>(0, n - 1)(m_random); }
    template <class T> T &oneOf(std::vector<T> &list)
    {
        return list[static_cast<std::size_t>(upTo(static_cast<int>(list.size())))];
    }
    template <class T> T pick(std::initializer_list<T> list)
    {
        return *(list.begin() + upTo(static_cast<int>(list.size())));
    }

    // No edits by which the library's own update loses what nobody can bring back: the rows of tables that
    // change places, fields that are computed from now on, the middle borders of rows, which may as well
    // have been switched, and blocks that are required from now on, which may as well have been deleted.
    bool sparing = false;

private:
    FieldModel newField();
    std::vector<FieldModel> &anyFields();
    std::string editField(FieldModel &field);
    std::string editHiddenSlot(FieldModel &field);
    std::string editFields(std::vector<FieldModel> &fields);
    std::string editTables();
    std::string editBlock();
    std::string editFormat();

    std::mt19937 m_random;
    int m_next = 0; // of identifiers and values that have not been used
    FormatDesc m_format;
    std::vector<BlockModel> m_blocks;
    std::map<std::string, int> m_art; // how long the line of a pattern is
};
