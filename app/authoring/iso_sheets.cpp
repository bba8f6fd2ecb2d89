#include "app/authoring/iso_sheets.h"

#include "app/authoring/pens.h"

#include <array>

namespace app::authoring {

namespace {

// ISO 5457:1999, 4.2: border 20 at the filing edge, 10 elsewhere; the grid reference border lies in it,
// 5 outside the frame.
constexpr double kFilingMargin = 20.0;
constexpr double kMargin = 10.0;
constexpr double kStrip = 5.0;
constexpr double kField = 50.0; // 4.4: length of a field of the grid reference
constexpr double kLetter = 3.5; // 4.4: height of its characters
constexpr double kCentringMark =
    10.0;                           // 4.3: from the grid border inwards, 5 of it inside the frame
constexpr double kFrameWidth = 0.7; // 4.2
constexpr double kGridWidth = 0.35; // 4.4
constexpr double kDesignationInset = 2.0; // of the size designation from the frame's right edge

// Fields and corner lengths: 4.4, Table 2, counted from the axes of symmetry.
constexpr std::array<IsoSheet, 6> kSheets{{
    {"A0", "A0", 1189, 841, 1, 24, 16, 44.5, 70.5, false},
    {"A1", "A1", 841, 594, 2, 16, 12, 70.5, 47, false},
    {"A2", "A2", 594, 420, 3, 12, 8, 47, 60, false},
    {"A3", "A3", 420, 297, 4, 8, 6, 60, 48.5, false},
    {"A4", "A4", 297, 210, 5, 6, 4, 48.5, 55, true},
    {"A4P", "A4", 210, 297, 0, 4, 6, 55, 48.5, true},
}};

// The frame of one sheet while it is drawn.
class FrameArt {
public:
    FrameArt(const IsoSheet &sheet, const std::string &font, const std::vector<Rectangle> &occupied)
        : m_sheet(sheet), m_font(font), m_occupied(occupied)
    {}

    Art draw()
    {
        rectangle({{kFilingMargin, kMargin}, {right(), top()}}, kFrameWidth);
        rectangle({{kFilingMargin - kStrip, kMargin - kStrip}, {right() + kStrip, top() + kStrip}},
                  kGridWidth);
        columns();
        rows();
        centringMarks();
        trimmingMarks();
        designation();
        return std::move(m_art);
    }

private:
    double right() const { return m_sheet.width - kMargin; }
    double top() const { return m_sheet.height - kMargin; }

    void line(ArtPoint from, ArtPoint to, double width)
    {
        m_art.push_back(ArtLine{from, to, *penOfWidth(width)});
    }

    void rectangle(const Rectangle &r, double width)
    {
        line(r.low, {r.high.x, r.low.y}, width);
        line({r.high.x, r.low.y}, r.high, width);
        line(r.high, {r.low.x, r.high.y}, width);
        line({r.low.x, r.high.y}, r.low, width);
    }

    void letter(const std::string &text, ArtPoint middle)
    {
        m_art.push_back(ArtText{text, middle, 5, kLetter, m_font});
    }

    // Numerals from left to right, at the top and (not on A4) at the bottom.
    void columns()
    {
        const double bottomEdge = kMargin - kStrip;
        double start = kFilingMargin; // of the field, where the strip is visible
        for (int i = 0; i < m_sheet.fieldsWide; ++i) {
            const bool last = i + 1 == m_sheet.fieldsWide;
            const double end = last ? right() : m_sheet.cornerWide + kField * i;
            const double middle = (start + end) / 2;
            const bool axis = 2 * (i + 1) == m_sheet.fieldsWide;
            letter(std::to_string(i + 1), {middle, top() + kStrip / 2});
            if (!m_sheet.labelsOnTwoSides)
                letter(std::to_string(i + 1), {middle, kMargin - kStrip / 2});
            if (!last && !axis) { // on the axis stands the centring mark
                line({end, top()}, {end, top() + kStrip}, kGridWidth);
                line({end, bottomEdge}, {end, kMargin}, kGridWidth);
            }
            start = end;
        }
    }

    // Letters from top to bottom, without I and O, on the right and (not on A4) on the left.
    void rows()
    {
        const double leftEdge = kFilingMargin - kStrip;
        double start = top();
        char name = 'A';
        for (int i = 0; i < m_sheet.fieldsHigh; ++i) {
            const bool last = i + 1 == m_sheet.fieldsHigh;
            const double end = last ? kMargin : m_sheet.height - (m_sheet.cornerHigh + kField * i);
            const double middle = (start + end) / 2;
            const bool axis = 2 * (i + 1) == m_sheet.fieldsHigh;
            letter(std::string(1, name), {right() + kStrip / 2, middle});
            if (!m_sheet.labelsOnTwoSides)
                letter(std::string(1, name), {kFilingMargin - kStrip / 2, middle});
            if (!last && !axis) {
                line({leftEdge, end}, {kFilingMargin, end}, kGridWidth);
                line({right(), end}, {right() + kStrip, end}, kGridWidth);
            }
            start = end;
            do ++name;
            while (name == 'I' || name == 'O');
        }
    }

