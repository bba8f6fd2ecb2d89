// Sheets against definitions that somebody edited.
#include "definitions/field_def.h"
#include "definitions/table_def.h"
#include "tests/drawing/listing.h"
#include "tests/drawing/stage.h"
#include "udo/class_names.h"

#include "drawing/block_not_exist.h"

#include "uf_obj.h"
#include "ug_line.hxx"

#include <algorithm>

namespace {

using Names = std::vector<std::string>;

class UpdateTest : public Stage {
protected:
    UpdateTest() { addFormat("A3"); }

    bool isCurrent() const { return drawing()->isFormatUptoDate(); }
    void update() const { drawing()->updateFormat(); }
    std::vector<FieldDesc> &titleFields() { return catalog.block("TITLE").fields; }
    // Exactly the records that the placed blocks need, and no orphan.
    void expectOneDefinitionEach() const
    {
        std::size_t fields = 0, tables = 0;
        for (const auto &block : format()->getBlocks()) {
            fields += block->GetDefinition()->GetFieldDefinitions().size();
            for (const auto &table : block->GetDefinition()->GetTableDefinitions()) {
                fields += table->GetFieldDefinitions().size();
                ++tables;
            }
        }
        EXPECT_EQ(count(QelFmt::kFormatDefV1Classname), 1u);
        EXPECT_EQ(count(QelFmt::kFormatSizeV1Classname),
                  format()->getDefinition()->GetAvailableSizes().size());
        EXPECT_EQ(count(QelFmt::kBlockDefV1Classname), format()->getBlocks().size());
        EXPECT_EQ(count(QelFmt::kFieldDefV1Classname), fields);
        EXPECT_EQ(count(QelFmt::kTableDefV1Classname), tables);
    }
};

} // namespace

// --- the format -------------------------------------------------------------------------------------

TEST_F(UpdateTest, UpdatingWhatIsCurrentChangesNothingOnTheSheet)
{
    EXPECT_EQ(story.changesIn(story.part(), [&] { update(); }), "");
}

TEST_F(UpdateTest, AChangedFormatIsOutOfDateUntilItIsUpdated)
{
    catalog.format("ISO").sizes[0].label = "A3 new";
    reload();
    EXPECT_FALSE(isCurrent());
    EXPECT_EQ(drawing()->sizeLabel(), "A3");
    update();
    EXPECT_TRUE(isCurrent());
    EXPECT_EQ(drawing()->sizeLabel(), "A3 new");
}

TEST_F(UpdateTest, AfterManyUpdatesThereIsOneCopyOfEachDefinition)
{
    for (const char *label : {"one", "two", "three"}) {
        catalog.format("ISO").sizes[0].label = label;
        catalog.field("TITLE", "NAME").more = [label](TrFieldDefV1 &def) {
            def.SetPartAttrString(label);
        };
        reload();
        update();
        expectOneDefinitionEach();
    }
}

TEST_F(UpdateTest, AnotherFrameIsDrawnAndTheSameOneKept)
{
    const tag_t before = patterns(*format())[0];
    catalog.format("ISO").category = "Site";
    reload();
    update();
    EXPECT_EQ(patterns(*format()), std::vector<tag_t>{before});
    catalog.format("ISO").sizes[0].frame = "framePlain";
    reload();
    update();
    EXPECT_EQ(patternNames(*format()), Names{"framePlain"});
    EXPECT_FALSE(UgObject::find(before));
}

TEST_F(UpdateTest, ASizeThatIsGoneLeavesTheSheetItsFrameAndItsName)
{
    const tag_t before = patterns(*format())[0];
    catalog.format("ISO").sizes.erase(catalog.format("ISO").sizes.begin());
    reload();
    update();
    EXPECT_EQ(patterns(*format()), std::vector<tag_t>{before});
    EXPECT_EQ(format()->GetSizeName(), "A3");
    EXPECT_EQ(format()->sizeLabel(), "");
    EXPECT_EQ(format()->frameLayer(), 0);
    EXPECT_TRUE(isCurrent());
}

