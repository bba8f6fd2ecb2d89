// Words of the cell form for numbers in stored records: read and written from the same tables.
#pragma once

#include "app/authoring/yaml_reader.h"

#include "uf_drf.h"

#include <optional>
#include <string>

namespace app::authoring {

// Points of a cell, row by row.
inline constexpr std::initializer_list<Word> kSites{
    {"top-left", 1},    {"top-center", 2},    {"top-right", 3},
    {"middle-left", 4}, {"center", 5},        {"middle-right", 6},
    {"bottom-left", 7}, {"bottom-center", 8}, {"bottom-right", 9}};

// Which corner of the sheet a stored point is measured from.
inline constexpr std::initializer_list<Word> kCorners{
    {"bottom-left", 0}, {"top-left", 1}, {"bottom-right", 2}, {"top-right", 3}};

// Where things stand unless a text says otherwise.
inline constexpr int kFrameLayer = 100, kPatternLayer = 101, kTextLayer = 102;

inline constexpr std::initializer_list<Word> kYesNo{
    {"yes", 1}, {"no", 0}, {"true", 1}, {"false", 0}};

// A direction of 0 stacks rows downwards although listings call it up; any other value stacks them
// upwards.
inline constexpr int kDown = 0, kUp = 1;
inline constexpr std::initializer_list<Word> kDirections{{"down", kDown}, {"up", kUp}};

inline constexpr std::initializer_list<Word> kSymbols{
    {"circle", UF_DRF_sym_circle},      {"divided-circle", UF_DRF_sym_divcir},
    {"square", UF_DRF_sym_square},      {"divided-square", UF_DRF_sym_divsqr},
    {"hexagon", UF_DRF_sym_hexagon},    {"divided-hexagon", UF_DRF_sym_divhex},
    {"triangle", UF_DRF_sym_triup},     {"triangle-down", UF_DRF_sym_tridown},
    {"round-box", UF_DRF_sym_roundbox}, {"underline", UF_DRF_sym_underline},
    {"none", UF_DRF_sym_nosymbol}};

inline constexpr std::initializer_list<Word> kZoneLabels{{"letters", 1}, {"numerals", 2}};

// Kinds of a default value, as fields store them.
inline constexpr int kOwnText = 0, kPartAttribute = 1, kSheetAttribute = 2, kSizeLabel = 3,
                     kEnvironment = 4;

inline std::optional<std::string> wordOf(std::initializer_list<Word> words, int code)
{
    for (const Word &word : words)
        if (word.code == code) return word.word;
    return {};
}

} // namespace app::authoring
