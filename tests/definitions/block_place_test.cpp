// Where a block may stand by its definition, and what the definition forbids without anybody's minding.
#include "api/trv_fmt.h"
#include "drawing/block.h"
#include "tests/definitions/block_def_story.h"

#include <limits>

namespace {

using BlockPlaces = BlockDef;

} // namespace

TEST_F(BlockPlaces, StandsWhereTheFirstLocationForTheFormatSays)
{
    Def block;
    block.SetId("TITLE");
    block.addBlockLocation(makeBlockPlaces("OTHER", {{"Default", {makePlace("no", 1, 1)}}}));
    block.addBlockLocation(makeBlockPlaces(
        "F", {{"Default", {makePlace("a", 10, 10, 2), makePlace("b", 10, 10, 1)}}}));
    block.addBlockLocation(makeBlockPlaces("F", {{"Default", {makePlace("late", 1, 1)}}}));
    const auto places = block.getLocations(drawingOf("F"));
    ASSERT_EQ(places.size(), 2u);
    EXPECT_EQ(places[0].name, "a");
    EXPECT_EQ(places[0].location[0], 410); // 420 - 10
    EXPECT_EQ(places[1].name, "b");
    EXPECT_EQ(places[1].location[1], 287); // 297 - 10
}

TEST_F(BlockPlaces, ASuiteOfTheFormatServesUnlessTheFormatItselfComesFirst)
{
    const auto place = [](const std::string &format) {
        return makeBlockPlaces(format, {{"Default", {makePlace("for " + format, 1, 1)}}});
    };
    const auto onSheet = drawingOf("F", "FAMILY");
    Def suite_first, format_first, anywhere;
    for (const char *id : {"FAMILY", "F"}) suite_first.addBlockLocation(place(id));
    for (const char *id : {"F", "FAMILY"}) format_first.addBlockLocation(place(id));
    for (const char *id : {"X", "Default", "F"}) anywhere.addBlockLocation(place(id));
    EXPECT_EQ(suite_first.getLocations(onSheet)[0].name, "for FAMILY");
    EXPECT_EQ(format_first.getLocations(onSheet)[0].name, "for F");
    EXPECT_EQ(anywhere.getLocations(onSheet)[0].name, "for Default");
}

TEST_F(BlockPlaces, WithoutALocationForTheFormatItIsAnError)
{
    const Def block = makeBlock("TITLE", "OTHER");
    const auto onSheet = drawingOf("F");
    EXPECT_EQ(textThrownBy([&] { block.getLocations(onSheet); }),
              "Block location on format not found for block TITLE");
}

TEST_F(BlockPlaces, ALocationOutOfRangeIsNamelessBeyondTheSheet)
{
    drawingOf("F");
    Def block;
    block.SetId("TITLE");
    block.addBlockLocation(
        makeBlockPlaces("F", {{"Default", {makePlace("a", 1, 2), makePlace("b", 3, 4)}}}));
    EXPECT_EQ(block.getLocation(0).name, "a");
    EXPECT_EQ(block.getLocation(1).name, "b");
    EXPECT_EQ(block.getDefaultLocation().name, "a");
    for (const int index : {-1, 2, std::numeric_limits<int>::max()}) {
        const QelFmt::LocationInfoType none = block.getLocation(index);
        EXPECT_EQ(none.name, "");
        EXPECT_EQ(none.location[0], -1);
        EXPECT_EQ(none.location[1], -1);
    }
}

TEST_F(BlockPlaces, ASizeListedWithoutAPlaceHasNoDefaultLocation)
{
    drawingOf("F");
    Def block;
    block.SetId("TITLE");
    block.addBlockLocation(makeBlockPlaces("F", {{"A3", {}}}));
    EXPECT_TRUE(block.getLocations().empty());
    EXPECT_EQ(textThrownBy([&] { block.getDefaultLocation(); }),
              "Block location on format not found for block TITLE");
}

TEST_F(BlockPlaces, ADefinitionThatHangsBelowNoFormatIsAskedForTheCurrentSheet)
{
    drawingOf("F");
    const Def block = [] {
        Def made;
        made.SetId("TITLE");
        made.addBlockLocation(
            makeBlockPlaces("F", {{"Default", {makePlace("corner", 10, 10, 3)}}}));
        return made;
    }();
    EXPECT_EQ(block.getDefaultLocation().location[0], 410); // 420 - 10
    story.addSheet("SHEET2", 1000, 500);
    EXPECT_EQ(textThrownBy([&] { block.getDefaultLocation(); }),
              "Block location on format not found for block TITLE");
    story.open(sheet);
    EXPECT_EQ(block.getDefaultLocation().location[1], 287); // 297 - 10
}

// --- what nothing enforces ----------------------------------------------------------------------------

TEST_F(BlockPlaces, ExclusionsAndTheMovableAndDeletableFlagsForbidNothing)
{
    writeDefinitionPart(story, "d.prt", [] {
        makeFormat("F", {"A3"});
        makeBlock("FIRST");
        Def block = makeBlock("SECOND");
        block.SetExcludeBlockIds({"FIRST"});
        block.SetMovable(0);
        block.SetCanDelete(0);
    });
    const LoadedDefinitions loaded;
    ASSERT_EQ(TRV_FMT_add_format(sheet, "F", "A3"), 0) << TRV_FMT_ask_last_error();
    ASSERT_EQ(TRV_FMT_add_block(sheet, "FIRST"), 0) << TRV_FMT_ask_last_error();
    EXPECT_EQ(TRV_FMT_add_block(sheet, "SECOND"), 0) << TRV_FMT_ask_last_error();
    const auto blocks = TrDrawing::getDrawing(sheet)->format()->getBlocks();
    ASSERT_EQ(blocks.size(), 2u);
    const double place[2] = {50, 60};
    EXPECT_EQ(QEL_FMT_move_block(sheet, "SECOND", place), 0) << TRV_FMT_ask_last_error();
    EXPECT_EQ(blocks[1]->GetX(), 50);
    EXPECT_EQ(blocks[1]->GetY(), 60);
    EXPECT_EQ(TRV_FMT_delete_block(sheet, "SECOND"), 0) << TRV_FMT_ask_last_error();
    EXPECT_FALSE(TrDrawing::getDrawing(sheet)->format()->hasBlock("SECOND"));
}
