// Text styles of the cell form: how a value looks in its cell.
#pragma once

#include "app/authoring/yaml_reader.h"

#include <map>
#include <string>

namespace app::authoring {

enum class TooLong { report, narrow, smaller };

struct Style {
    int units = 1;     // of the lengths: 1 millimetres, 2 inches
    double size = 2.5; // height of a capital letter
    std::string font = "osifont";
    int site = 7; // 1 top left ... 9 bottom right of the cell
    double marginWidth = 1.0;
    double marginHeight = 1.0;
    double aspect = 1.0;
    double lineSpace = 1.0; // 1 is a pitch of 1.5 heights
    int color = 7;
    TooLong tooLong = TooLong::report;
    double narrowAspect = 0.7;
    Origins origins; // of the slots that follow from it
};

using Styles = std::map<std::string, Style>;

// Changes what the mapping says of it: size, font, at, margin, aspect, line-space, color, too-long.
void readStyle(Mapping &mapping, Style &style);
// "like" and the keys above, for every style of the file.
// `units`: 1 millimetres, 2 inches.
Styles readStyles(YamlFile &file, const YAML::Node &node, int units);
Style plainStyle(int units); // what a style starts from
// The height that TooLong::smaller takes: the next one below, of ISO 3098 or of the usual ones in inches.
double smallerSize(const Style &style);
// How many letters fit beside each other in the cell: 0.8 heights a letter (ISO 3098, type B).
int capacity(double cellWidth, const Style &style);

} // namespace app::authoring
