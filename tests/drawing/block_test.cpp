#include "definitions/field_def.h"
#include "definitions/table_def.h"
#include "drawing/pattern.h"
#include "tests/drawing/listing.h"
#include "tests/drawing/stage.h"
#include "udo/class_names.h"

#include "ug_line.hxx"

#include <algorithm>

namespace {

using Names = std::vector<std::string>;

class BlockTest : public Stage {
protected:
    BlockTest() { addFormat("A3"); }
    boost::shared_ptr<TrBlockBase> placed(const std::string &id) { return format()->addBlock(id); }
    int index(const std::string &id) const { return block(id)->GetAlternateLocationIndex(); }
};

} // namespace

// --- a new block -----------------------------------------------------------------------------------

TEST_F(BlockTest, InitializingTellsItsStepsInOrder)
{
    expectInOrder(infoLines([&] { placed("REV"); }),
                  {"created block object.", "Initializing block values", "Creating fields",
                   "Creating tables", "Locating block REV", "Initializing fields"});
}

TEST_F(BlockTest, ABlockHasTheFieldsAndTablesOfItsDefinitionInTheirOrder)
{
    const auto rev = placed("REV");
    EXPECT_EQ(fieldNames("TITLE"), (Names{"NAME", "NUMBER", "EMPTY"}));
    EXPECT_EQ(fieldNames("REV"), Names{"HEAD"});
    ASSERT_EQ(rev->getTables().size(), 1u);
    EXPECT_EQ(rev->getTables()[0]->GetTableDefName(), "REVS");
    EXPECT_TRUE(rev->getTable("REVS"));
    EXPECT_FALSE(rev->getTable("revs"));
    EXPECT_TRUE(block("TITLE")->getTables().empty());
}

TEST_F(BlockTest, FieldsAndTablesAreLinkedToTheRecordsOfTheBlocksOwnDefinition)
{
    const auto rev = placed("REV");
    const auto def = rev->GetDefinition();
    EXPECT_EQ(rev->getFields()[0]->GetDefinition().tag(), def->GetFieldDefinitions()[0].tag());
    EXPECT_EQ(rev->getTables()[0]->GetDefinition()->tag(), def->GetTableDefinitions()[0]->tag());
    EXPECT_NE(def->tag(), blockDef("REV")->tag());
}

TEST_F(BlockTest, TheRecordHoldsNamePlaceAndIndex)
{
    const auto title = block("TITLE");
    EXPECT_EQ(title->GetStrings(), Names{"TITLE"});
    EXPECT_EQ(title->GetDoubles(), (std::vector<double>{230, 10}));
    EXPECT_EQ(title->GetInts(), std::vector<int>{0});
    EXPECT_EQ(title->GetLinks(2).size(), 4u); // definition and three fields
    EXPECT_EQ(title->GetOwnedObjects(10).size(), 1u);
}

TEST_F(BlockTest, ABlockWithoutAPatternNameHasNoPattern)
{
    EXPECT_TRUE(placed("NOTES")->GetOwnedObjects(10).empty());
}

TEST_F(BlockTest, SettingAnotherDefinitionDeletesTheOneBefore)
{
    const auto title = block("TITLE");
    const tag_t old = title->GetDefinition()->tag();
    title->setDefinition(blockDef("TITLE")->clone());
    EXPECT_FALSE(UgObject::find(old));
    EXPECT_EQ(count(QelFmt::kBlockDefV1Classname), 1u);
    EXPECT_EQ(title->getFields().size(), 3u); // their links to the old records are gone, silently
    EXPECT_TRUE(title->getFields()[0]->GetDefinition().IsNull());
}

TEST_F(BlockTest, ARetainedDefinitionIsUnlinkedAndLives)
{
    const auto title = block("TITLE");
    const auto def = title->retainDefinition();
    EXPECT_TRUE(def->GetUdoObject()->isAlive());
    EXPECT_TRUE(title->GetDefinition()->IsNull());
    title->setDefinition(def);
    EXPECT_EQ(title->GetDefinition()->tag(), def->tag());
}

