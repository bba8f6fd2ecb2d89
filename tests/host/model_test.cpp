// Texts and their sizes: evaluation of references and the metrics that computing and drawing share.
#include "host_fixture.h"

#include "model/session.h"
#include "model/text_metrics.h"

using namespace host_test;
using host::Lettering;

namespace {

class Texts : public HostTest {
protected:
    std::string evaluated(const std::string &line)
    {
        host::Session &session = host::Session::get();
        return session.evaluated(session.workPart(), line);
    }
};

Lettering lettering(double size, double lineSpace = 1.0)
{
    Lettering look;
    look.size = size;
    look.lineSpace = lineSpace;
    return look;
}

} // namespace

// --- references -----------------------------------------------------------------------------------

TEST_F(Texts, ReferencesToAttributesAreResolvedAnywhereInALine)
{
    const tag_t field = newUdo();
    ASSERT_EQ(assign(part, "DRAWN BY", "E. Muster"), 0);
    ASSERT_EQ(assign(field, "VALUE0", "4711"), 0);
    const std::string tag = std::to_string(field);
    EXPECT_EQ(evaluated("<W@DRAWN BY>"), "E. Muster");
    EXPECT_EQ(evaluated("by <W@DRAWN BY>, no <W!" + tag + "@VALUE0>."), "by E. Muster, no 4711.");
    EXPECT_EQ(evaluated("<W!" + tag + "@?VALUE0>"), "4711");
    EXPECT_EQ(evaluated("<W!" + std::to_string(part) + "@DRAWN BY>"), "E. Muster");
}

TEST_F(Texts, AMissingAttributeIsNothingAndAnUnknownObjectLeavesTheText)
{
    const tag_t field = newUdo();
    const std::string reference = "<W!" + std::to_string(field) + "@NONE>";
    EXPECT_EQ(evaluated("a<W@NONE>b"), "ab");
    EXPECT_EQ(evaluated("a" + reference + "b"), "ab");
    ASSERT_EQ(UF_OBJ_delete_object(field), 0);
    EXPECT_EQ(evaluated("a" + reference + "b"), "a" + reference + "b");
}

TEST_F(Texts, ALongTextOfOpenBracketsIsReadOnce)
{
    std::string line;
    for (int i = 0; i < 300000; ++i) line += "<W";
    EXPECT_EQ(evaluated(line), line);
    EXPECT_EQ(evaluated(line + ">"), line + ">");
}

TEST_F(Texts, OtherCommandsAndLiteralBracketsStay)
{
    ASSERT_EQ(assign(part, "T", "value"), 0);
    for (const char *line : {"", "plain", "<F2>font<F>", "<X4.2@length>", "$<W@T>", "<W@T", "<W>",
                             "<W!@T>", "<W!12x@T>", "<W!99999999999@T>", "<W@>", "a $> b $"}) {
        EXPECT_EQ(evaluated(line), line);
    }
    EXPECT_EQ(evaluated("$$<W@T>"), "$$value");
}

TEST_F(Texts, AValueIsNotResolvedAgain)
{
    ASSERT_EQ(assign(part, "A", "<W@B>"), 0);
    ASSERT_EQ(assign(part, "B", "deep"), 0);
    EXPECT_EQ(evaluated("<W@A>"), "<W@B>");
}

// --- fonts ----------------------------------------------------------------------------------------

TEST_F(Texts, FontsGetTheFirstFreeIndexOfThePart)
{
    host::Session &session = host::Session::get();
    host::Part &work = session.workPart();
    EXPECT_EQ(session.addFont(work, "blockfont"), 1);
    EXPECT_EQ(session.addFont(work, "osifont"), 2);
    EXPECT_EQ(session.addFont(work, "blockfont"), 1);
    EXPECT_THROW(session.addFont(work, "a_name_that_is_17"), host::Failure);
}

// --- sizes ----------------------------------------------------------------------------------------

TEST(TextMetrics, HeightCountsLinesAndTheSpaceBetweenThem)
{
    EXPECT_DOUBLE_EQ(host::textHeight(0, lettering(3.5)), 0.0);
    EXPECT_DOUBLE_EQ(host::textHeight(1, lettering(3.5)), 3.5);
    EXPECT_DOUBLE_EQ(host::textHeight(1, lettering(3.5, 9.0)), 3.5);
    // 3 lines of 2 with factor 1: 3 x 2 + 2 x 2 x 1 x 0.5 = 8
    EXPECT_DOUBLE_EQ(host::textHeight(3, lettering(2.0)), 8.0);
    // 2 lines of 5 with factor 1.5: 2 x 5 + 1 x 5 x 1.5 x 0.5 = 13.75
    EXPECT_DOUBLE_EQ(host::textHeight(2, lettering(5.0, 1.5)), 13.75);
}