TEST_F(UpdateTest, AFormatThatIsGoneFromDiskIsCurrentAndCannotBeUpdated)
{
    catalog.formats.erase(catalog.formats.begin());
    reload();
    EXPECT_TRUE(isCurrent());
    EXPECT_EQ(textThrownBy([&] { update(); }),
              "Definition for format ID(ISO) was not found on disk.\nUnable to update format.");
}

TEST_F(UpdateTest, CheckingGoesByTheStoredDefinitionAndUpdatingByTheName)
{
    format()->SetFormatDefName("PLAIN");
    EXPECT_TRUE(isCurrent()); // the stored copy is ISO's, as on disk
    catalog.format("ISO").category = "Site";
    reload();
    EXPECT_FALSE(isCurrent());
    update();
    EXPECT_EQ(format()->getDefinition()->GetId(), "PLAIN");
}

TEST_F(UpdateTest, AFormatWithoutItsDefinitionIsCurrentAndGetsOneByUpdating)
{
    auto def = format()->retainDefinition();
    def->DeleteUDO();
    EXPECT_TRUE(isCurrent());
    update();
    EXPECT_EQ(format()->getDefinition()->GetId(), "ISO");
    expectOneDefinitionEach();
}

// Four readings of a clock that is half a minute later each time: the format starts, its one block
// starts and ends, the format ends, 90 seconds after its start.
TEST_F(UpdateTest, TheTimeTakenIsToldInMinutes)
{
    double now = 100.0;
    nxhost::setClock([&] { return now += 30.0; });
    testing::internal::CaptureStdout();
    update();
    const std::string out = testing::internal::GetCapturedStdout();
    nxhost::setClock({});
    EXPECT_EQ(out, "Format update took 1.5 mins.\n");
}

TEST_F(UpdateTest, TheStepsAreTold)
{
    catalog.field("TITLE", "NAME").x = 6;
    reload();
    expectInOrder(infoLines([&] { update(); }),
                  {"updating format ISO", "Updating block definitions on format ISO",
                   "Updating block TITLE", "check to see if block still exists",
                   "Checking block for update...", "Updating block definition",
                   "Updating field definitions in block", "Updating table definitions in block"});
}

// --- blocks -----------------------------------------------------------------------------------------

TEST_F(UpdateTest, AChangedBlockIsOutOfDateAndSaysSo)
{
    catalog.field("TITLE", "NAME").x = 6;
    reload();
    const Names lines = infoLines([&] { EXPECT_FALSE(isCurrent()); });
    EXPECT_TRUE(std::count(lines.begin(), lines.end(), "Block TITLE is out of date."));
}

TEST_F(UpdateTest, AFlagThatIsNotComparedLeavesTheSheetCurrent)
{
    catalog.field("TITLE", "NAME").more = [](TrFieldDefV1 &def) { def.SetSyncAllDrawings(1); };
    reload();
    EXPECT_TRUE(isCurrent());
}

// TITLE stands at (230, 10).
TEST_F(UpdateTest, AMovedFieldMovesItsNote)
{
    set("TITLE", "NAME", "GEAR");
    const tag_t kept = note("TITLE", "NAME");
    catalog.field("TITLE", "NAME").x = 50;
    reload();
    update();
    EXPECT_EQ(noteAt("TITLE", "NAME"), (At{280, 15}));
    EXPECT_EQ(note("TITLE", "NAME"), kept);
    EXPECT_EQ(value("TITLE", "NAME"), "GEAR");
    EXPECT_TRUE(isCurrent());
    expectOneDefinitionEach();
}

TEST_F(UpdateTest, AMovedBlockMovesWithItsNotesAndItsPattern)
{
    const tag_t pattern = patterns(*block("TITLE"))[0];
    catalog.block("TITLE").places[0].sizes[0].second[0].x = 150; // (420 - 150, 10)
    reload();
    update();
    EXPECT_EQ(blockAt("TITLE"), (At{270, 10}));
    EXPECT_EQ(noteAt("TITLE", "NAME"), (At{275, 15}));
    EXPECT_EQ(patternAt(pattern), (At{270, 10}));
}

