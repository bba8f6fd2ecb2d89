#include "tests/drawing/stage.h"

#include "definitions/field_def.h"
#include "tests/drawing/listing.h"
#include "udo/class_names.h"

#include "uf_drf.h"
#include "uf_udobj.h"

#include <algorithm>

namespace {

using Names = std::vector<std::string>;

class FormatTest : public Stage {
protected:
    UF_DRAW_info_t info() const
    {
        UF_DRAW_info_t result{};
        UgException::throwOnFailure(UF_DRAW_ask_drawing_info(sheet, &result));
        return result;
    }
    UgTypedObject *sheetObject() const
    {
        return dynamic_cast<UgTypedObject *>(UgObject::find(sheet));
    }
};

} // namespace

// --- placing a format -----------------------------------------------------------------------------

// On A3 (420 x 297) TITLE stands at (420 - 190, 10); its fields 5 right of that and 5, 15 above.
TEST_F(FormatTest, PlacingSetsTheSheetDrawsTheFrameAndAddsTheRequiredBlocks)
{
    addFormat("A3");
    EXPECT_EQ(format()->GetFormatDefName(), "ISO");
    EXPECT_EQ(format()->GetSizeName(), "A3");
    EXPECT_EQ(format()->GetDrawing()->getTag(), sheet);
    EXPECT_EQ(info().size_state, UF_DRAW_METRIC_SIZE);
    EXPECT_EQ(info().size.metric_size_code, UF_DRAW_A3);
    EXPECT_EQ(info().units, 1);
    EXPECT_EQ(patternNames(*format()), Names{"frameA3"});
    EXPECT_EQ(patternAt(patterns(*format())[0]), (At{0, 0}));
    EXPECT_EQ(blockNames(), Names{"TITLE"});
    EXPECT_EQ(blockAt("TITLE"), (At{230, 10}));
    EXPECT_EQ(patternNames(*block("TITLE")), Names{"title"});
    EXPECT_EQ(patternAt(patterns(*block("TITLE"))[0]), (At{230, 10}));
    EXPECT_EQ(noteAt("TITLE", "NAME"), (At{235, 15}));
    EXPECT_EQ(noteAt("TITLE", "NUMBER"), (At{235, 25}));
    EXPECT_EQ(note("TITLE", "EMPTY"), NULL_TAG); // an empty value has no note
}

TEST_F(FormatTest, FrameAndPatternsStandOnTheirLayers)
{
    addFormat("A3");
    const auto layerOf = [](tag_t tag) {
        return dynamic_cast<UgDisplayableObject *>(UgObject::find(tag))->getLayer();
    };
    EXPECT_EQ(layerOf(patterns(*format())[0]), 10);
    EXPECT_EQ(layerOf(patterns(*block("TITLE"))[0]), 20);
    EXPECT_EQ(layerOf(note("TITLE", "NAME")), 30);
    EXPECT_EQ(layerOf(format()->tag()), 254);
    EXPECT_EQ(layerOf(block("TITLE")->tag()), 254);
}

TEST_F(FormatTest, PlacingTellsWhatItDoes)
{
    const Names lines = infoLines([&] { addFormat("A3"); });
    expectInOrder(lines, {"initializing format", "Making sure format has all required blocks",
                          "Getting required block IDs.", "Adding Required block: TITLE",
                          "Addng block TITLE", "created block object.",
                          "Associating block to format.", "Done associating block to format.",
                          " Telling block to initialize itself.", "Initializing block values",
                          "Creating fields", "Creating tables", "Locating block TITLE",
                          "Initializing fields", "Calling user rountine in AddBlock",
                          "Done addng block TITLE", "Done adding required block: TITLE",
                          "Done adding required blocks to format", "done initializing format"});
}

TEST_F(FormatTest, WithoutASheetNothingIsPlaced)
{
    TrFormatV1 made;
    const auto changes = story.changesDuring([&] {
        EXPECT_EQ(textThrownBy([&] { made.initialize(nullptr, formatDef(), size("A3"), {}); }),
                  "Bad drawing object");
    });
    EXPECT_TRUE(changes.empty());
}

TEST_F(FormatTest, TheFormatKeepsItsOwnCopyOfTheDefinition)
{
    addFormat();
    EXPECT_EQ(count(QelFmt::kFormatDefV1Classname), 1u);
    EXPECT_EQ(count(QelFmt::kFormatSizeV1Classname), 3u);
    EXPECT_EQ(count(QelFmt::kBlockDefV1Classname), 1u);
    EXPECT_EQ(count(QelFmt::kFieldDefV1Classname), 3u); // one for each field, and no more
    catalog.format("ISO").sizes[0].label = "changed on disk";
    reload();
    EXPECT_EQ(format()->sizeLabel(), "A3");
}

