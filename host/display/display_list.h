// A sheet as a list of what is to be seen: lengths in millimetres, the origin at the lower left corner
// of the sheet, in the order in which the objects were made. Painters know nothing but this list.
#pragma once

#include <string>
#include <variant>
#include <vector>

namespace host::display {

struct Place {
    double x = 0.0;
    double y = 0.0;
    bool operator==(const Place &) const = default;
};

struct Pen {
    double width = 0.35; // millimetres
    int lineFont = 1;    // 1 solid, 2 dashed ... 7, see pens.h
    int color = 7;       // number in the palette of pens.h
    bool operator==(const Pen &) const = default;
};

struct LineItem {
    Pen pen;
    Place start;
    Place end;
};

struct ArcItem { // counter-clockwise from start to end, degrees; end - start = 360 is a full circle
    Pen pen;
    Place centre;
    double radius = 0.0;
    double startAngle = 0.0;
    double endAngle = 360.0;
};

struct FillItem { // even-odd rule
    int color = 7;
    std::vector<std::vector<Place>> outlines;
};

// One line of text. Everything that a reader must never see (references, control commands) is gone.
struct TextItem {
    std::string text;       // valid UTF-8
    Place origin;           // left end of the baseline
    double size = 3.5;      // height of a capital letter
    double angle = 0.0;     // degrees, counter-clockwise
    double aspect = 1.0;    // width over the font's own width
    double charSpace = 1.0; // factor, see host/model/text_metrics.h
    int color = 7;
    std::string font;   // its name in the part; every name is drawn with the drafting font
    unsigned group = 0; // lines of one note share it, so that they are read together
};

using Item = std::variant<LineItem, ArcItem, FillItem, TextItem>;

struct DisplayList {
    std::string sheet; // its name
    double width = 0.0;
    double height = 0.0;
    std::vector<Item> items;
};

} // namespace host::display