TEST_F(UpdateTest, AnAddedFieldComesAfterTheOthersWithItsDefault)
{
    set("TITLE", "NAME", "GEAR");
    titleFields().push_back({"DATE", 5, 35, {"today"}});
    reload();
    const Names lines = infoLines([&] { update(); });
    EXPECT_EQ(std::count(lines.begin(), lines.end(), "Adding new field DATE"), 1);
    EXPECT_EQ(fieldNames("TITLE"), (Names{"NAME", "NUMBER", "EMPTY", "DATE"}));
    EXPECT_EQ(value("TITLE", "DATE"), "today");
    EXPECT_EQ(noteAt("TITLE", "DATE"), (At{235, 45}));
    EXPECT_EQ(value("TITLE", "NAME"), "GEAR");
    EXPECT_TRUE(isCurrent());
    expectOneDefinitionEach();
    saveAndReopen();
    EXPECT_EQ(fieldNames("TITLE"), (Names{"NAME", "NUMBER", "EMPTY", "DATE"}));
    EXPECT_TRUE(isCurrent());
}

TEST_F(UpdateTest, ARemovedFieldGoesWithItsNote)
{
    const tag_t record = field("TITLE", "NUMBER")->tag(), itsNote = note("TITLE", "NUMBER");
    titleFields().erase(titleFields().begin() + 1);
    reload();
    const Names lines = infoLines([&] { update(); });
    EXPECT_EQ(std::count(lines.begin(), lines.end(), "Deleting removed field NUMBER"), 1);
    EXPECT_EQ(fieldNames("TITLE"), (Names{"NAME", "EMPTY"}));
    EXPECT_FALSE(UgObject::find(record));
    EXPECT_FALSE(UgObject::find(itsNote));
    expectOneDefinitionEach();
}

TEST_F(UpdateTest, ARenamedFieldIsAnotherField)
{
    set("TITLE", "NUMBER", "4711");
    titleFields()[1].id = "NO";
    reload();
    update();
    EXPECT_EQ(fieldNames("TITLE"), (Names{"NAME", "EMPTY", "NO"}));
    EXPECT_EQ(value("TITLE", "NO"), "N-1");
    // EMPTY, second now, was paired with the second definition.
    EXPECT_EQ(field("TITLE", "EMPTY")->GetDefinition().GetId(), "NO");
}

// Pairing is by position: a field inserted in the middle takes the cell of the one that stood there.
TEST_F(UpdateTest, AnInsertedFieldShiftsTheDefinitionsOfThoseBehindIt)
{
    set("TITLE", "NUMBER", "4711");
    titleFields().insert(titleFields().begin() + 1, {"DATE", 5, 95, {"today"}});
    reload();
    update();
    EXPECT_EQ(fieldNames("TITLE"), (Names{"NAME", "NUMBER", "EMPTY", "DATE"}));
    EXPECT_EQ(field("TITLE", "NUMBER")->GetDefinition().GetId(), "DATE");
    EXPECT_EQ(noteAt("TITLE", "NUMBER"), (At{235, 105})); // in the cell of DATE
    EXPECT_EQ(value("TITLE", "NUMBER"), "4711");
    EXPECT_TRUE(isCurrent());
    expectOneDefinitionEach();
}

TEST_F(UpdateTest, ReorderedFieldsKeepTheirOrderAndChangeTheirDefinitions)
{
    std::swap(titleFields()[0], titleFields()[1]);
    reload();
    update();
    EXPECT_EQ(fieldNames("TITLE"), (Names{"NAME", "NUMBER", "EMPTY"}));
    EXPECT_EQ(noteAt("TITLE", "NAME"), (At{235, 25}));
    EXPECT_EQ(noteAt("TITLE", "NUMBER"), (At{235, 15}));
}

TEST_F(UpdateTest, AFieldWhoseDefinitionIsUnchangedOnlyChangesTheRecordItIsLinkedTo)
{
    const tag_t kept = note("TITLE", "NUMBER");
    catalog.field("TITLE", "NAME").x = 50;
    reload();
    update();
    const auto def = block("TITLE")->GetDefinition()->GetFieldDefinitions()[1];
    EXPECT_EQ(field("TITLE", "NUMBER")->GetDefinition().tag(), def.tag());
    EXPECT_EQ(note("TITLE", "NUMBER"), kept);
    EXPECT_EQ(noteAt("TITLE", "NUMBER"), (At{235, 25}));
}