TEST_F(BlockTest, ARetainedFieldLivesAndCanComeBack)
{
    const auto title = block("TITLE");
    auto name = title->getFields()[0];
    title->removeAndRetainField(name);
    EXPECT_EQ(fieldNames("TITLE"), (Names{"NUMBER", "EMPTY"}));
    EXPECT_TRUE(name->GetUdoObject()->isAlive());
    title->addField(name);
    EXPECT_EQ(fieldNames("TITLE"), (Names{"NUMBER", "EMPTY", "NAME"}));
}

TEST_F(BlockTest, TheListingGivesThePlaceThenTheDefinition)
{
    nxhost::takeInfoWindow();
    block("TITLE")->InfoObject();
    const std::string text = nxhost::takeInfoWindow();
    const std::string head = "X                       230\n"
                             "Y                       10\n"
                             "-----------------------------------------------\n"
                             "Definition Information\n"
                             "ID                      TITLE\n";
    EXPECT_EQ(text.substr(0, head.size()), head);
}

TEST_F(BlockTest, AnUnboundBaseStoresNothing)
{
    TrBlockBase base;
    base.SetX(1);
    base.SetY(2);
    base.SetBlockDefName("X");
    base.SetAlternateLocationIndex(3);
    base.updatePattern();
    base.removePattern();
    base.movePattern(Point2(1, 2));
    EXPECT_TRUE(base.IsNull());
    EXPECT_EQ(base.GetX(), 0.0);
    EXPECT_EQ(base.GetBlockDefName(), "");
    EXPECT_EQ(base.GetAlternateLocationIndex(), 0);
    EXPECT_EQ(base.createField(), nullptr);
    EXPECT_TRUE(base.GetDefinition()->IsNull());
    EXPECT_TRUE(base.retainDefinition()->IsNull());
    EXPECT_TRUE(base.getFields().empty());
    EXPECT_TRUE(base.getTables().empty());
    EXPECT_FALSE(base.checkDefinition());
}

// --- placing ----------------------------------------------------------------------------------------

// On A3 (420 x 297): "left" (20, 200), "right" 120 from the right and 50 from the top (300, 247).
TEST_F(BlockTest, ANamedPlaceIsRememberedByItsIndex)
{
    placed("NOTES");
    EXPECT_EQ(index("NOTES"), 0);
    block("NOTES")->locateBlock(QelFmt::LocationInfoType{"right", {300, 247}});
    EXPECT_EQ(index("NOTES"), 1);
    EXPECT_EQ(blockAt("NOTES"), (At{300, 247}));
    EXPECT_EQ(noteAt("NOTES", "TEXT"), (At{302, 250}));
}

TEST_F(BlockTest, ANameThatTheDefinitionLacksLeavesTheIndexAsItWas)
{
    placed("NOTES");
    block("NOTES")->locateBlock(QelFmt::LocationInfoType{"right", {300, 247}});
    block("NOTES")->locateBlock(QelFmt::LocationInfoType{"zz", {7, 8}});
    EXPECT_EQ(index("NOTES"), 1);
    EXPECT_EQ(blockAt("NOTES"), (At{7, 8}));
    block("NOTES")->locateBlock(QelFmt::LocationInfoType{"Right", {7, 8}}); // case counts
    EXPECT_EQ(index("NOTES"), 1);
}

TEST_F(BlockTest, AFreePointHasTheIndexMinusOneAlsoWhereTheDefinitionKnowsNoSize)
{
    // On a size that the definition lacks its answer is one nameless place.
    catalog.block("NOTES").places = {{"ISO", {{"A2", {{"left", 30, 300}}}}}};
    reload();
    placed("NOTES");
    EXPECT_EQ(blockAt("NOTES"), (At{0, 0}));
    const double point[] = {50, 60};
    block("NOTES")->locateBlock(point);
    EXPECT_EQ(index("NOTES"), -1);
    EXPECT_EQ(blockAt("NOTES"), (At{50, 60}));
}