TEST(TextMetrics, ThePitchOfFactor1IsOneAndAHalfHeights)
{
    EXPECT_DOUBLE_EQ(host::linePitch(lettering(3.5)), 5.25);
    EXPECT_DOUBLE_EQ(host::linePitch(lettering(2.0, 2.0)), 4.0); // 2 + 2 x 2 x 0.5
}

TEST(TextMetrics, WidthGrowsWithSizeAspectAndCharacterSpace)
{
    const double one = host::lineWidth("H", lettering(1.0));
    EXPECT_NEAR(one, 0.968, 0.001); // osifont: 1462 of 1510 units
    EXPECT_DOUBLE_EQ(host::lineWidth("HH", lettering(1.0)), 2.0 * one);
    EXPECT_DOUBLE_EQ(host::lineWidth("HH", lettering(7.0)), 14.0 * one);
    Lettering wide = lettering(2.0);
    wide.aspect = 1.5;
    wide.charSpace = 2.0;
    // (2 H + one gap of (2 - 1) x 0.2) x size 2 x aspect 1.5
    EXPECT_DOUBLE_EQ(host::lineWidth("HH", wide), (2.0 * one + 0.2) * 3.0);
    EXPECT_DOUBLE_EQ(host::lineWidth("", wide), 0.0);
    EXPECT_DOUBLE_EQ(host::textWidth({"H", "HH", ""}, wide), host::lineWidth("HH", wide));
}

TEST(TextMetrics, CharactersAreCountedNotBytesAndBadBytesStandForThemselves)
{
    const Lettering look = lettering(1.0);
    EXPECT_GT(host::lineWidth("\xc3\xb8", look), 0.4); // one letter of two bytes
    EXPECT_LT(host::lineWidth("\xc3\xb8", look), 1.2);
    EXPECT_DOUBLE_EQ(host::lineWidth("\xf8", look), host::lineWidth("\xc3\xb8", look));
    EXPECT_GT(host::lineWidth("\xe2\x8c", look), 0.0);         // cut in the middle
    EXPECT_GT(host::lineWidth("\xf0\x9f\x98\x80", look), 0.0); // not in the font
}

TEST(TextMetrics, TheBoxHangsFromTheSiteThatIsNamed)
{
    struct Row {
        int site;
        double x;
        double y;
    };
    // A box of 10 x 4: its lower left corner seen from the origin.
    for (const Row &row :
         {Row{1, 0, -4}, Row{2, -5, -4}, Row{3, -10, -4}, Row{4, 0, -2}, Row{5, -5, -2},
          Row{6, -10, -2}, Row{7, 0, 0}, Row{8, -5, 0}, Row{9, -10, 0}}) {
        const host::Vec3 corner = host::boxOffset(row.site, 10.0, 4.0);
        EXPECT_DOUBLE_EQ(corner.x, row.x) << row.site;
        EXPECT_DOUBLE_EQ(corner.y, row.y) << row.site;
    }
}

// --- sheets ---------------------------------------------------------------------------------------

TEST(SheetSizes, AreThoseOfTheirCodes)
{
    const auto sized = [](int state, int code) {
        host::Sheet sheet;
        sheet.sizeState = state;
        sheet.sizeCode = code;
        return host::sizeOf(sheet);
    };
    EXPECT_EQ(sized(0, 1).width, 1189.0);
    EXPECT_EQ(sized(0, 1).height, 841.0);
    EXPECT_EQ(sized(0, 5).width, 297.0);
    EXPECT_EQ(sized(0, 5).height, 210.0);
    EXPECT_EQ(sized(1, 1).width, 11.0);
    EXPECT_EQ(sized(1, 1).height, 8.5);
    EXPECT_EQ(sized(1, 8).width, 55.0);
    EXPECT_EQ(sized(1, 8).height, 34.0);
    EXPECT_THROW(sized(0, 6), host::Failure);
    EXPECT_THROW(sized(1, 0), host::Failure);
    EXPECT_THROW(sized(3, 1), host::Failure);
    host::Sheet custom;
    custom.sizeState = 2;
    custom.customHeight = 300.0;
    custom.customLength = 900.0;
    EXPECT_EQ(host::sizeOf(custom).width, 900.0);
    EXPECT_EQ(host::sizeOf(custom).height, 300.0);
    custom.customLength = 0.0;
    EXPECT_THROW(host::sizeOf(custom), host::Failure);
}
