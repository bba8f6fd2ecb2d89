// Definitions as plain values: what the text form says, before it becomes records and patterns.
#pragma once

#include "app/authoring/record.h"

#include <map>
#include <string>
#include <variant>
#include <vector>

namespace app::authoring {

// --- art: what a pattern part holds, in block or sheet coordinates -----------------------------
struct ArtPoint {
    double x = 0.0;
    double y = 0.0;
    bool operator==(const ArtPoint &) const = default;
};
struct ArtLine {
    ArtPoint from;
    ArtPoint to;
    int pen; // line width number of the platform
};
struct ArtArc { // counter-clockwise, degrees; a circle ends 360 after its start
    ArtPoint centre;
    double radius;
    double start;
    double end;
    int pen;
};
struct ArtArea {
    std::vector<std::vector<ArtPoint>> outlines;
};
struct ArtText {
    std::string text;
    ArtPoint at;
    int site; // 1 top left ... 9 bottom right
    double size;
    std::string font;
    double aspect = 1.0;
    double angle = 0.0;
};
using Shape = std::variant<ArtLine, ArtArc, ArtArea, ArtText>;
using Art = std::vector<Shape>;

// --- records ------------------------------------------------------------------------------------
// Slots by their names in the slot tables of the definition classes ("TextSize").
struct SlotValues {
    std::map<std::string, int> ints;
    std::map<std::string, double> doubles;
    std::map<std::string, std::string> strings;
    std::map<std::string, std::vector<std::string>> lists;
};

struct Field {
    SlotValues slots;
};
struct Table {
    SlotValues slots;
    std::vector<Field> fields;
};
struct Location {
    std::string name;
    int offsetType = 0;
    ArtPoint at;
};
struct SizeLocation {
    std::string sizeId;
    std::vector<Location> locations;
};
struct BlockLocation {
    std::string formatId;
    std::vector<SizeLocation> sizes;
};
struct BlockBox {
    double x, y, width, height;
};
struct Block {
    std::string id;
    double width = 0.0; // as the text says; what is stored knows no size
    double height = 0.0;
    std::vector<BlockBox> boxes; // of its cells
    SlotValues slots;            // without the pattern name: it follows from the art
    Art art;
    std::vector<BlockLocation> locations;
    std::vector<Field> fields;
    std::vector<Table> tables;
};
struct Size {
    SlotValues slots; // without the frame name
    Art frame;
    double width = 0.0; // of the sheet, for what depends on it
    double height = 0.0;
};
struct Format {
    std::string id;
    SlotValues slots;
    std::vector<Size> sizes;
};

struct Library {
    int units = 1; // 1 millimetres, 2 inches
    std::vector<Format> formats;
    std::vector<Block> blocks;
    std::vector<RecordTree> records; // of the full form; they follow the formats and blocks
};

} // namespace app::authoring
