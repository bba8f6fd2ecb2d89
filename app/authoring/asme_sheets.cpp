#include "app/authoring/asme_sheets.h"

#include "app/authoring/pens.h"

#include <algorithm>
#include <array>

namespace app::authoring {

namespace {

constexpr double kFrameWidth = 0.7; // mm
constexpr double kTickWidth = 0.35; // mm
constexpr double kTick = 0.38;      // across the margin
constexpr double kLabel = 0.25;     // height of zone labels
constexpr double kArrowWidth = 0.3, kArrowHeight = 0.15;
constexpr double kWideArrowWidth = 0.4, kWideArrowHeight = 0.2; // on sheets of 34 and more
constexpr double kWideSheet = 34.0;

// Sheet, margins, zones.
constexpr std::array<AsmeSheet, 7> kSheets{{
    {"A", "A", "A, 11 x 8.5", 11, 8.5, 1, 0.25, 0.38, 0, 0},
    {"AV", "A", "A vertical, 8.5 x 11", 8.5, 11, 0, 0.38, 0.25, 0, 0},
    {"B", "B", "B, 17 x 11", 17, 11, 2, 0.62, 0.38, 0, 0},
    {"C", "C", "C, 22 x 17", 22, 17, 3, 0.5, 0.75, 4, 4},
    {"D", "D", "D, 34 x 22", 34, 22, 4, 1, 0.5, 8, 4},
    {"E", "E", "E, 44 x 34", 44, 34, 5, 0.5, 1, 8, 8},
    {"F", "F", "F, 40 x 28", 40, 28, 6, 0.5, 0.5, 8, 6},
}};

class AsmeFrame {
public:
    AsmeFrame(const AsmeSheet &sheet, const std::string &font) : m_sheet(sheet), m_font(font) {}

    Art draw()
    {
        const double left = m_sheet.sideMargin, low = m_sheet.endMargin;
        line({left, low}, {right(), low}, kFrameWidth);
        line({right(), low}, {right(), top()}, kFrameWidth);
        line({right(), top()}, {left, top()}, kFrameWidth);
        line({left, top()}, {left, low}, kFrameWidth);
        columns();
        rows();
        arrows();
        return std::move(m_art);
    }

private:
    double right() const { return m_sheet.width - m_sheet.sideMargin; }
    double top() const { return m_sheet.height - m_sheet.endMargin; }

    void line(ArtPoint from, ArtPoint to, double width)
    {
        m_art.push_back(ArtLine{from, to, *penOfWidth(width)});
    }

    void label(const std::string &text, ArtPoint middle)
    {
        m_art.push_back(ArtText{text, middle, 5, kLabel, m_font});
    }

    // Numerals from right to left, along the top and the bottom.
    void columns()
    {
        const double zone = m_sheet.columns ? m_sheet.width / m_sheet.columns : 0.0;
        const double tick = std::min(kTick, m_sheet.endMargin);
        for (int i = 1; i <= m_sheet.columns; ++i) {
            const double edge = m_sheet.width - i * zone, middle = edge + zone / 2;
            label(std::to_string(i), {middle, m_sheet.endMargin / 2});
            label(std::to_string(i), {middle, m_sheet.height - m_sheet.endMargin / 2});
            if (i == m_sheet.columns || 2 * i == m_sheet.columns)
                continue; // the middle has its arrow
            line({edge, m_sheet.endMargin - tick}, {edge, m_sheet.endMargin}, kTickWidth);
            line({edge, top()}, {edge, top() + tick}, kTickWidth);
        }
    }

    // Letters from bottom to top, on both sides.
    void rows()
    {
        const double zone = m_sheet.rows ? m_sheet.height / m_sheet.rows : 0.0;
        const double tick = std::min(kTick, m_sheet.sideMargin);
        for (int i = 1; i <= m_sheet.rows; ++i) {
            const double edge = i * zone, middle = edge - zone / 2;
            const std::string letter(1, static_cast<char>('A' + i - 1)); // 8 rows at most: no I
            label(letter, {m_sheet.sideMargin / 2, middle});
            label(letter, {m_sheet.width - m_sheet.sideMargin / 2, middle});
            if (i == m_sheet.rows || 2 * i == m_sheet.rows) continue;
            line({m_sheet.sideMargin - tick, edge}, {m_sheet.sideMargin, edge}, kTickWidth);
            line({right(), edge}, {right() + tick, edge}, kTickWidth);
        }
    }

    // At the middle of each side, the point on the frame.
    void arrows()
    {
        const bool wide = m_sheet.width >= kWideSheet;
        const double half = (wide ? kWideArrowWidth : kArrowWidth) / 2;
        const double high = wide ? kWideArrowHeight : kArrowHeight;
        const double x = m_sheet.width / 2, y = m_sheet.height / 2;
        triangle({x, m_sheet.endMargin}, {half, 0}, {0, -high});
        triangle({x, top()}, {half, 0}, {0, high});
        triangle({m_sheet.sideMargin, y}, {0, half}, {-high, 0});
        triangle({right(), y}, {0, half}, {high, 0});
    }

    void triangle(ArtPoint tip, ArtPoint along, ArtPoint out)
    {
        const ArtPoint base{tip.x + out.x, tip.y + out.y};
        m_art.push_back(ArtArea{
            {{tip, {base.x + along.x, base.y + along.y}, {base.x - along.x, base.y - along.y}}}});
    }

    const AsmeSheet &m_sheet;
    const std::string &m_font;
    Art m_art;
};

} // namespace

const AsmeSheet *asmeSheet(const std::string &id)
{
    for (const AsmeSheet &sheet : kSheets)
        if (id == sheet.id) return &sheet;
    return nullptr;
}

std::string asmeSheetIds()
{
    std::string ids;
    for (const AsmeSheet &sheet : kSheets)
        ids += ids.empty() ? sheet.id : std::string(", ") + sheet.id;
    return ids;
}

Size asmeSize(const AsmeSheet &sheet, int frameLayer)
{
    constexpr int kLetters = 1, kNumerals = 2;
    Size size;
    size.width = sheet.width;
    size.height = sheet.height;
    size.slots.strings = {
        {"Id", sheet.id}, {"Description", sheet.description}, {"Label", sheet.label}};
    // Zones are fractions of the whole sheet, so that the counts alone say where their lines are, and the
    // names that the interface answers are those that the frame prints.
    size.slots.doubles = {{"Height", sheet.height},
                          {"Length", sheet.width},
                          {"RightOffset", 0.0},
                          {"HorzZoneLength", 0.0},
                          {"VertZoneLength", 0.0}};
    size.slots.ints = {{"FrameLayer", frameLayer},         {"UgSizeCode", sheet.sizeCode},
                       {"NumberHorzZones", sheet.columns}, {"NumberVertZones", sheet.rows},
                       {"HorzZoneType", kNumerals},        {"VertZoneType", kLetters}};
    return size;
}

Art asmeFrame(const AsmeSheet &sheet, const std::string &font)
{
    return AsmeFrame(sheet, font).draw();
}

} // namespace app::authoring
