// Display lists that no drawing should give, but a part file might.
#include "display/render.h"
#include "picture.h"

#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>
#include <fstream>
#include <limits>

using namespace host::display;

namespace {

constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinite = std::numeric_limits<double>::infinity();

DisplayList listOf(std::vector<Item> items) { return {"A", 100, 100, std::move(items)}; }

} // namespace

TEST(Robust, WhatCannotBeDrawnIsLeftOutAndTheRestIsDrawn)
{
    TextItem text;
    text.text = "seen";
    text.origin = {10, 10};
    std::vector<Item> items{text, LineItem{{}, {0, 50}, {100, 50}}};
    const DisplayList good = listOf(items);
    for (const double bad : {kNan, kInfinite, -kInfinite, 1e300}) {
        items.push_back(LineItem{{}, {bad, 0}, {1, 1}});
        items.push_back(ArcItem{{}, {0, bad}, 1, 0, 360});
        items.push_back(ArcItem{{}, {0, 0}, bad, 0, 360});
        items.push_back(ArcItem{{}, {0, 0}, 1, 0, bad});
        items.push_back(FillItem{7, {{{0, 0}, {1, bad}, {1, 0}}}});
        for (double TextItem::*member :
             {&TextItem::size, &TextItem::aspect, &TextItem::angle, &TextItem::charSpace}) {
            TextItem wrong = text;
            wrong.*member = bad;
            items.push_back(wrong);
        }
    }
    items.push_back(FillItem{7, {}});
    items.push_back(FillItem{7, {{}}});
    items.push_back(ArcItem{{}, {0, 0}, -1, 0, 90});
    const DisplayList bad = listOf(items);
    EXPECT_EQ(pngOf(bad), pngOf(good));
    // Empty areas leave their traces in the others, but nothing else does.
    EXPECT_EQ(svgOf(bad).find("nan"), std::string::npos);
    EXPECT_EQ(svgOf(bad).find("inf"), std::string::npos);
    EXPECT_LT(svgOf(bad).size(), svgOf(good).size() + 300);
    EXPECT_LT(pdfOf({bad}).size(), pdfOf({good}).size() + 100);
}

TEST(Robust, ASheetWithoutASizeIsRefusedByName)
{
    for (const auto &[width, height] :
         {std::pair{0.0, 10.0}, {10.0, -1.0}, {kNan, 10.0}, {10.0, kInfinite}, {1e7, 10.0}}) {
        DisplayList list = listOf({});
        list.width = width;
        list.height = height;
        for (const auto &render : {+[](const DisplayList &l) { return pdfOf({l}); },
                                   +[](const DisplayList &l) { return svgOf(l); },
                                   +[](const DisplayList &l) { return pngOf(l); }}) {
            try {
                render(list);
                FAIL() << width << " x " << height;
            } catch (const RenderError &error) {
                EXPECT_EQ(std::string(error.what()).find("The sheet A has no size"), 0u)
                    << error.what();
            }
        }
    }
}

TEST(Robust, ArcsOfMoreThanATurnAreCircles)
{
    const DisplayList circle = listOf({ArcItem{{}, {50, 50}, 20, 0, 360}});
    const DisplayList more = listOf({ArcItem{{}, {50, 50}, 20, 0, 5000}});
    EXPECT_EQ(pdfOf({more}), pdfOf({circle}));
    EXPECT_EQ(svgOf(more), svgOf(circle));
    EXPECT_EQ(pngOf(more), pngOf(circle));
}

TEST(Robust, TextOfAnyBytesAndLengthIsDrawn)
{
    TextItem text;
    text.origin = {10, 10};
    for (int i = 0; i < 5000; ++i) text.text += static_cast<char>(i * 7919 % 255 + 1);
    const DisplayList list = listOf({text});
    const std::string folder = std::filesystem::temp_directory_path().string();
    std::ofstream(folder + "/robust.pdf", std::ios::binary) << pdfOf({list});
    std::ofstream(folder + "/robust.svg", std::ios::binary) << svgOf(list);
    EXPECT_NE(output("pdfinfo " + folder + "/robust.pdf").find("Pages:           1"),
              std::string::npos);
    output("rsvg-convert " + folder + "/robust.svg | wc -c");
    EXPECT_FALSE(pngOf(list).empty());
    for (const char *name : {"/robust.pdf", "/robust.svg"}) std::filesystem::remove(folder + name);
}

TEST(Robust, ThousandsOfDifferentCharactersShareOneFontWithTwoByteCodes)
{
    std::vector<Item> items;
    double y = 95;
    for (char32_t from = 0x21; from < 0x1e00; from += 64) {
        TextItem text;
        text.size = 1;
        text.origin = {1, y -= 0.5};
        for (char32_t c = from; c < from + 64; ++c) {
            if (c >= 0x80 && c < 0x800) {
                text.text += static_cast<char>(0xc0 | c >> 6);
                text.text += static_cast<char>(0x80 | (c & 0x3f));
            }
        }
        if (!text.text.empty()) items.push_back(text);
    }
    const std::string path = (std::filesystem::temp_directory_path() / "many.pdf").string();
    std::ofstream(path, std::ios::binary) << pdfOf({listOf(items)});
    EXPECT_EQ(output("pdftotext " + path + " /dev/null 2>&1"), "");
    const std::string fonts = output("pdffonts " + path);
    EXPECT_NE(fonts.find("+osifont"), std::string::npos) << fonts;
    const std::string text = output("pdftotext -raw " + path + " -");
    for (const char *wanted : {"ÀÁÂÃ", "ΑΒΓΔ", "АБВГ"})
        EXPECT_NE(text.find(wanted), std::string::npos) << wanted;
    std::filesystem::remove(path);
}
