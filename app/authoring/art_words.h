// Art in the words of the cell form: what follows from cells and tables, and the rest as items.
#pragma once

#include "app/authoring/cell_lines.h"
#include "app/authoring/cell_reader.h"
#include "app/authoring/model.h"

#include <map>
#include <optional>
#include <string>
#include <vector>

namespace app::authoring {

// The label style that most texts at an upper left corner of a cell have; nothing without any.
struct LabelVotes {
    void count(const Art &art, const std::vector<std::optional<Box>> &cells);
    LabelStyle winner(const LabelStyle &fallback) const;

    std::vector<std::pair<LabelStyle, int>> votes;
};

struct CellArt {
    std::optional<std::string> label;
    std::optional<std::vector<double>> labelInset; // unlike the usual one
    std::optional<Box> lines;                      // drawn around it; none: `box: none`
};

struct TableArt {
    double heading = 0.0;
    std::vector<std::string> labels; // of the columns
};

struct BlockArt {
    double width = 0.0; // of the outline, 0 without one
    double height = 0.0;
    bool lines = false; // outline and cells are drawn with these pens
    int outlinePen = 0;
    int cellPen = 0;
    std::vector<CellArt> cells; // as the fields
    std::vector<TableArt> tables;
    Art rest;
};

// A table of the block: its columns' number, where its rows start, which way they grow.
struct TableShape {
    ArtPoint at;
    int direction;
    std::size_t columns;
};

// Takes from the art what follows from the cells and tables; empty when it does not begin as they would
// begin it.
std::optional<BlockArt> takeApart(const Art &art, const std::vector<std::optional<Box>> &cells,
                                  const std::vector<TableShape> &tables, const LabelStyle &labels);

// Lines of YAML, "- {line: ...}", each behind the indentation. Empty when a pen or a number of the art
// has no word.
std::optional<std::string> artItems(const Art &art, int units, const std::string &indent);

} // namespace app::authoring
