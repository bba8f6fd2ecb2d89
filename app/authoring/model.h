// Definitions as plain values: what the text form says, before it becomes records and patterns.
#pragma once

#include "app/authoring/art.h"
#include "app/authoring/record.h"

#include <map>
#include <optional>
#include <string>
#include <vector>

namespace app::authoring {

// --- records ------------------------------------------------------------------------------------
// Slots by their names in the slot tables of the definition classes ("TextSize").
struct SlotValues {
    std::map<std::string, int> ints;
    std::map<std::string, double> doubles;
    std::map<std::string, std::string> strings;
    std::map<std::string, std::vector<std::string>> lists;
    Origin origin; // of the whole
    Origins origins;
};

// Instead of its own words a record of the cell form may be given in the full form: then `whole` is what
// is stored, and nothing else of the record counts.
struct Label {
    std::string text;
    double size;
    std::string font;
    double width;                 // that it may take up
    std::optional<double> bottom; // of its letters, in the block; none in a heading
    Origin origin;
};
struct Field {
    SlotValues slots;
    std::optional<Label> label;
    int characters = 0; // a value of that length is to fit; 0: nobody said
    int rows = 1;       // of the value
    std::optional<RecordTree> whole;
};
struct Table {
    SlotValues slots;
    double heading = 0.0;       // its height
    double headingLabels = 0.0; // the height of its letters
    Origin headingOrigin;
    std::vector<Field> fields;
    std::optional<RecordTree> whole;
};
struct Location {
    std::string name;
    int offsetType = 0;
    ArtPoint at;
};
struct SizeLocation {
    std::string sizeId;
    std::vector<Location> locations;
    Origin origin = {};
};
struct BlockLocation {
    std::string formatId;
    std::vector<SizeLocation> sizes;
    Origin origin;
    std::optional<RecordTree> whole;
};
struct BlockBox {
    double x, y, width, height;
    Origin origin;
    std::string cell; // the cell that it is drawn around
};
struct ArtItem { // of the list under art: its shapes among those of the block
    Origin origin;
    std::size_t begin, end;
};
struct Block {
    std::string id;
    double width = 0.0; // as the text says; what is stored knows no size
    double height = 0.0;
    bool drawn = true;           // lines stand around the cells
    std::vector<BlockBox> boxes; // of its cells
    Origin cells;
    SlotValues slots; // without the pattern name: it follows from the art
    Art art;
    std::vector<ArtItem> artItems;
    std::vector<BlockLocation> locations;
    std::vector<Field> fields;
    std::vector<Table> tables;
    std::optional<RecordTree> whole;
};
struct Size {
    SlotValues slots; // without the frame name
    Art frame;
    std::optional<RecordTree> whole;
    double width = 0.0; // of the sheet, for what depends on it
    double height = 0.0;
};
struct Format {
    std::string id;
    SlotValues slots;
    std::vector<Size> sizes;
    std::optional<RecordTree> whole;
};

struct Library {
    int units = 1; // 1 millimetres, 2 inches
    std::vector<Format> formats;
    std::vector<Block> blocks;
    std::vector<RecordTree> records; // of the full form; they follow the formats and blocks
};

} // namespace app::authoring
