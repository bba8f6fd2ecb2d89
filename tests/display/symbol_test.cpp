#include "paper.h"
#include "picture.h"

#include <cmath>
#include <fstream>

using namespace host::display;

namespace {

class Symbols : public Paper {
protected:
    void SetUp() override
    {
        Paper::SetUp();
        newPart("part");
        m_sheet = newSheet("A", 60, 60);
    }
    DisplayList list() const { return displayList(m_sheet); }

    tag_t m_sheet = NULL_TAG;
};

// Is the place inside the outline of the type, of size 20 about (30, 30)?
bool inside(int type, double x, double y)
{
    const double dx = x - 30, dy = y - 30, root3 = std::sqrt(3.0);
    switch (type) {
    case UF_DRF_sym_circle:
    case UF_DRF_sym_divcir:
    case UF_DRF_sym_datum:
        return std::hypot(dx, dy) < 10;
    case UF_DRF_sym_square:
    case UF_DRF_sym_divsqr:
        return std::max(std::abs(dx), std::abs(dy)) < 10;
    case UF_DRF_sym_hexagon:
    case UF_DRF_sym_divhex:
        return std::abs(dy) < 10 && std::abs(dx) < (20 - std::abs(dy)) / root3;
    case UF_DRF_sym_triup:
        return dy > -10 && std::abs(dx) < (10 - dy) / root3;
    case UF_DRF_sym_tridown:
        return dy < 10 && std::abs(dx) < (10 + dy) / root3;
    default:
        return std::abs(dy) < 10 && std::abs(dx) < 30;
    }
}

} // namespace

TEST_F(Symbols, HaveTheOutlineOfTheirType)
{
    struct Row {
        int type;
        std::size_t lines; // the divider included
        std::size_t arcs;
    };
    for (const Row &row : {Row{UF_DRF_sym_circle, 0, 1},
                           {UF_DRF_sym_divcir, 1, 1},
                           {UF_DRF_sym_square, 4, 0},
                           {UF_DRF_sym_divsqr, 5, 0},
                           {UF_DRF_sym_hexagon, 6, 0},
                           {UF_DRF_sym_divhex, 7, 0},
                           {UF_DRF_sym_triup, 3, 0},
                           {UF_DRF_sym_tridown, 3, 0},
                           {UF_DRF_sym_datum, 1, 1},
                           {UF_DRF_sym_roundbox, 4, 4},
                           {UF_DRF_sym_underline, 1, 0},
                           {UF_DRF_sym_nosymbol, 0, 0}}) {
        SCOPED_TRACE(row.type);
        const tag_t made = symbol(row.type, "A", "B", 30, 30, 20);
        EXPECT_EQ(itemsOf<LineItem>(list()).size(), row.lines);
        EXPECT_EQ(itemsOf<ArcItem>(list()).size(), row.arcs);
        ASSERT_EQ(UF_OBJ_delete_object(made), 0);
    }
}

TEST_F(Symbols, AreAsHighAsTheirSizeAboutTheirOrigin)
{
    for (int type = UF_DRF_sym_circle; type <= UF_DRF_sym_roundbox; ++type) {
        SCOPED_TRACE(type);
        const tag_t made = symbol(type, "", "", 30, 30, 20);
        RenderOptions options;
        options.pngDpi = 300;
        writePng(m_sheet, file("symbol.png"), options);
        const Picture picture = Picture::ofPng(file("symbol.png"), 60);
        const auto box = picture.inked(1, 1, 59, 59);
        EXPECT_NEAR(box.height(), 20.5,
                    0.6); // and the pen of 0.5; mitred corners stand out a little
        EXPECT_NEAR((box.top + box.bottom) / 2, 30, 0.2);
        EXPECT_NEAR((box.left + box.right) / 2, 30, 0.1);
        ASSERT_EQ(UF_OBJ_delete_object(made), 0);
    }
}