TEST_F(FormatTest, PlacingIsTheSameAfterSavingAndReopening)
{
    addFormat();
    format()->addBlock("REV")->getTables()[0]->AppendEntry();
    const std::string before = nxhost::listSheet(sheet);
    saveAndReopen();
    EXPECT_EQ(nxhost::difference(before, nxhost::listSheet(sheet)), "");
    EXPECT_TRUE(drawing()->isFormatUptoDate());
}

// --- size -----------------------------------------------------------------------------------------

// A2 is 594 x 420, so TITLE moves to (404, 10); TALL is 300 x 900: (110, 10).
TEST_F(FormatTest, ResizingMovesTheBlocksAndRedrawsTheFrameThroughEverySize)
{
    addFormat("A3");
    set("TITLE", "NAME", "GEAR");
    const tag_t kept = note("TITLE", "NAME"), pattern = patterns(*block("TITLE"))[0];
    struct Row {
        const char *size, *frame;
        double width, height;
        At title, name;
    };
    for (const Row &row : {Row{"A2", "frameA2", 594, 420, {404, 10}, {409, 15}},
                           {"TALL", "frameTall", 300, 900, {110, 10}, {115, 15}},
                           {"A3", "frameA3", 420, 297, {230, 10}, {235, 15}}}) {
        SCOPED_TRACE(row.size);
        resize(row.size);
        EXPECT_EQ(drawing()->drawingSize()[0], row.width);
        EXPECT_EQ(drawing()->drawingSize()[1], row.height);
        EXPECT_EQ(patternNames(*format()), Names{row.frame});
        EXPECT_EQ(blockAt("TITLE"), row.title);
        EXPECT_EQ(patternAt(pattern), row.title); // the same pattern, moved
        EXPECT_EQ(noteAt("TITLE", "NAME"), row.name);
        EXPECT_EQ(note("TITLE", "NAME"), kept);
        EXPECT_EQ(value("TITLE", "NAME"), "GEAR");
    }
}

TEST_F(FormatTest, ResizingToTheSizeItHasChangesNothing)
{
    addFormat("A3");
    const std::size_t asked = nxhost::callCount("UF_DRAW_ask_drawing_info");
    EXPECT_TRUE(story.changesDuring([&] { resize("A3"); }).empty());
    EXPECT_EQ(nxhost::callCount("UF_DRAW_ask_drawing_info"), asked);
}

TEST_F(FormatTest, ResizingTellsInTheVerboseLogOfTheFrame)
{
    addFormat("A3");
    Base::log::Recording recording{&QelFmt::verbose_log()};
    resize("A2");
    const auto texts = recording.texts();
    const auto first = std::find(texts.begin(), texts.end(), "adding new frame");
    ASSERT_NE(first, texts.end());
    EXPECT_NE(std::find(first, texts.end(), "done adding pattern"), texts.end());
}

TEST_F(FormatTest, ASizeWithoutACodeIsACustomOneHeightFirst)
{
    addFormat("TALL");
    EXPECT_EQ(info().size_state, UF_DRAW_CUSTOM_SIZE);
    EXPECT_EQ(info().size.custom_size[0], 900);
    EXPECT_EQ(info().size.custom_size[1], 300);
}

TEST_F(FormatTest, ScaleAndProjectionAngleOfTheSheetStay)
{
    UF_DRAW_info_t before = info();
    before.drawing_scale = 2.0;
    before.projection_angle = UF_DRAW_FIRST_ANGLE_PROJECTION;
    UgException::throwOnFailure(UF_DRAW_set_drawing_info(sheet, &before));
    addFormat("A3");
    resize("A2");
    EXPECT_EQ(info().drawing_scale, 2.0);
    EXPECT_EQ(info().projection_angle, UF_DRAW_FIRST_ANGLE_PROJECTION);
}

// The platform proper lets only the current sheet be given a size.
TEST_F(FormatTest, WhereOnlyTheCurrentSheetCanBeResizedAnotherOneIsRefused)
{
    addFormat("A3");
    story.addSheet("SHEET2", 420, 297);
    nxhost::setStrictDrawingInfo(true);
    EXPECT_EQ(codeThrownBy([&] { resize("A2"); }), UF_DRAW_err_not_current);
    story.open(sheet);
    resize("TALL");
    EXPECT_EQ(drawing()->drawingSize()[1], 900);
}

TEST_F(FormatTest, UnitsOtherThanMillimetresMakeEnglishSheets)
{
    for (const int units : {2, 0, 3}) {
        SCOPED_TRACE(units);
        catalog.format("ISO").units = units;
        reload();
        addFormat("A3"); // code 4: 22 x 34
        EXPECT_EQ(info().size_state, UF_DRAW_ENGLISH_SIZE);
        EXPECT_EQ(info().units, 2);
        EXPECT_EQ(drawing()->drawingSize()[0], 34);
        EXPECT_EQ(drawing()->drawingSize()[1], 22);
        drawing()->removeFormat();
    }
}

