// What plainly would look wrong on a sheet: each finding with its place and its remedy.
#include "checked_text.h"

namespace {

class LayoutCheck : public Check {
protected:
    // A block of 60 x 20 at that place on A3 (420 x 297, its frame from (20, 10) to (410, 287)) and A4.
    static std::string findingsAt(const std::string &place)
    {
        return findingsIn("formats: {F: {sheets: iso, sizes: [A3, A4]}}\n"
                          "blocks:\n"
                          "  B:\n"
                          "    size: [60, 20]\n"
                          "    place: " +
                          place + "\n    cells: {a: {cell: [0, 0, 60, 20]}}\n");
    }
};

// --- on the sheet -----------------------------------------------------------------------------------

TEST_F(LayoutCheck, ABlockThatLeavesTheSheetIsNamedWithItsSizes)
{
    // 280 + 60 = 340: inside 420, outside 297.
    EXPECT_EQ(
        findingsAt("{at: [280, 100]}"),
        "d.yaml:5:12: block B: place: the block leaves the sheet on A4 of the format F: place "
        "it elsewhere, or make it smaller\n");
    EXPECT_NE(
        findingsAt("{corner: bottom-right, inset: [-1, 10]}").find("leaves the sheet on A3, A4"),
        std::string::npos);
}

TEST_F(LayoutCheck, ABlockThatCrossesTheFrameIsNamed)
{
    EXPECT_EQ(findingsAt("{corner: bottom-right, inset: [8, 10]}"),
              "d.yaml:5:12: block B: place: the block crosses the lines of the frame on A3, A4 of "
              "the format F: place it inside or outside of it\n");
    EXPECT_EQ(findingsAt("{corner: bottom-right, inset: [10, 10]}"), "");
}

TEST_F(LayoutCheck, TheColumnsOfATableBelongToTheBlock)
{
    // 20 wide at 50: to 70, ten more than the block, whose right side is on the frame.
    EXPECT_NE(findingsInBlock("    lines: none\n"
                              "    cells: {}\n"
                              "    tables: {T: {at: [50, 0], direction: down, columns: {c: {width: "
                              "20}}}}\n")
                  .find("block B: place: the block crosses the lines of the frame on A3"),
              std::string::npos);
}

TEST_F(LayoutCheck, RequiredBlocksThatCoverEachOtherAreNamed)
{
    const std::string head =
        "formats: {F: {sheets: iso, sizes: [A3, A4], required: [A, B]}}\n"
        "blocks:\n"
        "  A: {size: [60, 20], place: {corner: bottom-right, inset: [10, 10]}, "
        "cells: {}}\n";
    EXPECT_EQ(findingsIn(head + "  B: {size: [60, 20], place: {corner: bottom-right, inset: [10, "
                                "29]}, cells: {}}\n"),
              "d.yaml:4:30: block B: place: covers the block A on A3, A4 of the format F, which "
              "requires both: move one of them\n");
    EXPECT_EQ(findingsIn(head + "  B: {size: [60, 20], place: {corner: bottom-right, inset: [10, "
                                "30]}, cells: {}}\n"),
              "");
}

// --- places -----------------------------------------------------------------------------------------

TEST_F(LayoutCheck, APlaceForASizeThatTheFormatHasNotIsNamed)
{
    EXPECT_EQ(findingsAt("{corner: bottom-right, inset: [10, 10], A9: {at: [20, 10]}}"),
              "d.yaml:5:56: block B: A9: \"A9\" is no size and no suite of the format F, which has "
              "A3, A4: the places for it are never used\n");
}

TEST_F(LayoutCheck, AKeyOfAPlaceThatHoldsNoPlaceIsUnknown)
{
    const std::string findings = findingsAt("{corner: bottom-right, insett: [10, 10]}");
    EXPECT_EQ(findings, "d.yaml:5:35: block B, place: insett: unknown key: did you mean inset?\n");
}

TEST_F(LayoutCheck, APointBesideACornerIsNamed)
{
    EXPECT_EQ(findingsAt("{corner: bottom-right, at: [20, 10]}"),
              "d.yaml:5:39: block B, place: at: stands beside corner and inset, which say the same "
              "in another way: remove one of them\n");
}

// Both generations of places, and suites.
TEST_F(LayoutCheck, OlderPlacesAndSuitesAreCheckedAlike)
{
    const auto findings = [](const std::string &sizes, const std::string &xs) {
        return findingsIn("formats:\n"
                          "  F: {sheets: iso, sizes: [A3, A4], suites: {SMALL: [A4]}}\n"
                          "blocks:\n"
                          "  B:\n"
                          "    size: [60, 20]\n"
                          "    cells: {}\n"
                          "    place:\n"
                          "      - kind: block_location_v1\n"
                          "        format_id: F\n"
                          "        size_names: " +
                          sizes + "\n        size_x_loc: " + xs +
                          "\n        size_y_loc: [10, 10]\n        offset_type: 2\n");
    };
    EXPECT_EQ(findings("[A3, SMALL]", "[70, 70]"), "");
    EXPECT_EQ(findings("[A3, A9]", "[70, 70]"),
              "d.yaml:10:21: block B: size_names: \"A9\" is no size and no suite of the format F, "
              "which has A3, A4: the places for it are never used\n"
              "d.yaml:8:9: block B: place: there is none on size A4 of format F: the block would "
              "come to the sheet's corner; add A4: {corner: ..., inset: [x, y]}\n");
    // 297 - 59 + 60 = 298.
    EXPECT_EQ(findings("[A3, SMALL]", "[70, 59]"),
              "d.yaml:8:9: block B: place: the block leaves the sheet on A4 of the format F: place "
              "it elsewhere, or make it smaller\n");
}

// --- in the block -----------------------------------------------------------------------------------

TEST_F(LayoutCheck, AColumnThatLeavesItsBlockIsNamed)
{
    const std::string findings = findingsInBlock(
        "    lines: none\n"
        "    cells: {}\n"
        "    tables: {T: {at: [0, 0], direction: down, columns: {a: {width: 50}, b: "
        "{width: 20}}}}\n");
    EXPECT_TRUE(findings.starts_with("d.yaml:10:84: block B, table T, field b: width: the column "
                                     "stands from 50 to 70, and its block from 0 to 60: make it "
                                     "narrower, or widen the block\n"))
        << findings;
}

TEST_F(LayoutCheck, AHeadingOutsideItsBlockOrTooLowIsNamed)
{
    EXPECT_EQ(findingsInBlock("    lines: none\n"
                              "    cells: {}\n"
                              "    tables: {T: {at: [0, 15], direction: down, heading: 7, columns: "
                              "{a: {width: 60, label: A}}}}\n"),
              "d.yaml:10:57: block B, table T: heading: stands from 15 to 22, and the block from 0 "
              "to 20: rows begin below it; move at, or make the block higher\n");
    EXPECT_EQ(findingsInBlock("    lines: none\n"
                              "    cells: {}\n"
                              "    tables: {T: {at: [0, 0], direction: down, heading: 1, columns: "
                              "{a: {width: 60, label: A}}}}\n"),
              "d.yaml:10:56: block B, table T: heading: is 1 high and its labels 1.8: make it "
              "higher\n");
}

TEST_F(LayoutCheck, ALabelThatIsWiderThanItsCellOrColumnIsNamed)
{
    const std::string cell =
        findingsInBlock("    cells:\n"
                        "      a: {cell: [0, 0, 50, 20]}\n"
                        "      b: {cell: [50, 0, 10, 20], label: Identification}\n");
    EXPECT_TRUE(cell.starts_with("d.yaml:10:41: block B, field b: label: \"Identification\" is "))
        << cell;
    EXPECT_NE(cell.find(" wide, and 8 are there: shorten it, or give it more room\n"),
              std::string::npos)
        << cell;
    const std::string column = findingsInColumn("label: A very long name of a column", "up");
    EXPECT_NE(column.find("wide, and 20 are there"), std::string::npos) << column;
}

TEST_F(LayoutCheck, ALabelThatTheValueRunsIntoIsNamed)
{
    // Three lines of 5: 3 x 5 + 2 x 2.5 = 20 above a margin of 1. The label begins at 20 - 1 - 1.8 = 17.2.
    EXPECT_EQ(
        findingsInCell("label: A, size: 5, rows: 3"),
        "d.yaml:9:40: block B, field a: label: \"A\" runs into the value, which reaches 3.8 too "
        "high with 3 of its lines: a higher cell, a smaller size or margin, or fewer rows\n");
    EXPECT_EQ(findingsInCell("label: A, size: 5, rows: 2"), "");
    EXPECT_NE(findingsInCell("label: A, at: top-left"), "");
    EXPECT_EQ(findingsInCell("label: A, at: top-left, margin: [1, 4]"), "");
}

TEST_F(LayoutCheck, ArtOutsideTheBlockIsNamed)
{
    const std::string fine = "    cells: {}\n    art:\n";
    EXPECT_EQ(findingsInBlock("    lines: none\n" + fine + "      - {line: [0, 20, 60, 20]}\n"),
              "");
    EXPECT_EQ(findingsInBlock("    lines: none\n" + fine + "      - {line: [50, 10, 70, 10]}\n"),
              "d.yaml:11:9: block B, art: [50, 10, 20, 0] leaves the block, which is 60 x 20: move "
              "it, make it smaller, or widen the block\n");
    const std::string text = findingsInBlock("    lines: none\n" + fine +
                                             "      - {text: Too long for it, where: [50, 5]}\n");
    EXPECT_TRUE(text.starts_with("d.yaml:11:9: block B, art: [50, 5, ")) << text;
}

TEST_F(LayoutCheck, ABorderThatIsNotTheOneThatItsNameSaysIsNamed)
{
    EXPECT_EQ(
        findingsInColumn("bottom_border_policy: 1", "up"),
        "d.yaml:16:48: block B, table T, field c: bottom_border_policy: draws the upper line, "
        "since rows grow up: write borders: [top], or the other slot\n");
    EXPECT_EQ(findingsInColumn("bottom_border_policy: 1", "down"), "");
    EXPECT_EQ(findingsInColumn("borders: [top]", "up"), "");
}

// --- records ----------------------------------------------------------------------------------------

TEST_F(LayoutCheck, NumbersThatAreNoneAndAbsurdLengthsAreNamed)
{
    EXPECT_NE(findingsInCell("location_x: .nan")
                  .find("block B, field a: location_x: is .nan: write a "
                        "number\n"),
              std::string::npos);
    EXPECT_NE(
        findingsInCell("width: 20000")
            .find("block B, field a: width: is 20000: more than ten metres; check the units\n"),
        std::string::npos);
}

TEST_F(LayoutCheck, ARecordInOneThatCannotOwnItIsNamed)
{
    EXPECT_NE(
        findingsIn("records:\n"
                   "- kind: format\n"
                   "  id: F\n"
                   "  children:\n"
                   "    - kind: field\n"
                   "      id: lost\n")
            .find("d.yaml:5:7: format F, field lost: kind: a format owns no field: nothing uses "
                  "it; remove it, or put it where it belongs\n"),
        std::string::npos);
}

TEST_F(LayoutCheck, AnIdThatNoFileCanBeNamedAfterIsRefused)
{
    EXPECT_EQ(findingsIn("formats: {F/1: {sheets: iso, sizes: [A3]}}\n"),
              "d.yaml:1:16: format F/1: its id holds a \"/\", and files are named after it: use a "
              "\"-\" instead\n");
    EXPECT_NE(
        findingsIn("records: [{kind: format, id: F/1}]\n").find("format F/1: id: holds a \"/\""),
        std::string::npos);
}

} // namespace
