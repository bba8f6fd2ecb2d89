// The `art:` of a block: lines, polylines, rectangles, circles, arcs, filled areas and texts.
#pragma once

#include "app/authoring/model.h"
#include "app/authoring/yaml_reader.h"

namespace app::authoring {

// `units`: 1 millimetres, 2 inches. Says which shapes came from which item of the list.
std::vector<ArtItem> readArt(YamlFile &file, const YAML::Node &node, const std::string &what,
                             int units, Art &art);

// The pen of a key that holds a line width in millimetres; `fallback` (a pen) when it is absent.
int readPen(Mapping &mapping, const std::string &key, int fallback);

} // namespace app::authoring