TEST_F(UpdateTest, ASecondFieldOfAnIdKeepsItsDefinitionWhenItHasNoPartner)
{
    titleFields().push_back({"NAME", 5, 45, {"twin"}});
    reload();
    update(); // a field of that name stands already
    EXPECT_EQ(fieldNames("TITLE"), (Names{"NAME", "NUMBER", "EMPTY"}));
    auto twice = format()->addBlock("TITLE"); // a new one has both
    ASSERT_EQ(twice->getFields().size(), 4u);
    titleFields().pop_back();
    reload();
    update();
    const auto surplus = twice->getFields().at(3);
    EXPECT_EQ(surplus->GetFieldDefName(), "NAME");
    EXPECT_EQ(surplus->GetDefinition().GetLocationY(), 45);
    EXPECT_EQ(count(QelFmt::kFieldDefV1Classname), 3u + 3u + 1u);
    format()->removeBlock(twice); // and the record that it kept goes with it
    expectOneDefinitionEach();
}

TEST_F(UpdateTest, ABlockWhoseDefinitionIsGoneIsPassedOver)
{
    format()->addBlock("NOTES");
    catalog.blocks.erase(catalog.blocks.begin()); // TITLE
    catalog.field("NOTES", "TEXT").x = 7;
    reload();
    const Names lines = infoLines([&] { update(); });
    EXPECT_EQ(std::count(lines.begin(), lines.end(), "Block TITLE no longer exists on disk"), 1);
    EXPECT_EQ(noteAt("NOTES", "TEXT"), (At{27, 203}));
    EXPECT_EQ(noteAt("TITLE", "NAME"), (At{235, 15})); // as it stood
    EXPECT_THROW(block("TITLE")->updateDefinition(), TrBlockNotExist);
    EXPECT_EQ(textThrownBy([&] { block("TITLE")->updateDefinition(); }), "Block no longer exists");
    EXPECT_TRUE(isCurrent());
}

TEST_F(UpdateTest, TwoBlocksOfADefinitionThatIsGoneArePassedOver)
{
    addFormat();
    format()->addBlock("NOTES");
    format()->addBlock("NOTES");
    format()->addBlock("REV");
    std::erase_if(catalog.blocks, [](const BlockDesc &desc) { return desc.id == "NOTES"; });
    catalog.field("REV", "HEAD").x += 4;
    reload();
    const At before = noteAt("REV", "HEAD");
    drawing()->updateFormat();
    EXPECT_EQ(blockNames(), (Names{"TITLE", "NOTES", "NOTES", "REV"}));
    EXPECT_EQ(noteAt("REV", "HEAD"), (At{before.x + 4, before.y}));
    EXPECT_EQ(value("NOTES", "TEXT"), "NOTE");
}

TEST_F(UpdateTest, ABlockWithoutItsDefinitionIsCurrentAndGetsOneByUpdating)
{
    auto def = block("TITLE")->retainDefinition();
    def->DeleteUDO();
    set("TITLE", "NAME", "GEAR");
    EXPECT_FALSE(block("TITLE")->checkDefinition());
    resize("A2"); // stays: where it belongs is not known
    EXPECT_EQ(blockAt("TITLE"), (At{230, 10}));
    update();
    EXPECT_EQ(block("TITLE")->GetDefinition()->GetId(), "TITLE");
    EXPECT_EQ(blockAt("TITLE"), (At{404, 10}));
    EXPECT_EQ(noteAt("TITLE", "NAME"), (At{409, 15}));
    EXPECT_EQ(value("TITLE", "NAME"), "GEAR");
    expectOneDefinitionEach();
}

TEST_F(UpdateTest, AFieldThatWentMissingComesBackThoughNothingChangedOnDisk)
{
    auto name = field("TITLE", "NAME");
    block("TITLE")->removeAndRetainField(name);
    name->DeleteUDO();
    EXPECT_TRUE(isCurrent());
    update();
    EXPECT_EQ(fieldNames("TITLE"), (Names{"NUMBER", "EMPTY", "NAME"}));
    EXPECT_EQ(value("TITLE", "NAME"), "PART");
}

