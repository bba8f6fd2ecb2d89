// Where notes stand. The block is placed at (100, 50) on a 420 x 297 sheet.
#include "tests/content/block_on_sheet.h"

using FieldPlacement = BlockOnSheet;

namespace {

// The box: 40 wide at (10, 20), margins 2 (width) and 1 (height).
struct Site {
    int site;
    double dx, dy; // of a text without a note, that is 2 x 1 = 2 high, from (10, 20)
};
constexpr Site kSites[] = {
    {1, 2, -1}, {2, 20, -1}, {3, 38, -1}, // above: margin down; left 2, middle 40/2, right 40 - 2
    {4, 2, 1},  {5, 20, 1},  {6, 38, 1},  // middle: half of the height 2
    {7, 2, 1},  {8, 20, 1},  {9, 38, 1},  // below: margin up
    {0, 0, 0},  {10, 0, 0},               // no such site: no adjustment
};

struct Offset {
    int type;
    At at(double x, double y) const // of a point (x, y) that the site rule gave
    {
        switch (type) {
        case 1:
            return {x, y};
        case 2:
            return {x, 297.0 - y};
        case 3:
            return {420.0 - x, y};
        case 4:
            return {420.0 - x, 297.0 - y};
        default:
            return {100.0 + x, 50.0 + y}; // 0, and whatever is not known
        }
    }
};
constexpr Offset kOffsets[] = {{0}, {1}, {2}, {3}, {4}, {7}};

} // namespace

// 11 sites x 6 offset types x with and without a width x with and without a note.
TEST_F(FieldPlacement, FollowsSiteOffsetTypeWidthAndTextHeight)
{
    for (const Site &site : kSites) {
        for (const Offset &offset : kOffsets) {
            for (const double width : {40.0, 0.0}) {
                for (const char *text : {"", "A3"}) {
                    has("F" + std::to_string(site.site) + "/" + std::to_string(offset.type) + "/" +
                            std::to_string(width > 0) + "/" + text,
                        [&](TrFieldDefV1 &def) {
                            def.SetLocationX(10.0);
                            def.SetLocationY(20.0);
                            def.SetWidth(width);
                            def.SetMarginWidth(2.0);
                            def.SetMarginHeight(1.0);
                            def.SetTextSite(site.site);
                            def.SetRelativeOffsetType(offset.type);
                            def.SetDefaultString({text});
                        });
                }
            }
        }
    }
    testing::internal::CaptureStdout();
    place();
    for (const auto &one : block()->getFields()) one->locate(); // with the note, where there is one
    testing::internal::GetCapturedStdout();

    auto fields = block()->getFields();
    auto next = fields.begin();
    for (const Site &site : kSites) {
        for (const Offset &offset : kOffsets) {
            for (const bool wide : {true, false}) {
                for (const bool note : {false, true}) {
                    const TrFieldBase &one = **next++;
                    SCOPED_TRACE(one.GetFieldDefName());
                    double dx = wide ? site.dx : 0.0, dy = wide ? site.dy : 0.0;
                    // A note of one line of 3.5 makes the field 2 + 3.5 = 5.5 high: half is 2.75.
                    if (wide && note && site.site >= 4 && site.site <= 6) dy = 2.75;
                    const At expected = offset.at(10.0 + dx, 20.0 + dy);
                    EXPECT_EQ(storedAt(one), expected);
                    ASSERT_EQ(one.GetNote() != nullptr, note);
                    if (note) {
                        EXPECT_EQ(noteAt(one), expected);
                    }
                }
            }
        }
    }
    EXPECT_EQ(next, fields.end());
}

TEST_F(FieldPlacement, MiddleSiteIsPlacedAtFirstByTheMarginsAlone)
{
    has("A", [](TrFieldDefV1 &def) {
        def.SetWidth(40.0);
        def.SetMarginHeight(1.0);
        def.SetTextSite(5);
        def.SetDefaultString({"A3"});
    });
    place();
    // While the note is made there is none: (2 x 1) / 2 = 1 above. With it, 5.5 / 2 = 2.75.
    EXPECT_EQ(noteAt(*field("A")), (At{120.0, 51.0}));
    field("A")->locate();
    EXPECT_EQ(noteAt(*field("A")), (At{120.0, 52.75}));
}