TEST_F(FormatTest, AFrameOfTheSameNameIsNotDrawnAnew)
{
    catalog.format("ISO").sizes[1].frame = "frameA3";
    reload();
    addFormat("A3");
    const tag_t frame = patterns(*format())[0];
    resize("A2");
    EXPECT_EQ(patterns(*format()), std::vector<tag_t>{frame});
}

TEST_F(FormatTest, ASizeWithoutAFrameHasNone)
{
    catalog.format("ISO").sizes[1].frame = "";
    reload();
    addFormat("A3");
    const tag_t frame = patterns(*format())[0];
    resize("A2");
    EXPECT_TRUE(patterns(*format()).empty());
    EXPECT_FALSE(UgObject::find(frame));
}

TEST_F(FormatTest, TheSuiteIsTheSizesOwnOrElseTheFormats)
{
    catalog.format("ISO").suite = "SHEETS";
    catalog.format("ISO").sizes[1].suite = "LARGE";
    reload();
    addFormat("A3");
    EXPECT_EQ(format()->sizeSuiteName(), "SHEETS");
    resize("A2");
    EXPECT_EQ(format()->sizeSuiteName(), "LARGE");
    EXPECT_TRUE(format()->inSuite("SHEETS"));
    EXPECT_TRUE(format()->inSuite("LARGE"));
    EXPECT_FALSE(format()->inSuite("OTHER"));
}

TEST_F(FormatTest, WithoutAFormatTheSizeSaysNothing)
{
    const TrFormatV1 none;
    EXPECT_EQ(none.sizeLabel(), "");
    EXPECT_EQ(none.sizeSuiteName(), "");
    EXPECT_EQ(none.category(), "");
    EXPECT_FALSE(none.inSuite("Default"));
    EXPECT_EQ(none.frameLayer(), 0);
    EXPECT_EQ(none.rightOffset(), 0.0);
    EXPECT_EQ(none.numberHorzZones(), 0);
    EXPECT_TRUE(none.getBlocks().empty());
    EXPECT_TRUE(none.getDefinition()->IsNull());
}

// --- listings, and the classes ---------------------------------------------------------------------

TEST_F(FormatTest, TheListingNamesDefinitionAndSizeThenTheDefinitionItself)
{
    addFormat();
    nxhost::takeInfoWindow();
    format()->InfoObject();
    const std::string text = nxhost::takeInfoWindow();
    const std::string head = "Format Def Name         ISO\n"
                             "Size Name               A3\n"
                             "-----------------------------------------------\n"
                             "Definition Information\n"
                             "ID                      ISO\n";
    EXPECT_EQ(text.substr(0, head.size()), head);
}

TEST_F(FormatTest, AnUnboundBaseStoresNothing)
{
    TrFormatBase base;
    base.SetFormatDefName("X");
    base.SetSizeName("Y");
    base.SetDrawing(sheetObject());
    EXPECT_TRUE(base.IsNull());
    EXPECT_EQ(base.GetFormatDefName(), "");
    EXPECT_EQ(base.GetSizeName(), "");
    EXPECT_EQ(base.GetDrawing(), nullptr);
    EXPECT_EQ(base.createBlock(), nullptr);
}

TEST_F(FormatTest, ItsRecordHoldsTwoStringsTheSheetAndItsChildren)
{
    addFormat("A3");
    EXPECT_EQ(format()->GetStrings(), (Names{"ISO", "A3"}));
    EXPECT_TRUE(format()->GetInts().empty());
    EXPECT_TRUE(format()->GetDoubles().empty());
    EXPECT_EQ(format()->GetLinks(1).size(), 1u);
    EXPECT_EQ(format()->GetLinks(2).size(), 2u); // definition, TITLE
}

// --- all notes, all places ----------------------------------------------------------------------------

TEST_F(FormatTest, VerifyingPutsWhatWasMovedByHandBackWithoutMovingTheBlock)
{
    addFormat("A3");
    double away[3] = {1, 2, 0};
    UgException::throwOnFailure(UF_DRF_set_origin(note("TITLE", "NAME"), away));
    format()->verifyBlockLocations();
    EXPECT_EQ(noteAt("TITLE", "NAME"), (At{235, 15}));
    EXPECT_EQ(blockAt("TITLE"), (At{230, 10}));
}

TEST_F(FormatTest, RecreatedNotesAreNewAndShowTheSame)
{
    addFormat("A3");
    format()->addBlock("REV")->getTables()[0]->AppendEntry();
    set("TITLE", "NAME", "GEAR");
    const tag_t old = note("TITLE", "NAME");
    format()->recreateNotes();
    EXPECT_NE(note("TITLE", "NAME"), old);
    EXPECT_FALSE(UgObject::find(old));
    EXPECT_EQ(value("TITLE", "NAME"), "GEAR");
    EXPECT_EQ(noteAt("TITLE", "NAME"), (At{235, 15}));
}
