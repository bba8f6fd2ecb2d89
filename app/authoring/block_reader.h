// One block of the cell form: its size, lines, cells, art and places.
#pragma once

#include "app/authoring/cell_reader.h"
#include "app/authoring/model.h"

#include <string>
#include <vector>

namespace app::authoring {

struct BlockText {
    Block block;
    double width = 0.0;
    double height = 0.0;
};

BlockText readBlock(YamlFile &file, const std::string &id, const YAML::Node &node,
                    const CellContext &context, const std::vector<std::string> &formatIds,
                    int units);

} // namespace app::authoring
