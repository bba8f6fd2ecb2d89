// One cell of a block in the cell form: its box, its label and the field in it.
#pragma once

#include "app/authoring/cell_lines.h"
#include "app/authoring/model.h"
#include "app/authoring/style.h"
#include "app/authoring/yaml_reader.h"

#include <optional>
#include <string>

namespace app::authoring {

struct LabelStyle {
    double size = 1.8; // ISO 3098
    std::string font = "osifont";
    double fromLeft = 2.0; // distances from the cell's left and upper line
    double fromTop = 1.0;
};

LabelStyle plainLabels(int units); // 1 millimetres, 2 inches

struct Cell {
    Field field;
    std::optional<Box> lines; // the box that is drawn
    std::optional<ArtText> label;
    Origin box; // of `lines`
};

// What the cells of a block share.
struct CellContext {
    const Styles &styles;
    LabelStyle labels;
    std::string language;   // picks a label that is given in several
    int units = 1;          // 1 millimetres, 2 inches
    std::string where = {}; // the block, in complaints
};

// What cells and the columns of tables have in common.
Style namedStyle(Mapping &mapping, const CellContext &context); // by `style` alone
Style styleOf(Mapping &mapping, const CellContext &context);    // with keys of its own
void dressText(double width, const Style &style, SlotValues &slots);
void sourceOf(Mapping &mapping, SlotValues &slots);                  // value, from, keep
void sharing(Mapping &mapping, SlotValues &slots);                   // share, all-sheets
int charactersOf(Mapping &mapping);                                  // characters
std::string labelText(Mapping &mapping, const CellContext &context); // in the language wanted

Cell readCell(YamlFile &file, const std::string &id, const YAML::Node &node,
              const CellContext &context);

} // namespace app::authoring
