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
    void require(const Names &ids)
    {
        catalog.format("ISO").required = ids;
        reload();
    }
};

// What the add-block callback is asked, and what it answers.
struct Callback {
    static inline std::vector<std::pair<std::string, std::string>> calls;
    static inline int answer = 1;
    static int ask(const char *format, const char *block)
    {
        calls.emplace_back(format, block);
        return answer;
    }
    static void install(int toAnswer)
    {
        calls.clear();
        answer = toAnswer;
        TrFormatBase::addBlockCB() = &ask;
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

// --- blocks ----------------------------------------------------------------------------------------

TEST_F(FormatTest, ABlockIsAddedAtItsDefaultPlaceOnItsOwnSheetWhateverIsCurrent)
{
    addFormat("A3");
    const tag_t other = story.addSheet("SHEET2", 1000, 1000);
    format()->addBlock("NOTES");
    EXPECT_EQ(blockAt("NOTES"), (At{20, 200})); // "left" on A3; SHEET2 has no format at all
    EXPECT_EQ(noteAt("NOTES", "TEXT"), (At{22, 203}));
    EXPECT_NE(nxhost::listSheet(sheet).find("NOTE"), std::string::npos);
    EXPECT_EQ(nxhost::listSheet(other).find("NOTE"), std::string::npos);
}

TEST_F(FormatTest, PatternsOfAnotherSheetThanTheCurrentOneAreDrawnThere)
{
    addFormat("A3");
    const tag_t other = story.addSheet("SHEET2", 420, 297);
    const std::string onOther = nxhost::listSheet(other);
    format()->addBlock("REV")->getTables()[0]->AppendEntry();
    resize("A2");
    drawing()->updateFormat();
    EXPECT_EQ(nxhost::difference(onOther, nxhost::listSheet(other)), "");
    EXPECT_NE(nxhost::listSheet(sheet).find("frameA2"), std::string::npos);
}

TEST_F(FormatTest, ABlockIsAddedAtAGivenPlace)
{
    addFormat("A3");
    const auto at = format()->addBlock("NOTES", {"", {50, 60}});
    EXPECT_EQ(at->GetBlockDefName(), "NOTES");
    EXPECT_EQ(blockAt("NOTES"), (At{50, 60}));
    EXPECT_EQ(noteAt("NOTES", "TEXT"), (At{52, 63}));
}

TEST_F(FormatTest, AnUnknownBlockIsRefusedByName)
{
    addFormat();
    EXPECT_EQ(textThrownBy([&] { format()->addBlock("NOSUCH"); }), "No block with ID NOSUCH");
    EXPECT_EQ(textThrownBy([&] {
                  format()->addBlock("NOSUCH", {"", {0, 0}});
              }),
              "No block with ID NOSUCH");
}

TEST_F(FormatTest, ABlockWithoutAPlaceOnTheFormatIsRefusedByName)
{
    addFormat("A3", "PLAIN");
    EXPECT_EQ(textThrownBy([&] { format()->addBlock("NOTES"); }),
              "Block location on format not found for block NOTES");
    catalog.block("NOTES").places = {{"PLAIN", {{"A3", {}}}}}; // a matching size without places
    reload();
    EXPECT_EQ(textThrownBy([&] { format()->addBlock("NOTES"); }),
              "Block location on format not found for block NOTES");
}

TEST_F(FormatTest, WithoutAFormatNoBlockCanBeAdded)
{
    const auto changes = story.changesDuring([&] {
        EXPECT_EQ(textThrownBy([&] { format()->addBlock("NOTES"); }), "No format found on drawing");
        EXPECT_EQ(textThrownBy([&] {
                      format()->addBlock("NOTES", {"", {1, 2}});
                  }),
                  "No format found on drawing");
    });
    EXPECT_TRUE(changes.empty());
}

TEST_F(FormatTest, ABlockMayStandTwice)
{
    addFormat();
    format()->addBlock("NOTES");
    format()->addBlock("NOTES");
    EXPECT_EQ(blockNames(), (Names{"TITLE", "NOTES", "NOTES"}));
    EXPECT_TRUE(format()->hasBlock("NOTES"));
    EXPECT_FALSE(format()->hasBlock("NOTE"));
    EXPECT_FALSE(format()->hasBlock("notes"));
}

TEST_F(FormatTest, ARetainedBlockLivesOnAndGoesToTheEndWhenItComesBack)
{
    addFormat();
    auto notes = format()->addBlock("NOTES");
    format()->addBlock("REV");
    set("NOTES", "TEXT", "kept");
    format()->retainBlock(notes);
    EXPECT_EQ(blockNames(), (Names{"TITLE", "REV"}));
    EXPECT_TRUE(notes->GetUdoObject()->isAlive());
    EXPECT_EQ(notes->getFields().at(0)->GetValue(), Names{"kept"});
    format()->addBlock(notes);
    EXPECT_EQ(blockNames(), (Names{"TITLE", "REV", "NOTES"}));
    EXPECT_EQ(value("NOTES", "TEXT"), "kept");
}

TEST_F(FormatTest, RemovingABlockNamesItAndLeavesTheViewUnbound)
{
    addFormat();
    auto notes = format()->addBlock("NOTES");
    const Names lines = infoLines([&] { format()->removeBlock(notes); });
    EXPECT_EQ(lines, Names{"Removing block NOTES"});
    EXPECT_TRUE(notes->IsNull());
    EXPECT_TRUE(infoLines([&] { format()->removeBlock(notes); }).empty()); // nothing more to do
}

TEST_F(FormatTest, RecordsThatAreNoBlocksArePassedOverAlsoThoseOfOtherPrograms)
{
    static const UF_UDOBJ_class_t theirClass = [] {
        UF_UDOBJ_class_t id = 0;
        UgException::throwOnFailure(UF_UDOBJ_create_class("THEIR_CLASS", "Theirs", &id));
        return id;
    }();
    addFormat();
    TrFieldDefV1 definition; // one of the library's own
    definition.SetId("FOREIGN");
    tag_t theirs = NULL_TAG;
    UgException::throwOnFailure(UF_UDOBJ_create_udo(theirClass, &theirs));
    for (const tag_t child : {definition.tag(), theirs}) {
        UF_UDOBJ_link_t link{2, child, 0};
        UgException::throwOnFailure(UF_UDOBJ_add_links(format()->tag(), 1, &link));
    }
    EXPECT_EQ(blockNames(), Names{"TITLE"});
    EXPECT_EQ(format()->getDefinition()->GetId(), "ISO");
    resize("A2");
    EXPECT_EQ(blockAt("TITLE"), (At{404, 10}));
}

TEST_F(FormatTest, TheFormatMakesBlocksOfItsGeneration)
{
    TrFormatV1 made;
    const boost::shared_ptr<TrBlockBase> block(made.createBlock());
    EXPECT_TRUE(boost::dynamic_pointer_cast<TrBlockV1>(block));
    EXPECT_TRUE(block->IsNull());
    EXPECT_TRUE(made.IsNull());
}

// --- required blocks -------------------------------------------------------------------------------

TEST_F(FormatTest, RequiredBlocksAreAddedInTheirOrderEachOnce)
{
    require({"REV", "TITLE", "REV"});
    addFormat();
    EXPECT_EQ(blockNames(), (Names{"REV", "TITLE"}));
}

TEST_F(FormatTest, AMissingRequiredBlockIsToldInTheSystemLogAndStopsNoOther)
{
    require({"GONE", "TITLE"});
    nxhost::takeSyslog();
    addFormat();
    EXPECT_EQ(blockNames(), Names{"TITLE"});
    EXPECT_NE(nxhost::takeSyslog().find(
                  "***ERROR: Trying to add a required block that does not exist(ID - GONE)\n"),
              std::string::npos);
}

TEST_F(FormatTest, BlocksThatTheSiteRequiresAreNotPlaced)
{
    story.useSettings("[ISO Required Blocks]\nNOTES =\n");
    addFormat();
    EXPECT_EQ(blockNames(), Names{"TITLE"});
    EXPECT_TRUE(drawing()->isFormatUptoDate());
}

TEST_F(FormatTest, RequiredBlocksCannotBeRemovedUnlessTheirDefinitionAllowsIt)
{
    require({"TITLE", "REV"});
    catalog.block("REV").canDelete = 1;
    catalog.block("NOTES").canDelete = 0;
    reload();
    addFormat();
    format()->addBlock("NOTES");
    EXPECT_FALSE(format()->canDeleteBlock(blockDef("TITLE"))); // required
    EXPECT_TRUE(format()->canDeleteBlock(blockDef("REV")));    // required, and may go all the same
    EXPECT_TRUE(format()->canDeleteBlock(blockDef("NOTES")));  // not required
    Names removable;
    for (const auto &block : format()->removableBlocks())
        removable.push_back(block->GetBlockDefName());
    EXPECT_EQ(removable, (Names{"REV", "NOTES"}));
}

// --- the callback ----------------------------------------------------------------------------------

TEST_F(FormatTest, TheCallbackIsToldOfEveryBlockAlsoOfRequiredOnes)
{
    Callback::install(1);
    addFormat();
    format()->addBlock("NOTES");
    const std::vector<std::pair<std::string, std::string>> expected{{"ISO", "TITLE"},
                                                                    {"ISO", "NOTES"}};
    EXPECT_EQ(Callback::calls, expected);
}

TEST_F(FormatTest, AnAnswerOfZeroLeavesNothingOfTheBlock)
{
    addFormat();
    const std::string before = nxhost::listPart(story.part());
    Callback::install(0);
    const auto vetoed = format()->addBlock("REV");
    EXPECT_TRUE(vetoed->IsNull());
    EXPECT_EQ(blockNames(), Names{"TITLE"});
    EXPECT_EQ(nxhost::difference(before, nxhost::listPart(story.part())), "");
}

TEST_F(FormatTest, AnyOtherAnswerKeepsTheBlockAndAnEmptySlotAsksNobody)
{
    addFormat();
    Callback::install(-1);
    format()->addBlock("NOTES");
    EXPECT_TRUE(format()->hasBlock("NOTES"));
    Callback::install(0);
    TrFormatBase::addBlockCB() = nullptr;
    format()->addBlock("REV");
    EXPECT_TRUE(format()->hasBlock("REV"));
    EXPECT_TRUE(Callback::calls.empty());
}

// REV is required, and the callback brings it along with TITLE: it is there when its turn comes.
TEST_F(FormatTest, ARequiredBlockThatTheCallbackAddedIsNotAddedTwice)
{
    require({"TITLE", "REV", "NOTES"});
    static tag_t on;
    on = sheet;
    TrFormatBase::addBlockCB() = [](const char *, const char *block) {
        if (std::string(block) == "TITLE") TrDrawing::getDrawing(on)->format()->addBlock("REV");
        return 1;
    };
    addFormat();
    EXPECT_EQ(blockNames(), (Names{"TITLE", "REV", "NOTES"}));
}

// NOTES is required after TITLE and stands already when the callback takes it away again.
TEST_F(FormatTest, ARequiredBlockThatTheCallbackTookAwayIsAddedAgain)
{
    require({"NOTES", "TITLE", "NOTES"});
    static tag_t on;
    on = sheet;
    TrFormatBase::addBlockCB() = [](const char *, const char *block) {
        if (std::string(block) != "TITLE") return 1;
        const auto format = TrDrawing::getDrawing(on)->format();
        auto first = format->getBlocks().front();
        format->removeBlock(first);
        return 1;
    };
    addFormat();
    EXPECT_EQ(blockNames(), (Names{"TITLE", "NOTES"}));
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