TEST_F(FieldPlacement, UnknownOffsetTypeIsToldWithoutABlankAndCountsFromTheBlock)
{
    has("A", [](TrFieldDefV1 &def) {
        def.SetLocationX(3.0);
        def.SetRelativeOffsetType(7);
    });
    place();
    testing::internal::CaptureStdout();
    field("A")->locate();
    EXPECT_EQ(testing::internal::GetCapturedStdout(),
              "The offsetRelative value7 is not currently implemented. Using BlockBottomLeft\n");
    EXPECT_EQ(storedAt(*field("A")), (At{103.0, 50.0}));
}

TEST_F(FieldPlacement, HeightIsTheTextsAndTwoMargins)
{
    has("A", [](TrFieldDefV1 &def) { def.SetMarginHeight(1.25); });
    place();
    EXPECT_DOUBLE_EQ(field("A")->CalcHeight(), 2.5);
    field("A")->ModifyValue({"one", "two", "three"});
    // 3 lines of 3.5 and two gaps of half a line: 10.5 + 3.5; two margins of 1.25.
    EXPECT_DOUBLE_EQ(field("A")->CalcHeight(), 16.5);
}

TEST_F(FieldPlacement, TellsItsStepsToTheInformationLog)
{
    has("A", [](TrFieldDefV1 &def) {
        def.SetLocationX(3.0);
        def.SetLocationY(4.0);
    });
    place();
    Base::log::Recording recording{&QelFmt::info_log()};
    field("A")->locate();
    EXPECT_TRUE(recording.has("Locating note for field A"));
    EXPECT_TRUE(recording.has("Raw Location = 3,4"));
    EXPECT_TRUE(recording.has("location of field A = 103,54"));
}

TEST_F(FieldPlacement, FieldThatNobodyToldItsBlocksPlaceCannotBePlaced)
{
    has("A");
    place();
    TrFieldV1 alone(field("A")->GetUdoObject());
    EXPECT_EQ(textThrownBy([&] { alone.locate(); }),
              "Field A cannot be placed: nobody has told it where its block stands");
}

TEST_F(FieldPlacement, NotesFollowTheirBlock)
{
    has("A", [](TrFieldDefV1 &def) {
        def.SetLocationX(10.0);
        def.SetDefaultString({"A3"});
    });
    place();
    const tag_t note = noteTag(*field("A"));
    const double to[2] = {200.0, 80.0};
    block()->locateBlock(to);
    EXPECT_EQ(noteAt(*field("A")), (At{210.0, 80.0}));
    EXPECT_EQ(noteTag(*field("A")), note);

    saveAndReopen();
    EXPECT_EQ(noteAt(*field("A")), (At{210.0, 80.0}));
    EXPECT_EQ(field("A")->GetValue(), Lines{"A3"});
}

TEST_F(FieldPlacement, ValueThatIsNotOnlyInitialIsComputedOnEveryMove)
{
    has("A", [](TrFieldDefV1 &def) {
        def.SetUseDefaultInitially(0);
        def.SetDefaultType(1);
        def.SetDefaultString({"PART_NO"});
    });
    has("B", [](TrFieldDefV1 &def) {
        def.SetDefaultType(1);
        def.SetDefaultString({"PART_NO"});
    });
    story.partObject()->addStringAttribute("PART_NO", "4711");
    place();
    EXPECT_EQ(field("A")->GetValue(), Lines{"4711"});
    story.partObject()->setStringAttributeValue("PART_NO", "4712");

    block()->move(nullptr);
    EXPECT_EQ(field("A")->GetValue(), Lines{"4712"});
    EXPECT_EQ(field("B")->GetValue(), Lines{"4711"}); // only its initial value

    field("A")->ModifyValue({"typed"}); // which places the note, and must not compute the value
    EXPECT_EQ(field("A")->GetValue(), Lines{"typed"});
    field("A")->Move();
    EXPECT_EQ(field("A")->GetValue(), Lines{"4712"});
}

TEST_F(FieldPlacement, ComputedValueWithoutANoteYetDoesNotRunInCircles)
{
    has("A", [](TrFieldDefV1 &def) {
        def.SetUseDefaultInitially(0);
        def.SetDefaultType(1);
        def.SetDefaultString({"PART_NO"});
    });
    place();
    EXPECT_EQ(field("A")->GetNote(), nullptr);
    story.partObject()->addStringAttribute("PART_NO", "4711");
    field("A")->locate(); // makes the note, which is placed, which would compute the value ...
    EXPECT_EQ(field("A")->GetValue(), Lines{"4711"});
}