    bool isOccupied(ArtPoint p) const
    {
        for (const Rectangle &r : m_occupied) {
            if (p.x > r.low.x && p.x < r.high.x && p.y > r.low.y && p.y < r.high.y) return true;
        }
        return false;
    }

    // From the grid border through the strip to the frame, and as far again inside it unless a block
    // stands there.
    void centringMark(ArtPoint outer, ArtPoint direction)
    {
        const ArtPoint inner{outer.x + kCentringMark * direction.x,
                             outer.y + kCentringMark * direction.y};
        const ArtPoint middle{outer.x + 0.75 * kCentringMark * direction.x,
                              outer.y + 0.75 * kCentringMark * direction.y};
        const ArtPoint frame{outer.x + kStrip * direction.x, outer.y + kStrip * direction.y};
        line(outer, isOccupied(middle) ? frame : inner, kFrameWidth);
    }

    void centringMarks()
    {
        const double x = m_sheet.width / 2;
        const double y = m_sheet.height / 2;
        centringMark({kFilingMargin - kStrip, y}, {1, 0});
        centringMark({right() + kStrip, y}, {-1, 0});
        centringMark({x, kMargin - kStrip}, {0, 1});
        centringMark({x, top() + kStrip}, {0, -1});
    }

    // 4.5: two overlapping filled rectangles 10 x 5 along the trimmed edges, at each corner.
    void trimmingMarks()
    {
        for (const bool atRight : {false, true}) {
            for (const bool atTop : {false, true}) {
                std::vector<ArtPoint> outline{{0, 0}, {10, 0}, {10, 5}, {5, 5}, {5, 10}, {0, 10}};
                for (ArtPoint &p : outline) {
                    if (atRight) p.x = m_sheet.width - p.x;
                    if (atTop) p.y = m_sheet.height - p.y;
                }
                m_art.push_back(ArtArea{{outline}});
            }
        }
    }

    // 3.1: in the bottom border, at the right corner.
    void designation()
    {
        m_art.push_back(ArtText{m_sheet.label,
                                {right() - kDesignationInset, kMargin - kStrip / 2},
                                6,
                                kLetter,
                                m_font});
    }

    const IsoSheet &m_sheet;
    const std::string &m_font;
    const std::vector<Rectangle> &m_occupied;
    Art m_art;
};

} // namespace

const IsoSheet *isoSheet(const std::string &id)
{
    for (const IsoSheet &sheet : kSheets)
        if (id == sheet.id) return &sheet;
    return nullptr;
}

std::string isoSheetIds()
{
    std::string ids;
    for (const IsoSheet &sheet : kSheets)
        ids += ids.empty() ? sheet.id : std::string(", ") + sheet.id;
    return ids;
}

Size isoSize(const IsoSheet &sheet, int frameLayer)
{
    constexpr int kLetters = 1, kNumerals = 2;
    Size size;
    size.width = sheet.width;
    size.height = sheet.height;
    size.slots.strings = {
        {"Id", sheet.id},
        {"Description",
         std::string(sheet.label) + (sheet.width > sheet.height ? " landscape" : " portrait")},
        {"Label", sheet.label}};
    // The zone names of the interface are counted from the right and from the bottom; with these figures
    // their columns have the ticks of the border, and as many rows as it has.
    size.slots.doubles = {{"Height", sheet.height},
                          {"Length", sheet.width},
                          {"RightOffset", sheet.cornerWide - kField},
                          {"HorzZoneLength", kField},
                          {"VertZoneLength", 0.0}};
    size.slots.ints = {{"FrameLayer", frameLayer},
                       {"UgSizeCode", sheet.sizeCode},
                       {"NumberHorzZones", sheet.fieldsWide},
                       {"NumberVertZones", sheet.fieldsHigh},
                       {"HorzZoneType", kNumerals},
                       {"VertZoneType", kLetters}};
    return size;
}

Art isoFrame(const IsoSheet &sheet, const std::string &font, const std::vector<Rectangle> &occupied)
{
    return FrameArt(sheet, font, occupied).draw();
}

} // namespace app::authoring
