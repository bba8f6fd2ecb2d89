// The blocks of a format: added, required, announced.
#include "tests/drawing/stage.h"

#include "definitions/field_def.h"

#include "uf_udobj.h"

namespace {

using Names = std::vector<std::string>;

class FormatBlocks : public Stage {
protected:
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

// --- blocks ----------------------------------------------------------------------------------------

TEST_F(FormatBlocks, ABlockIsAddedAtItsDefaultPlaceOnItsOwnSheetWhateverIsCurrent)
{
    addFormat("A3");
    const tag_t other = story.addSheet("SHEET2", 1000, 1000);
    format()->addBlock("NOTES");
    EXPECT_EQ(blockAt("NOTES"), (At{20, 200})); // "left" on A3; SHEET2 has no format at all
    EXPECT_EQ(noteAt("NOTES", "TEXT"), (At{22, 203}));
    EXPECT_NE(nxhost::listSheet(sheet).find("NOTE"), std::string::npos);
    EXPECT_EQ(nxhost::listSheet(other).find("NOTE"), std::string::npos);
}

TEST_F(FormatBlocks, PatternsOfAnotherSheetThanTheCurrentOneAreDrawnThere)
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

TEST_F(FormatBlocks, ABlockIsAddedAtAGivenPlace)
{
    addFormat("A3");
    const auto at = format()->addBlock("NOTES", {"", {50, 60}});
    EXPECT_EQ(at->GetBlockDefName(), "NOTES");
    EXPECT_EQ(blockAt("NOTES"), (At{50, 60}));
    EXPECT_EQ(noteAt("NOTES", "TEXT"), (At{52, 63}));
}

TEST_F(FormatBlocks, AnUnknownBlockIsRefusedByName)
{
    addFormat();
    EXPECT_EQ(textThrownBy([&] { format()->addBlock("NOSUCH"); }), "No block with ID NOSUCH");
    EXPECT_EQ(textThrownBy([&] {
                  format()->addBlock("NOSUCH", {"", {0, 0}});
              }),
              "No block with ID NOSUCH");
}

TEST_F(FormatBlocks, ABlockWithoutAPlaceOnTheFormatIsRefusedByName)
{
    addFormat("A3", "PLAIN");
    EXPECT_EQ(textThrownBy([&] { format()->addBlock("NOTES"); }),
              "Block location on format not found for block NOTES");
    catalog.block("NOTES").places = {{"PLAIN", {{"A3", {}}}}}; // a matching size without places
    reload();
    EXPECT_EQ(textThrownBy([&] { format()->addBlock("NOTES"); }),
              "Block location on format not found for block NOTES");
}

TEST_F(FormatBlocks, WithoutAFormatNoBlockCanBeAdded)
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

TEST_F(FormatBlocks, ABlockMayStandTwice)
{
    addFormat();
    format()->addBlock("NOTES");
    format()->addBlock("NOTES");
    EXPECT_EQ(blockNames(), (Names{"TITLE", "NOTES", "NOTES"}));
    EXPECT_TRUE(format()->hasBlock("NOTES"));
    EXPECT_FALSE(format()->hasBlock("NOTE"));
    EXPECT_FALSE(format()->hasBlock("notes"));
}

TEST_F(FormatBlocks, ARetainedBlockLivesOnAndGoesToTheEndWhenItComesBack)
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

TEST_F(FormatBlocks, RemovingABlockNamesItAndLeavesTheViewUnbound)
{
    addFormat();
    auto notes = format()->addBlock("NOTES");
    const Names lines = infoLines([&] { format()->removeBlock(notes); });
    EXPECT_EQ(lines, Names{"Removing block NOTES"});
    EXPECT_TRUE(notes->IsNull());
    EXPECT_TRUE(infoLines([&] { format()->removeBlock(notes); }).empty()); // nothing more to do
}

TEST_F(FormatBlocks, RecordsThatAreNoBlocksArePassedOverAlsoThoseOfOtherPrograms)
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

TEST_F(FormatBlocks, TheFormatMakesBlocksOfItsGeneration)
{
    TrFormatV1 made;
    const boost::shared_ptr<TrBlockBase> block(made.createBlock());
    EXPECT_TRUE(boost::dynamic_pointer_cast<TrBlockV1>(block));
    EXPECT_TRUE(block->IsNull());
    EXPECT_TRUE(made.IsNull());
}

// --- required blocks -------------------------------------------------------------------------------

TEST_F(FormatBlocks, RequiredBlocksAreAddedInTheirOrderEachOnce)
{
    require({"REV", "TITLE", "REV"});
    addFormat();
    EXPECT_EQ(blockNames(), (Names{"REV", "TITLE"}));
}

TEST_F(FormatBlocks, AMissingRequiredBlockIsToldInTheSystemLogAndStopsNoOther)
{
    require({"GONE", "TITLE"});
    nxhost::takeSyslog();
    addFormat();
    EXPECT_EQ(blockNames(), Names{"TITLE"});
    EXPECT_NE(nxhost::takeSyslog().find(
                  "***ERROR: Trying to add a required block that does not exist(ID - GONE)\n"),
              std::string::npos);
}

TEST_F(FormatBlocks, BlocksThatTheSiteRequiresAreNotPlaced)
{
    story.useSettings("[ISO Required Blocks]\nNOTES =\n");
    addFormat();
    EXPECT_EQ(blockNames(), Names{"TITLE"});
    EXPECT_TRUE(drawing()->isFormatUptoDate());
}

TEST_F(FormatBlocks, RequiredBlocksCannotBeRemovedUnlessTheirDefinitionAllowsIt)
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

// NOTES has lost its copy, TITLE too: what the format says of their names counts.
TEST_F(FormatBlocks, ABlockThatHasLostItsDefinitionMayGoUnlessItIsRequired)
{
    addFormat();
    format()->addBlock("NOTES");
    for (const auto &block : format()->getBlocks()) {
        for (const auto &field : block->getFields()) field->SetDefinition(TrFieldDefV1());
        block->retainDefinition()->DeleteUDO();
        ASSERT_TRUE(block->GetDefinition()->IsNull());
    }
    Names removable;
    for (const auto &block : format()->removableBlocks())
        removable.push_back(block->GetBlockDefName());
    EXPECT_EQ(removable, Names{"NOTES"});
}

// A block of the user's that the new format has no place for, by its own definition and by the one on disk.
TEST_F(FormatBlocks, ARetainedBlockWithoutAnyPlaceStaysWhereItIsAndTheLogTells)
{
    addFormat();
    auto notes = format()->addBlock("NOTES");
    set("NOTES", "TEXT", "kept");
    const At before = blockAt("NOTES");
    format()->retainBlock(notes);
    drawing()->removeFormat();
    const auto lines = infoLines([&] {
        format()->initialize(dynamic_cast<UgTypedObject *>(UgObject::find(sheet)),
                             formatDef("PLAIN"), size("A3", "PLAIN"), {notes});
    });
    EXPECT_EQ(std::count(lines.begin(), lines.end(),
                         "Block NOTES has no location on this format and stays where it is."),
              1);
    EXPECT_EQ(blockAt("NOTES"), before);
    EXPECT_EQ(value("NOTES", "TEXT"), "kept");
}

TEST_F(FormatBlocks, ABlockThatIsNotMovedCannotFollowToASizeWithoutPlaces)
{
    catalog.block("TITLE").places = {{"ISO", {{"A3", {{"corner", 190, 10, 2}}}, {"A2", {}}}}};
    reload();
    addFormat("A3");
    EXPECT_EQ(textThrownBy([&] { resize("A2"); }),
              "Block location on format not found for block TITLE");
}

// --- the callback ----------------------------------------------------------------------------------

TEST_F(FormatBlocks, TheCallbackIsToldOfEveryBlockAlsoOfRequiredOnes)
{
    Callback::install(1);
    addFormat();
    format()->addBlock("NOTES");
    const std::vector<std::pair<std::string, std::string>> expected{{"ISO", "TITLE"},
                                                                    {"ISO", "NOTES"}};
    EXPECT_EQ(Callback::calls, expected);
}

TEST_F(FormatBlocks, AnAnswerOfZeroLeavesNothingOfTheBlock)
{
    addFormat();
    const std::string before = nxhost::listPart(story.part());
    Callback::install(0);
    const auto vetoed = format()->addBlock("REV");
    EXPECT_TRUE(vetoed->IsNull());
    EXPECT_EQ(blockNames(), Names{"TITLE"});
    EXPECT_EQ(nxhost::difference(before, nxhost::listPart(story.part())), "");
}

TEST_F(FormatBlocks, AnyOtherAnswerKeepsTheBlockAndAnEmptySlotAsksNobody)
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
TEST_F(FormatBlocks, ARequiredBlockThatTheCallbackAddedIsNotAddedTwice)
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
TEST_F(FormatBlocks, ARequiredBlockThatTheCallbackTookAwayIsAddedAgain)
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