TEST_F(BlockTest, AFreelyPlacedMovableBlockKeepsItsPlaceThroughEverySize)
{
    placed("NOTES");
    const double point[] = {50, 60};
    block("NOTES")->locateBlock(point);
    for (const char *size : {"A2", "TALL", "A3"}) {
        SCOPED_TRACE(size);
        resize(size);
        EXPECT_EQ(index("NOTES"), -1);
        EXPECT_EQ(blockAt("NOTES"), (At{50, 60}));
        EXPECT_EQ(noteAt("NOTES", "TEXT"), (At{52, 63}));
    }
}

TEST_F(BlockTest, ABlockThatIsNotMovableGoesBackToItsPlaceWhenTheSizeChanges)
{
    const double point[] = {50, 60};
    block("TITLE")->locateBlock(point);
    EXPECT_EQ(index("TITLE"), -1);
    resize("A2");
    EXPECT_EQ(index("TITLE"), 0);
    EXPECT_EQ(blockAt("TITLE"), (At{404, 10})); // 594 - 190
}

// On A2 "right" has a negative X: no such place there. On TALL neither has.
TEST_F(BlockTest, AMovableBlockFollowsItsNamedPlaceAndStaysWhereThereIsNone)
{
    placed("NOTES");
    resize("A2");
    EXPECT_EQ(blockAt("NOTES"), (At{30, 300}));
    resize("TALL");
    EXPECT_EQ(blockAt("NOTES"), (At{30, 300}));
    EXPECT_EQ(index("NOTES"), 0);
    resize("A3");
    EXPECT_EQ(blockAt("NOTES"), (At{20, 200}));

    block("NOTES")->locateBlock(QelFmt::LocationInfoType{"right", {300, 247}});
    resize("A2");
    EXPECT_EQ(blockAt("NOTES"), (At{300, 247}));
    EXPECT_EQ(index("NOTES"), 1);
}

TEST_F(BlockTest, AnIndexPastTheEndLeavesTheBlockWhereItIs)
{
    placed("NOTES");
    block("NOTES")->SetAlternateLocationIndex(2); // two places: 0 and 1
    resize("A2");
    EXPECT_EQ(blockAt("NOTES"), (At{20, 200}));
}

TEST_F(BlockTest, ABlockWithoutAPlaceOnTheFormatCanStillBeMovedFreely)
{
    placed("NOTES");
    auto notes = block("NOTES");
    format()->retainBlock(notes);
    drawing()->removeFormat();
    addFormat("A3", "PLAIN"); // which NOTES does not know
    format()->addBlock(notes);
    const double point[] = {50, 60};
    notes->locateBlock(point);
    EXPECT_EQ(blockAt("NOTES"), (At{50, 60}));
    notes->move(point);
    EXPECT_EQ(noteAt("NOTES", "TEXT"), (At{52, 63}));
}

TEST_F(BlockTest, MovingMovesPatternNotesAndTables)
{
    const auto rev = placed("REV"); // (420 - 100, 297 - 10)
    EXPECT_EQ(blockAt("REV"), (At{320, 287}));
    rev->getTables()[0]->AppendEntry();
    const tag_t pattern = patterns(*rev)[0];
    const double point[] = {100, 150};
    rev->move(point);
    EXPECT_EQ(patterns(*rev), std::vector<tag_t>{pattern});
    EXPECT_EQ(patternAt(pattern), (At{100, 150}));
    EXPECT_EQ(noteAt("REV", "HEAD"), (At{101, 151}));
    EXPECT_EQ(rev->getTables()[0]->GetX(), 100);
    EXPECT_EQ(rev->getTables()[0]->GetY(), 158); // 8 above the block
    rev->move(QelFmt::LocationInfoType{"top", {320, 287}});
    EXPECT_EQ(patternAt(pattern), (At{320, 287}));
    EXPECT_EQ(noteAt("REV", "HEAD"), (At{321, 288}));
    EXPECT_EQ(index("REV"), 0);
}

