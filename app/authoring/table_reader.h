// One table of a block in the cell form: where its rows start, which way they grow, its columns and the
// symbol of a row.
#pragma once

#include "app/authoring/cell_reader.h"
#include "app/authoring/model.h"

#include <string>

namespace app::authoring {

struct TableText {
    Table table;
    Art heading; // of the block: the labels of the columns and the lines around them
};

TableText readTable(YamlFile &file, const std::string &id, const YAML::Node &node,
                    const CellContext &context);

} // namespace app::authoring
