// Figures of the standards that the shipped formats are laid out after: ISO 5457 and ISO 7200, ASME Y14.1 and
// Y14.35. Cells are x, y, width, height from the lower left corner of their block.
#include "app/authoring/library_reader.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <map>
#include <string>
#include <vector>

using namespace app::authoring;

namespace {

constexpr int kPen07 = 10, kPen035 = 8;

Library shipped(const std::string &name)
{
    return readLibrary(std::string(QELFMT_SOURCE_DIR "/formats/") + name + ".yaml");
}

const Block &blockOf(const Library &library, const std::string &id)
{
    for (const Block &block : library.blocks)
        if (block.id == id) return block;
    throw std::runtime_error("no block " + id);
}

const Size &sizeOf(const Library &library, const std::string &format, const std::string &id)
{
    for (const Format &one : library.formats)
        for (const Size &size : one.sizes)
            if (one.id == format && size.slots.strings.at("Id") == id) return size;
    throw std::runtime_error("no size " + id);
}

bool near(double a, double b) { return std::abs(a - b) < 1e-9; }

// Whether a line of that pen runs between the points, either way.
bool draws(const Art &art, ArtPoint a, ArtPoint b, int pen)
{
    for (const Shape &shape : art) {
        const auto *line = std::get_if<ArtLine>(&shape);
        if (!line || line->pen != pen) continue;
        const auto joins = [&](ArtPoint from, ArtPoint to) {
            return near(line->from.x, from.x) && near(line->from.y, from.y) &&
                   near(line->to.x, to.x) && near(line->to.y, to.y);
        };
        if (joins(a, b) || joins(b, a)) return true;
    }
    return false;
}

bool drawsRectangle(const Art &art, ArtPoint low, ArtPoint high, int pen)
{
    return draws(art, low, {high.x, low.y}, pen) && draws(art, {high.x, low.y}, high, pen) &&
           draws(art, high, {low.x, high.y}, pen) && draws(art, {low.x, high.y}, low, pen);
}

// --- ISO 5457 ---------------------------------------------------------------------------------------

struct IsoFigures {
    const char *id;
    double width, height;
    int columns, rows;    // fields of the grid reference system
    double across, along; // the first ticks, from the left and from the lower edge
};

class IsoFrame : public testing::TestWithParam<IsoFigures> {};

TEST_P(IsoFrame, HasTheFiguresOfIso5457)
{
    const IsoFigures &sheet = GetParam();
    const Library iso = shipped("iso");
    const Size &size = sizeOf(iso, "ISO", sheet.id);
    const Art &art = size.frame;
    // A filing margin of 20 at the left and 10 elsewhere; the grid border 5 outside of the frame.
    EXPECT_TRUE(drawsRectangle(art, {20, 10}, {sheet.width - 10, sheet.height - 10}, kPen07));
    EXPECT_TRUE(drawsRectangle(art, {15, 5}, {sheet.width - 5, sheet.height - 5}, kPen035));
    EXPECT_EQ(size.slots.ints.at("NumberHorzZones"), sheet.columns);
    EXPECT_EQ(size.slots.ints.at("NumberVertZones"), sheet.rows);

    // Ticks every 50, counted from the axes, where the centring marks stand instead.
    // Between n fields stand n - 1.
    for (int i = 0; i + 1 < sheet.columns; ++i) {
        const double x = sheet.across + 50 * i;
        if (near(x, sheet.width / 2)) continue;
        EXPECT_TRUE(draws(art, {x, sheet.height - 10}, {x, sheet.height - 5}, kPen035)) << x;
    }
    for (int i = 0; i + 1 < sheet.rows; ++i) {
        const double y = sheet.along + 50 * i;
        if (near(y, sheet.height / 2)) continue;
        EXPECT_TRUE(draws(art, {sheet.width - 10, y}, {sheet.width - 5, y}, kPen035)) << y;
    }
    EXPECT_TRUE(near(2 * sheet.across + 50 * (sheet.columns - 2), sheet.width));
    EXPECT_TRUE(near(2 * sheet.along + 50 * (sheet.rows - 2), sheet.height));

    // Letters and numerals 3.5 high.
    for (const Shape &shape : art)
        if (const auto *text = std::get_if<ArtText>(&shape)) {
            EXPECT_EQ(text->size, 3.5);
        }
}

INSTANTIATE_TEST_SUITE_P(Sheets, IsoFrame,
                         testing::Values(IsoFigures{"A0", 1189, 841, 24, 16, 44.5, 70.5},
                                         IsoFigures{"A1", 841, 594, 16, 12, 70.5, 47},
                                         IsoFigures{"A2", 594, 420, 12, 8, 47, 60},
                                         IsoFigures{"A3", 420, 297, 8, 6, 60, 48.5},
                                         IsoFigures{"A4", 297, 210, 6, 4, 48.5, 55},
                                         IsoFigures{"A4P", 210, 297, 4, 6, 55, 48.5}),
                         [](const auto &sheet) { return std::string(sheet.param.id); });

// --- ASME Y14.1 -------------------------------------------------------------------------------------

struct AsmeFigures {
    const char *format, *id;
    double width, height, side, end; // the sheet and its margins
    int columns, rows;
};

class AsmeFrameFigures : public testing::TestWithParam<AsmeFigures> {};

TEST_P(AsmeFrameFigures, AreThoseOfY141)
{
    const AsmeFigures &sheet = GetParam();
    const Library asme = shipped("asme");
    const Size &size = sizeOf(asme, sheet.format, sheet.id);
    EXPECT_EQ(size.slots.doubles.at("Length"), sheet.width);
    EXPECT_EQ(size.slots.doubles.at("Height"), sheet.height);
    EXPECT_TRUE(drawsRectangle(size.frame, {sheet.side, sheet.end},
                               {sheet.width - sheet.side, sheet.height - sheet.end}, kPen07));
    EXPECT_EQ(size.slots.ints.at("NumberHorzZones"), sheet.columns);
    EXPECT_EQ(size.slots.ints.at("NumberVertZones"), sheet.rows);
}

INSTANTIATE_TEST_SUITE_P(Sheets, AsmeFrameFigures,
                         testing::Values(AsmeFigures{"ASME", "A", 11, 8.5, 0.25, 0.38, 0, 0},
                                         AsmeFigures{"ASME", "AV", 8.5, 11, 0.38, 0.25, 0, 0},
                                         AsmeFigures{"ASME", "B", 17, 11, 0.62, 0.38, 0, 0},
                                         AsmeFigures{"ASME", "C", 22, 17, 0.5, 0.75, 4, 4},
                                         AsmeFigures{"ASME-LARGE", "D", 34, 22, 1, 0.5, 8, 4},
                                         AsmeFigures{"ASME-LARGE", "E", 44, 34, 0.5, 1, 8, 8},
                                         AsmeFigures{"ASME-LARGE", "F", 40, 28, 0.5, 0.5, 8, 6}),
                         [](const auto &sheet) { return std::string(sheet.param.id); });

// --- title blocks -----------------------------------------------------------------------------------

using Cells = std::map<std::string, std::array<double, 4>>;

// The boxes that are drawn, by the cell that has each.
Cells drawnCells(const Block &block)
{
    Cells cells;
    for (const BlockBox &box : block.boxes) cells[box.cell] = {box.x, box.y, box.width, box.height};
    return cells;
}

TEST(TitleBlocks, AreDividedAsUsualAfterIso7200)
{
    const Library iso = shipped("iso");
    const Cells four{{"department", {0, 27, 26, 9}},       {"reference", {26, 27, 43, 9}},
                     {"creator", {69, 27, 44, 9}},         {"approver", {113, 27, 43, 9}},
                     {"classification", {156, 27, 24, 9}}, {"owner", {0, 0, 69, 27}},
                     {"document_type", {69, 18, 60, 9}},   {"status", {129, 18, 51, 9}},
                     {"title", {69, 0, 60, 18}},           {"number", {129, 9, 51, 9}},
                     {"revision", {129, 0, 7, 9}},         {"date", {136, 0, 25, 9}},
                     {"language", {161, 0, 10, 9}},        {"sheet", {171, 0, 9, 9}}};
    EXPECT_EQ(drawnCells(blockOf(iso, "TITLE")), four);
    const Cells three{{"department", {0, 18, 32, 9}},     {"reference", {32, 18, 42, 9}},
                      {"document_type", {74, 18, 61, 9}}, {"status", {135, 18, 45, 9}},
                      {"owner", {0, 0, 32, 18}},          {"creator", {32, 9, 42, 9}},
                      {"approver", {32, 0, 42, 9}},       {"title", {74, 0, 55, 18}},
                      {"number", {129, 9, 51, 9}},        {"revision", {129, 0, 9, 9}},
                      {"date", {138, 0, 24, 9}},          {"language", {162, 0, 9, 9}},
                      {"sheet", {171, 0, 9, 9}}};
    EXPECT_EQ(drawnCells(blockOf(iso, "TITLE_COMPACT")), three);
}

TEST(TitleBlocks, TakeTheLengthsThatIso7200Recommends)
{
    const std::map<std::string, int> lengths{
        {"number", 16},    {"revision", 2},  {"date", 10},       {"sheet", 4},
        {"language", 4},   {"title", 25},    {"supplement", 25}, {"department", 10},
        {"reference", 20}, {"approver", 20}, {"creator", 20},    {"document_type", 30},
        {"status", 20}};
    const Library iso = shipped("iso");
    for (const char *id : {"TITLE", "TITLE_COMPACT"}) {
        std::map<std::string, int> found;
        for (const Field &field : blockOf(iso, id).fields)
            if (field.characters > 0) found[field.slots.strings.at("Id")] = field.characters;
        EXPECT_EQ(found, lengths) << id; // that they fit is a matter of the checks
    }
}

TEST(TitleBlocks, AreDividedAfterY141)
{
    const Library asme = shipped("asme");
    const Cells small = drawnCells(blockOf(asme, "TITLE_SMALL"));
    const Cells large = drawnCells(blockOf(asme, "TITLE_LARGE"));
    const Cells smallFigures{{"treatment", {0, 0, 2, 0.315}},
                             {"material", {0, 0.315, 2, 0.315}},
                             {"scale", {2, 0, 1, 0.25}},
                             {"weight", {3, 0, 1.5, 0.25}},
                             {"sheet", {4.5, 0, 1.75, 0.25}},
                             {"paper", {2, 0.25, 0.38, 0.38}},
                             {"cage", {2.38, 0.25, 1.12, 0.38}},
                             {"number", {3.5, 0.25, 2.37, 0.38}},
                             {"revision", {5.87, 0.25, 0.38, 0.38}},
                             {"title", {2, 0.63, 4.25, 0.62}},
                             {"owner", {2, 1.25, 4.25, 0.5}}};
    const Cells largeFigures{
        {"treatment", {0, 0, 2.5, 0.375}},    {"material", {0, 0.375, 2.5, 0.375}},
        {"scale", {2.5, 0, 0.99, 0.25}},      {"weight", {3.49, 0, 2.38, 0.25}},
        {"sheet", {5.87, 0, 1.75, 0.25}},     {"paper", {2.5, 0.25, 0.38, 0.5}},
        {"cage", {2.88, 0.25, 1.25, 0.5}},    {"number", {4.13, 0.25, 2.99, 0.5}},
        {"revision", {7.12, 0.25, 0.5, 0.5}}, {"title", {2.5, 0.75, 5.12, 1.12}},
        {"owner", {2.5, 1.87, 5.12, 0.63}}};
    for (const auto &[id, cell] : smallFigures) EXPECT_EQ(small.at(id), cell) << id;
    for (const auto &[id, cell] : largeFigures) EXPECT_EQ(large.at(id), cell) << id;
}

TEST(RevisionBlocks, HaveTheColumnsOfY1435)
{
    const Library asme = shipped("asme");
    const auto widths = [&](const char *id) {
        std::vector<double> found;
        for (const Field &column : blockOf(asme, id).tables.at(0).fields)
            found.push_back(column.slots.doubles.at("Width"));
        return found;
    };
    EXPECT_EQ(widths("REVISIONS_SMALL"), (std::vector{0.5, 0.38, 2.74, 0.88, 1.0})); // 5.50
    EXPECT_EQ(widths("REVISIONS_LARGE"), (std::vector{0.5, 0.38, 4.24, 0.88, 1.0})); // 7.00
}

// What a table's heading is drawn with continues as the borders of its rows.
TEST(Headings, AreAsWideAsTheLinesOfRows)
{
    constexpr int kPen05 = 9;
    const Library iso = shipped("iso");
    const Art &art = blockOf(iso, "REVISIONS").art;
    EXPECT_TRUE(drawsRectangle(art, {0, 0}, {180, 7}, kPen05) ||
                (draws(art, {0, 0}, {180, 0}, kPen05) && draws(art, {0, 7}, {180, 7}, kPen05)));
    EXPECT_FALSE(draws(art, {0, 0}, {180, 0}, kPen035));
}

} // namespace
