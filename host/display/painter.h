// Who draws: one implementation a kind of file. Painters get millimetres with y upwards.
#pragma once

#include "display/display_list.h"
#include "display/pens.h"
#include "display/shaping.h"

#include <string>
#include <vector>

namespace host::display {

class Painter {
public:
    virtual ~Painter() = default;
    virtual void line(const LineItem &line) = 0;
    virtual void arc(const ArcItem &arc) = 0;
    virtual void fill(const FillItem &fill) = 0;
    virtual void text(const ShapedText &text) = 0;
};

// The texts as one reads a sheet: from the top down, in a row from left to right, the lines of a note
// together. So copied and spoken text makes sense, whatever the order of drawing was.
std::vector<const TextItem *> readingOrder(const DisplayList &list);

struct Page {
    const DisplayList *list = nullptr;
    std::vector<ShapedText> texts; // in reading order
};
Page shaped(const DisplayList &list, Shaper &shaper);

// Lines, arcs and areas in their order, then the texts: an area never hides one.
void paint(const Page &page, Painter &painter);

// How the pen is to be set: solid lines end round, so that corners close; dashes end square, so that
// they are as long as they should be.
struct Stroke {
    double width = 0.0;
    std::vector<double> dashes; // millimetres
    Rgb color;
    bool operator==(const Stroke &) const = default;
};
Stroke strokeOf(const Pen &pen, bool monochrome);

} // namespace host::display