// A symbol of size 13 on a sheet of 11 by 8.5 inches: the preference has no unit of the part's.
TEST_F(Symbols, AreAsLargeOnSheetsInInches)
{
    newPart("inch", 2);
    m_sheet = newSheet("B", 11, 8.5, 2);
    symbol(UF_DRF_sym_circle, "A", "", 5, 4, 13);
    const auto arcs = itemsOf<ArcItem>(list());
    ASSERT_EQ(arcs.size(), 1u);
    EXPECT_DOUBLE_EQ(arcs[0].radius, 6.5); // millimetres
    EXPECT_DOUBLE_EQ(arcs[0].centre.x, 5 * 25.4);
}

TEST_F(Symbols, DividedShapesShowBothTextsOthersTheUpperOne)
{
    for (int type = UF_DRF_sym_circle; type <= UF_DRF_sym_nosymbol; ++type) {
        SCOPED_TRACE(type);
        const tag_t made = symbol(type, "A1", "B2", 30, 30, 20);
        const auto texts = textsOf(list());
        const bool divided = type == UF_DRF_sym_divcir || type == UF_DRF_sym_divsqr ||
                             type == UF_DRF_sym_divhex || type == UF_DRF_sym_datum;
        ASSERT_EQ(texts.size(), divided ? 2u : 1u);
        EXPECT_EQ(texts[0].text, "A1");
        if (divided) {
            EXPECT_EQ(texts[1].text, "B2");
            EXPECT_GT(texts[0].origin.y, 30);                 // above the dividing line
            EXPECT_LT(texts[1].origin.y + texts[1].size, 30); // below it
        }
        ASSERT_EQ(UF_OBJ_delete_object(made), 0);
    }
}

TEST_F(Symbols, NoTextLeavesItsShape)
{
    for (const char *text : {"A", "WWWWWWWW", "A very long text in a small shape", "Qjy,Qjy",
                             "\xc3\x84\xc3\x96\xc3\x85\xc3\xa7"}) {
        for (const double size : {3.5, 12.0}) {
            for (int type = UF_DRF_sym_circle; type <= UF_DRF_sym_roundbox; ++type) {
                SCOPED_TRACE(std::string(text) + " " + std::to_string(type));
                const tag_t made = symbol(type, text, text, 30, 30, 20, size);
                DisplayList texts = list();
                std::erase_if(texts.items, [](const Item &item) {
                    return !std::holds_alternative<TextItem>(item);
                });
                ASSERT_FALSE(texts.items.empty());
                RenderOptions options;
                options.pngDpi = 100;
                {
                    std::ofstream out(file("texts.png"), std::ios::binary);
                    out << pngOf(texts, options);
                }
                const Picture picture = Picture::ofPng(file("texts.png"), 60);
                std::size_t outside = 0;
                for (int row = 0; row < picture.height(); ++row)
                    for (int column = 0; column < picture.width(); ++column)
                        outside += picture.inkAt(column, row) > 0.5 &&
                                   !inside(type, (column + 0.5) / picture.perMillimetre(),
                                           60 - (row + 0.5) / picture.perMillimetre());
                EXPECT_EQ(outside, 0u);
                ASSERT_EQ(UF_OBJ_delete_object(made), 0);
            }
        }
    }
}

TEST_F(Symbols, ATextThatFitsKeepsItsSizeAndStandsInTheMiddle)
{
    symbol(UF_DRF_sym_circle, "H", "", 30, 30, 20, 5);
    const auto texts = textsOf(list());
    ASSERT_EQ(texts.size(), 1u);
    EXPECT_EQ(texts[0].size, 5);
    EXPECT_EQ(texts[0].aspect, 1);
    EXPECT_DOUBLE_EQ(texts[0].origin.y, 27.5);
    RenderOptions options;
    options.pngDpi = 600;
    writePng(m_sheet, file("one.png"), options);
    const auto box = Picture::ofPng(file("one.png"), 60).inked(23, 23, 37, 37);
    EXPECT_NEAR((box.left + box.right) / 2, 30, 0.05);
    EXPECT_NEAR((box.bottom + box.top) / 2, 30, 0.05);
}