TEST_F(BlockTest, AllPatternsOfABlockMoveAlike)
{
    const auto title = block("TITLE");
    makePattern(story, "second");
    ZemPattern *second = ZemPattern::Create("second", 20, {300, 100});
    title->AddOwnedObjects({second});
    const double point[] = {240, 15}; // 10 right, 5 up
    title->locateBlock(point);
    EXPECT_EQ(patternAt(patterns(*title).at(0)), (At{240, 15}));
    EXPECT_EQ(patternAt(patterns(*title).at(1)), (At{310, 105}));
}

TEST_F(BlockTest, MovingToNowhereKeepsPlaceAndIndex)
{
    placed("NOTES");
    const double point[] = {50, 60};
    block("NOTES")->locateBlock(point);
    block("NOTES")->move(nullptr);
    EXPECT_EQ(blockAt("NOTES"), (At{50, 60}));
    EXPECT_EQ(index("NOTES"), -1);
    block("NOTES")->locateBlock(QelFmt::LocationInfoType{"right", {300, 247}});
    block("NOTES")->move(nullptr);
    EXPECT_EQ(blockAt("NOTES"), (At{300, 247}));
    EXPECT_EQ(index("NOTES"), 1);
}

TEST_F(BlockTest, FieldsOfTheSheetsEdgesStayAtTheEdges)
{
    catalog.block("NOTES").fields.push_back({"EDGE", 10, 20, {"E"}, 0, 0, {}, 4}); // upper right
    reload();
    placed("NOTES");
    EXPECT_EQ(noteAt("NOTES", "EDGE"), (At{410, 277})); // 420 - 10, 297 - 20
    const double point[] = {50, 60};
    block("NOTES")->locateBlock(point);
    EXPECT_EQ(noteAt("NOTES", "EDGE"), (At{410, 277}));
    EXPECT_EQ(noteAt("NOTES", "TEXT"), (At{52, 63}));
}

// --- borders of its fields ---------------------------------------------------------------------------

// A box 40 wide and 8 high at (2, 3) of a block at (20, 200): lines between (22, 203) and (62, 211).
TEST_F(BlockTest, BordersEncloseTheFieldAndMoveWithTheBlock)
{
    FieldDesc &text = catalog.field("NOTES", "TEXT");
    text.width = 40;
    text.height = 8;
    text.borders = {1, 1, 0, 1, 4};
    reload();
    placed("NOTES");
    const auto expectBox = [&](double x0, double y0, double x1, double y1) {
        const auto lines = field("NOTES", "TEXT")->GetBorders();
        ASSERT_EQ(lines.size(), 4u);
        double lowest = 1e9, highest = -1e9, leftmost = 1e9, rightmost = -1e9;
        for (const UgLine *line : lines) {
            for (const Point3 &end : {line->getStartPoint(), line->getEndPoint()}) {
                leftmost = std::min(leftmost, end[0]);
                rightmost = std::max(rightmost, end[0]);
                lowest = std::min(lowest, end[1]);
                highest = std::max(highest, end[1]);
            }
        }
        EXPECT_EQ((At{leftmost, lowest}), (At{x0, y0}));
        EXPECT_EQ((At{rightmost, highest}), (At{x1, y1}));
    };
    expectBox(22, 203, 62, 211);
    resize("A2"); // "left" is (30, 300)
    expectBox(32, 303, 72, 311);
}

TEST_F(BlockTest, ATextThatHangsBelowItsPointHasItsBoxBelow)
{
    FieldDesc &text = catalog.field("NOTES", "TEXT");
    text.width = 40;
    text.height = 8;
    text.textSite = 1; // upper left
    text.borders = {0, 1, 0, 0, 0};
    reload();
    placed("NOTES");
    const auto lines = field("NOTES", "TEXT")->GetBorders();
    ASSERT_EQ(lines.size(), 1u);
    // The left line, from (22, 203) down to (22, 195).
    EXPECT_EQ((At{lines[0]->getStartPoint()[0], lines[0]->getStartPoint()[1]}), (At{22, 203}));
    EXPECT_EQ((At{lines[0]->getEndPoint()[0], lines[0]->getEndPoint()[1]}), (At{22, 195}));
}