TEST_F(UpdateTest, AFreelyPlacedBlockKeepsItsPlace)
{
    format()->addBlock("NOTES");
    const double point[] = {50, 60};
    block("NOTES")->locateBlock(point);
    catalog.field("NOTES", "TEXT").y = 9;
    reload();
    update();
    EXPECT_EQ(blockAt("NOTES"), (At{50, 60}));
    EXPECT_EQ(noteAt("NOTES", "TEXT"), (At{52, 69}));
}

// The box is 40 wide and 8 high, then 60 by 10; the block stands at (50, 60), the field 2, 3 from it.
TEST_F(UpdateTest, TheBordersOfAFreelyPlacedBlockFollowItsFields)
{
    FieldDesc &text = catalog.field("NOTES", "TEXT");
    text.width = 40;
    text.height = 8;
    text.borders = {0, 0, 0, 1, 0}; // right
    reload();
    format()->addBlock("NOTES");
    const double point[] = {50, 60};
    block("NOTES")->locateBlock(point);
    const auto expectRightLine = [&](double x, double y0, double y1) {
        const auto lines = field("NOTES", "TEXT")->GetBorders();
        ASSERT_EQ(lines.size(), 1u);
        const Point3 start = lines[0]->getStartPoint(), end = lines[0]->getEndPoint();
        EXPECT_EQ((At{start[0], start[1]}), (At{x, y0}));
        EXPECT_EQ((At{end[0], end[1]}), (At{x, y1}));
    };
    expectRightLine(92, 63, 71);
    text.x = 5;
    text.width = 60;
    text.height = 10;
    reload();
    update();
    expectRightLine(115, 63, 73);
}

TEST_F(UpdateTest, AnUpdateThatFailsMidwayLosesNeitherFieldsNorValues)
{
    set("TITLE", "NAME", "GEAR");
    catalog.field("TITLE", "NAME").x = 50;
    catalog.field("TITLE", "NUMBER").x = 60;
    reload();
    nxhost::failCall("UF_DRF_set_origin", 1105011, 2); // the second field's note
    EXPECT_EQ(codeThrownBy([&] { update(); }), 1105011);
    nxhost::clearFaults();
    expectSound();
    EXPECT_EQ(fieldNames("TITLE"), (Names{"NAME", "NUMBER", "EMPTY"}));
    for (const auto &field : block("TITLE")->getFields())
        EXPECT_FALSE(field->GetDefinition().IsNull()) << field->GetFieldDefName();
    EXPECT_EQ(value("TITLE", "NAME"), "GEAR");
    EXPECT_EQ(count(QelFmt::kBlockDefV1Classname), 1u); // the old copy is gone
}

// --- tables -------------------------------------------------------------------------------------------

TEST_F(UpdateTest, AMovedTableMovesItsRows)
{
    const auto rev = format()->addBlock("REV"); // at (320, 287)
    rev->getTables()[0]->AppendEntry();
    catalog.block("REV").tables[0].x = 10;
    reload();
    update();
    EXPECT_EQ(rev->getTables()[0]->GetX(), 330);
    EXPECT_EQ(rev->getTables()[0]->GetY(), 295);
    EXPECT_TRUE(isCurrent());
    expectOneDefinitionEach();
}

TEST_F(UpdateTest, ATableWithoutAPartnerKeepsItsDefinitionAndItsRows)
{
    const auto rev = format()->addBlock("REV");
    rev->getTables()[0]->AppendEntry();
    catalog.block("REV").tables.clear();
    reload();
    update();
    ASSERT_EQ(rev->getTables().size(), 1u);
    EXPECT_EQ(rev->getTables()[0]->entryCount(), 1u);
    EXPECT_EQ(rev->getTables()[0]->GetDefinition()->GetId(), "REVS");
    EXPECT_EQ(count(QelFmt::kTableDefV1Classname), 1u);
    saveAndReopen();
    EXPECT_EQ(block("REV")->getTables()[0]->GetDefinition()->GetId(), "REVS");

    // A definition that has a table again takes the kept record's place.
    catalog.block("REV").tables = isoCatalog().block("REV").tables;
    reload();
    update();
    EXPECT_EQ(count(QelFmt::kTableDefV1Classname), 1u);
    expectOneDefinitionEach();
}
