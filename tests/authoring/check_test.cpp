// What the checks find in definitions that can be read: each finding with its place and its remedy.
#include "checked_text.h"

namespace {

// As a part holds it.
void forgetText(RecordTree &record)
{
    record.origin = {};
    record.origins.clear();
    for (RecordTree &child : record.children) forgetText(child);
}

TEST_F(Check, SaysNothingOfWhatIsFine)
{
    EXPECT_EQ(findingsInCell("value: fine"), "");
    EXPECT_EQ(findingsInColumn("value: fine", "up"), "");
    EXPECT_EQ(findingsInColumn("value: fine", "down"), "");
}

// --- what cannot be read ------------------------------------------------------------------------

TEST_F(Check, UnknownMissingAndMistypedKeysAreNamed)
{
    EXPECT_EQ(findingsInBlock("    cells:\n"
                              "      a: {cell: [0, 0, 60, 20], colour: 3}\n"
                              "      b: {label: B, size: big}\n"),
              "d.yaml:9:33: block B, cell a: colour: unknown key: did you mean color?\n"
              "d.yaml:10:10: block B, cell b: cell: is missing: its box in the block: cell: [x, "
              "y, width, height]\n"
              "d.yaml:10:27: block B, cell b: size: must be a number\n");
}

TEST_F(Check, AKeyThatStandsTwiceIsNamed)
{
    EXPECT_EQ(findingsInBlock("    cells:\n"
                              "      a: {cell: [0, 0, 60, 20]}\n"
                              "      a: {cell: [0, 0, 60, 20]}\n"),
              "d.yaml:10:7: block B, cells: a: stands here twice: remove one of them\n");
}

TEST_F(Check, AnEmptyFileDefinesNothing)
{
    for (const char *text : {"", "# only a comment\n", "units: mm\n"})
        EXPECT_EQ(findingsIn(text),
                  "d.yaml: defines nothing: write units, formats and blocks, or start from an "
                  "example with 'qelfmt init FOLDER'\n");
}

TEST_F(Check, APlaceThatSaysNoPointIsNamed)
{
    EXPECT_EQ(
        findingsIn("blocks:\n"
                   "  B:\n"
                   "    size: [60, 20]\n"
                   "    place: {inset: [10, 10]}\n"
                   "    cells: {}\n"),
        "d.yaml:4:12: block B, place: corner: is missing: bottom-left, bottom-right, top-left "
        "or top-right; or at: [x, y]\n");
}

// --- ids --------------------------------------------------------------------------------------------

TEST_F(Check, ABlockThatIsRequiredOrExcludedMustExist)
{
    EXPECT_EQ(findingsIn("formats:\n"
                         "  F: {required: [NONE], sheets: iso, sizes: [A3]}\n"
                         "blocks:\n"
                         "  B: {size: [9, 9], place: {corner: top-left, inset: [0, 0]}, excludes: "
                         "[OTHER], cells: {}}\n"),
              "d.yaml:2:17: format F: required: the block \"NONE\" is in none of the files: define "
              "it, or name the file that does too\n"
              "d.yaml:4:73: block B: excludes: the block \"OTHER\" is in none of the files: define "
              "it, or name the file that does too\n");
}

TEST_F(Check, TwoLibrariesWithOneIdAreNamed)
{
    const std::string text = "blocks:\n"
                             "  B: {size: [9, 9], place: {formats: F, at: [0, 0]}, cells: {}}\n";
    const Library one = parseLibrary("formats: {F: {sheets: iso, sizes: [A3]}}\n" + text, "a.yaml");
    const Library two = parseLibrary(text, "b.yaml");
    EXPECT_EQ(textOf(checkDefinitions({{"a.yaml", recordsOf(one), &one, {}, {}},
                                       {"b.yaml", recordsOf(two), &two, {}, {}}})),
              "b.yaml:2:6: block B: id: stands in a.yaml already: the first one found counts; "
              "rename one of them\n");
}

// In a part nothing hinders two fields from having one id.
TEST_F(Check, TwoFieldsWithOneIdAreNamed)
{
    const std::string findings = findingsIn("formats: {F: {sheets: iso, sizes: [A3]}}\n"
                                            "blocks:\n"
                                            "  B:\n"
                                            "    size: [60, 20]\n"
                                            "    place: {corner: bottom-right, inset: [10, 10]}\n"
                                            "    cells:\n"
                                            "      a: {cell: [0, 0, 30, 20]}\n"
                                            "      b: {cell: [30, 0, 30, 20], id: a}\n");
    EXPECT_EQ(findings, "d.yaml:8:38: block B, field a: id: stands here twice: the first field "
                        "counts; rename one of them\n");
}

// --- cells ------------------------------------------------------------------------------------------

TEST_F(Check, CellsThatDoNotTileTheirBlockAreNamed)
{
    EXPECT_EQ(findingsInBlock("    cells:\n"
                              "      a: {cell: [0, 0, 30, 20]}\n"
                              "      b: {cell: [30, 0, 30, 12]}\n"),
              "d.yaml:9:7: block B: cells: do not tile the block: none covers [30, 12, 30, 8]; "
              "widen a cell, or add one with value: \"\"\n");
}

TEST_F(Check, FieldsThatOverlapOrLeaveTheirBlockAreNamed)
{
    EXPECT_EQ(findingsInBlock("    cells:\n"
                              "      a: {cell: [0, 0, 60, 20]}\n"
                              "      b: {cell: [50, 0, 10, 20], box: none}\n"
                              "      c: {cell: [60, 0, 10, 20], box: none}\n"),
              "d.yaml:10:17: block B, field b: cell: overlaps the field a: move one of them, or "
              "make it smaller\n"
              "d.yaml:11:17: block B, field c: cell: the field [60, 0, 10, 20] leaves its block, "
              "which is [0, 0, 60, 20]: move it, or widen the block\n");
}

TEST_F(Check, LinesThatCrossAnotherCellAreNamed)
{
    EXPECT_EQ(findingsInBlock("    cells:\n"
                              "      a: {cell: [0, 0, 30, 20]}\n"
                              "      b: {cell: [30, 0, 30, 20], box: [20, 0, 40, 20]}\n"),
              "d.yaml:10:39: block B, cell b: box: its lines cross the cell a: box: none draws "
              "none\n");
}

// A part does not know the size of a block: the lines of its pattern say it.
TEST_F(Check, AFieldOfAPartThatLeavesThePatternOfItsBlockIsNamed)
{
    const Library library = parseLibrary("formats: {F: {sheets: iso, sizes: [A3]}}\n"
                                         "blocks:\n"
                                         "  B:\n"
                                         "    size: [60, 20]\n"
                                         "    place: {corner: bottom-right, inset: [10, 10]}\n"
                                         "    cells:\n"
                                         "      a: {cell: [0, 0, 60, 20], location_x: 5}\n",
                                         "d.yaml");
    CheckedFile part;
    part.name = "d.prt";
    part.records = recordsOf(library);
    for (RecordTree &record : part.records) forgetText(record);
    part.artOf = [&](const std::string &) { return library.blocks[0].art; };
    EXPECT_EQ(textOf(checkDefinitions({part})),
              "d.prt: block B, field a: location_x: the field [5, 0, 60, 20] leaves its block, "
              "which is [0, 0, 60, 20]: move it, or widen the block\n");
}

// --- texts ------------------------------------------------------------------------------------------

// Ten capitals W at 3.5 take more than 60 - 2.
TEST_F(Check, ADefaultTextThatDoesNotFitIsNamed)
{
    const std::string wide = findingsInCell("margin: 2, size: 7, value: WWWWWWWWWWWW");
    EXPECT_TRUE(wide.starts_with("d.yaml:9:60: block B, field a: value: the text \"WWWWWWWWWWWW\" "
                                 "does not fit: it needs "))
        << wide;
    EXPECT_NE(wide.find(" of 58 from side to side; shorten it, make it smaller or give the cell "
                        "more room\n"),
              std::string::npos)
        << wide;
    // Four lines of 5: 4 x 5 + 3 x 2.5 = 27.5, and 20 - 1 are there.
    EXPECT_EQ(findingsInCell("size: 5, rows: 4, value: [a, b, c, d]"),
              "d.yaml:9:58: block B, field a: value: the text \"a...\" does not fit: it needs 27.5 "
              "of 19 from top to bottom; shorten it, make it smaller or give the cell more room\n");
}

// The width that the narrow letters take counts, as it would on a drawing.
TEST_F(Check, ALongDefaultTextIsMeasuredAsItIsDrawn)
{
    const std::string value = "margin: 2, size: 7, value: nnnnnnnnnnnn"; // 12 letters
    EXPECT_NE(findingsInCell(value), "");
    EXPECT_EQ(findingsInCell(value + ", too-long: narrow"), "");
}

TEST_F(Check, SeveralLinesInAFieldOfOneAreNamed)
{
    EXPECT_EQ(findingsInCell("value: [a, b]"),
              "d.yaml:9:40: block B, field a: value: the text has several lines and the field one: "
              "give it rows\n");
}

TEST_F(Check, ARecommendedLengthThatDoesNotFitIsNamed)
{
    EXPECT_EQ(findingsInCell("characters: 20"), "");
    const std::string findings = findingsInCell("size: 5, characters: 20");
    EXPECT_TRUE(findings.starts_with("d.yaml:9:54: block B, field a: characters: 20 characters of "
                                     "average width do not fit: it needs "))
        << findings;
    EXPECT_NE(findings.find("; widen the cell, choose a smaller size or too-long: narrow\n"),
              std::string::npos);
    EXPECT_EQ(findingsInCell("size: 5, characters: 20, too-long: smaller"), "");
}

// --- rows of tables ---------------------------------------------------------------------------------

TEST_F(Check, ARowTextThatLeavesItsRowIsNamedForEitherDirection)
{
    // A row of 5 with a text of 2.5 and margins of 1.25. Growing down it hangs below its base, so that a
    // text that stands on the base leaves it.
    EXPECT_EQ(findingsInColumn("text_site: 7", "down"),
              "d.yaml:16:37: block B, table T, field c: text_site: the text leaves its row: it "
              "stands from 1.25 to 3.75 of a row from -5 to 0; rows that grow down need a site of "
              "1 to 3 and a location_y of 0\n");
    EXPECT_EQ(findingsInColumn("text_site: 2", "up"),
              "d.yaml:16:37: block B, table T, field c: text_site: the text leaves its row: it "
              "stands from -3.75 to -1.25 of a row from 0 to 5; rows that grow up need a site of "
              "7 to 9 and a location_y of 0\n");
    EXPECT_NE(findingsInColumn("text_site: 5, margin_height: 1", "up"), "");
    EXPECT_NE(findingsInColumn("text_site: 5", "down"), "");
}

TEST_F(Check, BordersThatLeaveTheirRowAreNamed)
{
    EXPECT_EQ(findingsInColumn("location_y: 0.5, margin_height: 2, text_size: 1", "up"),
              "d.yaml:16:38: block B, table T, field c: location_y: the borders leave their row: "
              "they begin 0.5 above its base; use 0\n");
    EXPECT_EQ(findingsInColumn("relative_offset_type: 3", "up"),
              "d.yaml:16:48: block B, table T, field c: relative_offset_type: counts from the "
              "sheet: every row's text would stand at one point; use 0\n");
}

TEST_F(Check, ColumnsThatOverlapAreNamed)
{
    EXPECT_EQ(findingsInColumn("}\n          d: {width: 9, location_x: 15", "up"),
              "d.yaml:17:22: block B, table T, field d: width: overlaps the column c by 5\n");
}

TEST_F(Check, ATableWithoutColumnsIsNamed)
{
    EXPECT_EQ(findingsInBlock("    lines: none\n"
                              "    cells: {}\n"
                              "    tables: {T: {at: [0, 0], direction: up, columns: {}}}\n"),
              "d.yaml:10:17: block B, table T: columns: has no field: its rows have no height; add "
              "columns\n");
}

// --- places -----------------------------------------------------------------------------------------

TEST_F(Check, ABlockWithoutAPlaceForOneOfTheSizesIsNamed)
{
    EXPECT_EQ(findingsIn("formats:\n"
                         "  F: {sheets: iso, sizes: [A3, A4]}\n"
                         "blocks:\n"
                         "  B:\n"
                         "    size: [60, 20]\n"
                         "    place: {formats: F, A3: {corner: top-left, inset: [20, 10]}}\n"
                         "    cells: {}\n"),
              "d.yaml:6:12: block B: place: there is none on size A4 of format F: the block would "
              "come to the sheet's corner; add A4: {corner: ..., inset: [x, y]}\n");
}

TEST_F(Check, ARequiredBlockWithoutAnyPlaceOnTheFormatIsNamed)
{
    EXPECT_EQ(
        findingsIn("formats:\n"
                   "  F: {sheets: iso, sizes: [A3]}\n"
                   "  G: {sheets: iso, sizes: [A3], required: [B]}\n"
                   "blocks:\n"
                   "  B: {size: [9, 9], place: {formats: F, at: [0, 0]}, cells: {}}\n"),
        "d.yaml:5:6: block B: place: the format G requires it, and it has no place there: add "
        "one for it\n");
}

TEST_F(Check, APlaceForAFormatThatNobodyHasIsNamed)
{
    EXPECT_EQ(findingsIn("blocks:\n"
                         "  B: {size: [9, 9], place: {formats: NONE, at: [0, 0]}, cells: {}}\n"),
              "d.yaml:2:28: block B: place: \"NONE\" is no format and no suite of the files: name "
              "one, or the file that defines it too\n");
}

TEST_F(Check, PlacesBehindTheDefaultAreNeverUsed)
{
    EXPECT_EQ(findingsIn("formats: {F: {sheets: iso, sizes: [A3]}}\n"
                         "blocks:\n"
                         "  B:\n"
                         "    size: [9, 9]\n"
                         "    cells: {}\n"
                         "    place:\n"
                         "      - kind: block_location\n"
                         "        format_id: F\n"
                         "        children:\n"
                         "          - {kind: size_location, size_id: Default, children: [{kind: "
                         "location}]}\n"
                         "          - {kind: size_location, size_id: A3}\n"),
              "d.yaml:11:44: block B, places for F: size_id: the places for \"A3\" stand behind "
              "those for Default, which always fit: they are never used; put them first\n");
}

// --- patterns, fonts, colours, layers -------------------------------------------------------------

TEST_F(Check, AMissingPatternIsNamed)
{
    const Library library =
        parseLibrary("formats: {F: {sheets: iso, sizes: [A3]}}\n"
                     "blocks:\n"
                     "  B: {size: [9, 9], place: {formats: F, at: [0, 0]}, lines: none, cells: {}, "
                     "pattern_name: LOST}\n",
                     "d.yaml");
    const auto hasPattern = [](const std::string &name) { return name != "LOST"; };
    EXPECT_EQ(
        textOf(checkDefinitions({{"d.yaml", recordsOf(library), &library, hasPattern, {}}})),
        "d.yaml:3:92: block B: pattern_name: the pattern \"LOST\" is missing: no lines would be "
        "drawn; put LOST.prt into the folder patterns\n");
}

TEST_F(Check, AMissingFontIsNamedWhereItIsWritten)
{
    EXPECT_EQ(findingsInCell("font: fancy"),
              "d.yaml:9:39: block B, field a: font: the font \"fancy\" is missing: texts would not "
              "be drawn as meant; write osifont\n");
    EXPECT_EQ(findingsIn("styles:\n"
                         "  value: {font: fancy}\n"
                         "formats: {F: {sheets: iso, sizes: [A3]}}\n"
                         "blocks:\n"
                         "  B:\n"
                         "    size: [9, 9]\n"
                         "    place: {corner: top-left, inset: [20, 10]}\n"
                         "    cells: {a: {cell: [0, 0, 9, 9]}}\n"
                         "    art: [{text: x, where: [1, 1], font: other}]\n"),
              "d.yaml:2:17: block B, field a: font: the font \"fancy\" is missing: texts would not "
              "be drawn as meant; write osifont\n"
              "d.yaml:9:18: block B: text: the font \"other\" is missing: texts would not be drawn "
              "as meant; write osifont\n");
    EXPECT_EQ(findingsInColumn("font: \"\"", "up"),
              "d.yaml:16:32: block B, table T, field c: font: names no font: write osifont\n");
}

TEST_F(Check, ColoursAndLayersOutOfRangeAreNamed)
{
    EXPECT_EQ(findingsInBlock("    layers: {pattern: 0, text: 257}\n"
                              "    cells:\n"
                              "      a: {cell: [0, 0, 60, 20], color: 217}\n"),
              "d.yaml:8:23: block B: pattern: is 0: layers are 1 to 256\n"
              "d.yaml:8:32: block B: text: is 257: layers are 1 to 256\n"
              "d.yaml:10:40: block B, field a: color: is 217: colours are 0 to 216\n");
    EXPECT_EQ(findingsIn("formats:\n"
                         "  F:\n"
                         "    sizes: [X: {sheet: [100, 100], frame_layer: 300}]\n"),
              "d.yaml:3:49: format F, size X: frame_layer: is 300: layers are 1 to 256\n");
    EXPECT_EQ(
        findingsInBlock("    lines: none\n"
                        "    cells: {}\n"
                        "    tables:\n"
                        "      T: {at: [0, 0], direction: up, columns: {a: {width: 9}}, "
                        "symbol: {color: -1, layer: 0, font: none}}\n"),
        "d.yaml:11:91: block B, table T: layer: is 0: layers are 1 to 256\n"
        "d.yaml:11:80: block B, table T: color: is -1: colours are 0 to 216\n"
        "d.yaml:11:100: block B, table T: font: the font \"none\" is missing: texts would not "
        "be drawn as meant; write osifont\n");
}

TEST_F(Check, WhatIsOwnedByNothingIsNamed)
{
    EXPECT_EQ(findingsIn("records:\n"
                         "- kind: field\n"
                         "  id: lost\n"
                         "- kind: format\n"
                         "  id: F\n"),
              "d.yaml:2:3: field lost: kind: belongs to no format and no block: nothing uses it\n"
              "d.yaml:4:3: format F: sizes: are missing: no sheet can have it\n");
}

} // namespace
