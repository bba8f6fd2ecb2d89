#include "display/shaping.h"

#include "display/utf8.h"
#include "model/text_metrics.h"

#include <gtest/gtest.h>

#include <cmath>

using namespace host::display;

namespace {

TextItem textItem(std::string text)
{
    TextItem item;
    item.text = std::move(text);
    return item;
}

double metricWidth(const std::string &text)
{
    host::Lettering one;
    one.size = 1;
    return host::lineWidth(text, one);
}

} // namespace

TEST(Shaping, EveryCharacterOfTheDraftingFontIsAsWideAsTheMetricsSay)
{
    const Face &face = FontBook::get().drafting();
    std::size_t compared = 0;
    for (char32_t c = 0x20; c < 0x10000; ++c) {
        if ((c >= 0x300 && c < 0x370) || face.glyphOf(c) == 0) continue; // marks stand over letters
        std::string text;
        appendUtf8(text, c);
        EXPECT_NEAR(face.advance(face.glyphOf(c)), metricWidth(text), 1e-5)
            << static_cast<unsigned>(c);
        ++compared;
    }
    EXPECT_GT(compared, 800u);
}

TEST(Shaping, AStandInFillsThePlaceThatTheMetricsGiveIt)
{
    // Hebrew, a check mark, an arrow, Chinese: none of them in the drafting font.
    for (const std::u32string text : {U"\u05d0", U"\u2713", U"\u2192", U"\u6280"}) {
        const Sign &sign = signOf(text);
        std::string utf8;
        appendUtf8(utf8, text[0]);
        const double unit = sign.face->capitalHeight();
        EXPECT_NEAR(sign.advance, metricWidth(utf8), 1e-9);
        EXPECT_NEAR(sign.shape.advance / unit, sign.advance, 1.0 / unit);
        EXPECT_GE(sign.shape.left, -0.05 * unit);
        EXPECT_LE(sign.shape.right, sign.shape.advance + 0.05 * unit);
        ASSERT_EQ(sign.lent.size(), 1u);
        EXPECT_EQ(sign.lent[0].character, text[0]);
    }
    Shaper shaper;
    const TextItem item = textItem("a\u05d0b\u2713c");
    EXPECT_NEAR(shaper.shape(item).width, metricWidth(item.text), 1e-5);
    ASSERT_EQ(shaper.substitutions().size(), 1u);
    EXPECT_EQ(shaper.substitutions()[0].characters, "\u05d0\u2713");
    EXPECT_FALSE(shaper.substitutions()[0].font.empty());
}

TEST(Shaping, MarksJoinTheirLetterOrStandOverIt)
{
    const Face &face = FontBook::get().drafting();
    const Sign &joined = signOf(U"e\u0301");
    EXPECT_EQ(joined.glyph, face.glyphOf(U'é'));
    EXPECT_EQ(signOf(U"a\u0302\u0301").glyph, face.glyphOf(U'ấ'));

    const Sign &apart = signOf(U"Q\u030c");
    const GlyphShape &letter = face.shape(face.glyphOf(U'Q')),
                     &mark = face.shape(face.glyphOf(0x30c));
    EXPECT_EQ(apart.marks.size(), 1u);
    ASSERT_EQ(apart.shape.contours.size(), letter.contours.size() + mark.contours.size());
    EXPECT_EQ(apart.shape.advance, letter.advance);
    const double unit = face.capitalHeight();
    const auto &added = apart.shape.contours.back();
    int left = added[0].x, right = left, bottom = added[0].y;
    for (const GlyphPoint &p : added) {
        left = std::min(left, p.x);
        right = std::max(right, p.x);
        bottom = std::min(bottom, p.y);
    }
    EXPECT_NEAR((left + right) / 2.0, (letter.left + letter.right) / 2.0, 1.0);
    EXPECT_GE(bottom, letter.top + 0.05 * unit);

    Shaper shaper;
    const TextItem item = textItem("Q\u030cx");
    EXPECT_EQ(shaper.shape(item).signs.size(), 2u);
    EXPECT_NEAR(shaper.shape(item).width, metricWidth("Qx"), 1e-5);
}

TEST(Shaping, InvisibleCharactersAreNotDrawn)
{
    Shaper shaper;
    const TextItem item = textItem("a\u200d\ufe0fb\u200b");
    EXPECT_EQ(shaper.shape(item).signs.size(), 2u);
    const TextItem nothing = textItem("\u200b");
    EXPECT_TRUE(shaper.shape(nothing).signs.empty());
    EXPECT_TRUE(shaper.substitutions().empty());
}

TEST(Shaping, WhatNoFontHasIsABoxAndIsReportedWithoutAFont)
{
    Shaper shaper;
    const TextItem item = textItem("a\U000f0000b"); // for private use
    const ShapedText text = shaper.shape(item);
    ASSERT_EQ(text.signs.size(), 3u);
    EXPECT_EQ(text.signs[1].sign->glyph, 0u);
    EXPECT_FALSE(text.signs[1].sign->shape.contours.empty());
    ASSERT_EQ(shaper.substitutions().size(), 1u);
    EXPECT_EQ(shaper.substitutions()[0].characters, "\U000f0000");
    EXPECT_TRUE(shaper.substitutions()[0].font.empty());
}
