#include "tests/drawing/stage.h"

#include "drawing/links_to.h"
#include "foundation/guarded_singleton.h"
#include "udo/udo_class.h"

#include "uf_obj.h"

#include <algorithm>

namespace {

class DrawingTest : public Stage {
protected:
    std::string zoneAt(double x, double y) const { return drawing()->zone(Point3(x, y, 0)); }
    // A3 with its zones as the test wants them.
    void addFormatWithZones(const std::function<void(SizeDesc &)> &edit)
    {
        edit(catalog.format("ISO").sizes[0]);
        reload();
        addFormat("A3");
    }
    void setSheetSize(UF_DRAW_size_state_t state, int code) const
    {
        UF_DRAW_info_t info{};
        UgException::throwOnFailure(UF_DRAW_ask_drawing_info(sheet, &info));
        info.size_state = state;
        info.size.metric_size_code = static_cast<UF_DRAW_metric_size_t>(code);
        UgException::throwOnFailure(UF_DRAW_set_drawing_info(sheet, &info));
    }
};

// A record that is linked to things for purposes of its own.
class ForeignRecord : public LumUg::UDO {
public:
    ForeignRecord() = default;
    LumUg::UDOClass *GetUDOClass() const override
    {
        static LumUg::UDOClass registration("TEST_FOREIGN", "Foreign", CreateInstance);
        return &registration;
    }
    static LumUg::UDO *CreateInstance() { return new ForeignRecord; }
};

} // namespace

TEST_F(DrawingTest, TagZeroIsTheCurrentSheetAndTheHandleIsTheSameObject)
{
    EXPECT_EQ(TrDrawing::getDrawing(0u), TrDrawing::getDrawing(sheet));
    EXPECT_EQ(TrDrawing::getDrawing(0u)->drawingTag(), sheet);
    const tag_t other = story.addSheet("SHEET2", 420, 297);
    EXPECT_EQ(TrDrawing::getDrawing(0u)->drawingTag(), other);
    EXPECT_NE(TrDrawing::getDrawing(0u), TrDrawing::getDrawing(sheet));
}

TEST_F(DrawingTest, WithoutACurrentSheetTheRemedyIsTold)
{
    story.newPart("empty.prt");
    EXPECT_EQ(textThrownBy([] { TrDrawing::getDrawing(0u); }),
              "No drawing sheet is current. Open the sheet to work on.");
}

TEST_F(DrawingTest, TheHandleIsMadeOnceATagAndSaysSo)
{
    const std::string line = "Creating a new TrDrawing object for tag " + std::to_string(sheet);
    const auto lines = infoLines([&] {
        for (int i = 0; i < 3; ++i) TrDrawing::getDrawing(sheet);
    });
    EXPECT_EQ(std::count(lines.begin(), lines.end(), line), 1);
}

TEST_F(DrawingTest, AnUnknownTagIsThePlatformsErrorEveryTime)
{
    EXPECT_EQ(codeThrownBy([] { TrDrawing::getDrawing(999999u); }), UF_err_unknown_tag);
    EXPECT_EQ(codeThrownBy([] { TrDrawing::getDrawing(999999u); }), UF_err_unknown_tag);
}

TEST_F(DrawingTest, HandleAndFormatObjectSurviveDeletingAndAddingAFormat)
{
    const auto handle = drawing();
    const auto object = handle->format();
    EXPECT_FALSE(handle->hasFormat());
    addFormat();
    EXPECT_TRUE(handle->hasFormat());
    handle->removeFormat();
    EXPECT_FALSE(handle->hasFormat());
    addFormat("A2");
    EXPECT_EQ(drawing(), handle);
    EXPECT_EQ(handle->format(), object);
    EXPECT_EQ(object->GetSizeName(), "A2");
}

TEST_F(DrawingTest, RemovingAFormatThatIsNotThereChangesNothing)
{
    EXPECT_TRUE(story.changesDuring([&] { drawing()->removeFormat(); }).empty());
}

TEST_F(DrawingTest, AFormatThatDiedBehindTheLibrarysBackIsGoneAndAnotherCanBeAdded)
{
    addFormat();
    const auto handle = drawing();
    const auto held = handle->format();
    UgException::throwOnFailure(UF_OBJ_delete_object(held->tag()));
    EXPECT_FALSE(handle->hasFormat());
    EXPECT_TRUE(held->IsNull());
    EXPECT_TRUE(handle->isFormatUptoDate());
    addFormat("A2");
    EXPECT_TRUE(handle->hasFormat());
    EXPECT_EQ(blockNames(), std::vector<std::string>{"TITLE"});
}

TEST_F(DrawingTest, AFormatFromElsewhereIsFoundOnceTheOldOneHasDied)
{
    addFormat();
    UgException::throwOnFailure(UF_OBJ_delete_object(format()->tag()));
    TrFormatV1 other;
    other.SetFormatDefName("ISO");
    other.SetDrawing(dynamic_cast<UgTypedObject *>(UgObject::find(sheet)));
    EXPECT_TRUE(drawing()->hasFormat());
    EXPECT_EQ(format()->tag(), other.tag());
}

TEST_F(DrawingTest, TheFormatIsFoundAgainInAReopenedPart)
{
    addFormat();
    set("TITLE", "NAME", "GEAR");
    saveAndReopen();
    const auto lines = infoLines([&] { EXPECT_TRUE(drawing()->hasFormat()); });
    const std::vector<std::string> expected{
        "Creating a new TrDrawing object for tag " + std::to_string(sheet),
        "Found UDO associated with drawing", "Found Format UDO associated with drawing"};
    EXPECT_EQ(lines, expected);
    EXPECT_EQ(value("TITLE", "NAME"), "GEAR");
    EXPECT_EQ(story.changesDuring([&] { drawing(); }).size(), 0u);
}

TEST_F(DrawingTest, OfTwoFormatsOnASheetTheOneLinkedFirstCounts)
{
    const tag_t second = story.addSheet("SHEET2", 420, 297);
    auto *object = dynamic_cast<UgTypedObject *>(UgObject::find(second));
    TrFormatV1 first, later;
    first.SetFormatDefName("ISO");
    later.SetFormatDefName("PLAIN");
    later.SetDrawing(dynamic_cast<UgTypedObject *>(UgObject::find(sheet))); // made first, elsewhere
    first.SetDrawing(object);
    LumUg::UDO(later).SetLink(LumUg::kSheetLink, 1, object);
    EXPECT_EQ(TrDrawing::getDrawing(second)->format()->tag(), first.tag());
}

TEST_F(DrawingTest, RecordsThatAreNoFormatsArePassedOver)
{
    leavesRecords = true;
    const tag_t second = story.addSheet("SHEET2", 420, 297);
    auto *object = dynamic_cast<UgTypedObject *>(UgObject::find(second));
    ForeignRecord foreign;
    foreign.SetLink(3, 0, object);
    TrFormatV1 made;
    made.SetFormatDefName("ISO");
    made.SetDrawing(object);
    const auto lines =
        infoLines([&] { EXPECT_EQ(TrDrawing::getDrawing(second)->format()->tag(), made.tag()); });
    EXPECT_EQ(std::count(lines.begin(), lines.end(), "Found UDO associated with drawing"), 2);
    EXPECT_EQ(std::count(lines.begin(), lines.end(), "Found Format UDO associated with drawing"),
              1);
}

// --- from a record to its sheet -------------------------------------------------------------------

TEST_F(DrawingTest, BlocksFieldsTablesAndDefinitionsKnowTheirSheetWhateverIsCurrent)
{
    addFormat();
    const auto rev = format()->addBlock("REV");
    const tag_t other = story.addSheet("SHEET2", 420, 297);
    ASSERT_EQ(story.currentSheet(), other);
    EXPECT_EQ(TrDrawing::getDrawing(*rev)->drawingTag(), sheet);
    EXPECT_EQ(TrDrawing::getDrawing(*rev->getFields()[0])->drawingTag(), sheet);
    EXPECT_EQ(TrDrawing::getDrawing(*rev->getTables()[0])->drawingTag(), sheet);
    EXPECT_EQ(TrDrawing::getDrawing(*rev->GetDefinition())->drawingTag(), sheet);
    EXPECT_EQ(TrDrawing::getDrawing(rev->GetDefinition()->GetFieldDefinitions()[0])->drawingTag(),
              sheet);
}

TEST_F(DrawingTest, ARecordBelowNoFormatBelongsToTheCurrentSheet)
{
    leavesRecords = true;
    ForeignRecord orphan;
    orphan.SetInt(0, 1);
    EXPECT_EQ(TrDrawing::getDrawing(orphan)->drawingTag(), sheet);
    EXPECT_EQ(TrDrawing::getDrawing(ForeignRecord())->drawingTag(), sheet); // no record at all
    ForeignRecord parent;
    parent.SetLink(LumUg::kChildLink, 0, orphan.GetUdoObject());
    EXPECT_EQ(TrDrawing::getDrawing(orphan)->drawingTag(), sheet);
    const tag_t other = story.addSheet("SHEET2", 420, 297);
    EXPECT_EQ(TrDrawing::getDrawing(orphan)->drawingTag(), other);
}

TEST_F(DrawingTest, TheFormatItselfHangsBelowNone)
{
    addFormat();
    const tag_t other = story.addSheet("SHEET2", 420, 297);
    EXPECT_EQ(TrDrawing::getDrawing(*format())->drawingTag(), other);
}

// --- size and zones ----------------------------------------------------------------------------------

TEST_F(DrawingTest, TheSizeIsWidthThenHeight)
{
    addFormat("A3"); // code 4
    EXPECT_EQ(drawing()->drawingSize()[0], 420);
    EXPECT_EQ(drawing()->drawingSize()[1], 297);
    resize("TALL"); // 900 high, 300 long
    EXPECT_EQ(drawing()->drawingSize()[0], 300);
    EXPECT_EQ(drawing()->drawingSize()[1], 900);
}

TEST_F(DrawingTest, EnglishSizesAreRead)
{
    setSheetSize(UF_DRAW_ENGLISH_SIZE, 6);
    EXPECT_EQ(drawing()->drawingSize()[0], 40);
    EXPECT_EQ(drawing()->drawingSize()[1], 28);
}

TEST_F(DrawingTest, AFailureOfThePlatformIsPassedOn)
{
    nxhost::failCall("UF_DRAW_ask_drawing_info", UF_DRAW_err_unrecoverable);
    EXPECT_EQ(codeThrownBy([&] { drawing()->drawingSize(); }), UF_DRAW_err_unrecoverable);
}

TEST_F(DrawingTest, LabelAndFrameLayerAreThoseOfTheSize)
{
    EXPECT_EQ(drawing()->sizeLabel(), ""); // no format yet
    EXPECT_EQ(drawing()->frameLayer(), 0);
    addFormat("TALL");
    EXPECT_EQ(drawing()->sizeLabel(), "300x900");
    EXPECT_EQ(drawing()->frameLayer(), 10);
}

// A3 with 8 columns and 6 rows: zones of 420 / 8 = 52.5 by 297 / 6 = 49.5. The frame ends 10 before
// the right edge, so columns count from x = 410 leftwards; rows from y = 0.
TEST_F(DrawingTest, AZoneIsItsRowThenItsColumn)
{
    addFormat("A3"); // rows are letters (type 1), columns numbers (type 0)
    EXPECT_EQ(zoneAt(409, 1), "A1");
    EXPECT_EQ(zoneAt(410 - 52.5, 1), "A2"); // exactly one zone from the frame
    EXPECT_EQ(zoneAt(410 - 52.4, 49.4), "A1");
    EXPECT_EQ(zoneAt(410 - 105.1, 49.5), "B3");
    EXPECT_EQ(zoneAt(1, 296), "F8"); // (410 - 1) / 52.5 = 7.79; 296 / 49.5 = 5.98
}

TEST_F(DrawingTest, TheFirstColumnReachesOneZoneBeyondTheFrame)
{
    addFormat("A3");
    EXPECT_EQ(zoneAt(419, 1), "A1"); // (410 - 419) / 52.5 = -0.17
    EXPECT_EQ(zoneAt(410 + 52.4, 1), "A1");
    EXPECT_EQ(zoneAt(410 + 52.5, 1), "A0");
}

TEST_F(DrawingTest, TypeOneIsLettersWithoutIAndAnyOtherNumbers)
{
    addFormatWithZones([](SizeDesc &size) {
        size.horzZones = 20; // 21 wide
        size.horzZoneType = 1;
        size.vertZoneType = 2;
    });
    EXPECT_EQ(zoneAt(410 - 7 * 21 - 1, 60), "2H");
    EXPECT_EQ(zoneAt(410 - 8 * 21 - 1, 60), "2J");
}

TEST_F(DrawingTest, AZoneLengthWinsOverTheNumberOfZones)
{
    addFormatWithZones([](SizeDesc &size) {
        size.horzZoneLength = 50;
        size.horzZones = 100;
    });
    EXPECT_EQ(zoneAt(410 - 99, 1), "A2"); // 99 / 50 = 1.98, not 99 / 4.2 = 23.6
    EXPECT_EQ(zoneAt(410 - 100, 1), "A3");
}

TEST_F(DrawingTest, WithoutLengthAndNumberThereAreNoZones)
{
    addFormatWithZones([](SizeDesc &size) { size.vertZones = 0; });
    EXPECT_EQ(textThrownBy([&] { zoneAt(1, 1); }),
              "ZoneLength  properties or ZoneNum properties must be non-zero. ");
}

TEST_F(DrawingTest, TheSizeOfZonesIsLogged)
{
    addFormat("A3");
    Base::log::Recording recording{&QelFmt::verbose_log()};
    zoneAt(1, 1);
    EXPECT_TRUE(recording.has("zoneHeight = 49.5, zoneWidth = 52.5"));
}

// --- replacing, and drift ----------------------------------------------------------------------------

TEST_F(DrawingTest, WithoutAFormatTheSheetIsUpToDate)
{
    EXPECT_TRUE(drawing()->isFormatUptoDate());
    addFormat();
    EXPECT_TRUE(drawing()->isFormatUptoDate());
    catalog.format("ISO").category = "Site";
    reload();
    EXPECT_FALSE(drawing()->isFormatUptoDate());
    drawing()->updateFormat();
    EXPECT_TRUE(drawing()->isFormatUptoDate());
}

// TITLE is offered for PLAIN too, 200 from the right edge and 20 up: (420 - 200, 20).
TEST_F(DrawingTest, ReplacingKeepsTheRecordsAndValuesOfBlocksThatTheNewFormatHas)
{
    addFormat();
    format()->addBlock("NOTES");
    set("TITLE", "NAME", "GEAR");
    const tag_t kept = block("TITLE")->tag(), keptNote = note("TITLE", "NAME");
    const tag_t gone = block("NOTES")->tag(), old = format()->tag();
    const auto object = format();

    drawing()->replaceFormat(formatDef("PLAIN"), size("A3", "PLAIN"));
    EXPECT_EQ(format(), object); // the same object, on a new record
    EXPECT_NE(format()->tag(), old);
    EXPECT_EQ(blockNames(), std::vector<std::string>{"TITLE"});
    EXPECT_EQ(block("TITLE")->tag(), kept);
    EXPECT_EQ(note("TITLE", "NAME"), keptNote);
    EXPECT_EQ(value("TITLE", "NAME"), "GEAR");
    EXPECT_EQ(blockAt("TITLE"), (At{220, 20}));
    EXPECT_EQ(noteAt("TITLE", "NAME"), (At{225, 25}));
    EXPECT_EQ(patternAt(patterns(*block("TITLE")).at(0)), (At{220, 20}));
    EXPECT_FALSE(UgObject::find(gone));
    EXPECT_FALSE(UgObject::find(old));

    saveAndReopen();
    EXPECT_EQ(format()->GetFormatDefName(), "PLAIN");
    EXPECT_EQ(value("TITLE", "NAME"), "GEAR");
}

TEST_F(DrawingTest, ReplacingAFormatByItselfDrawsItAnew)
{
    addFormat();
    const tag_t frame = patterns(*format()).at(0);
    drawing()->replaceFormat(formatDef(), size("A3"));
    EXPECT_FALSE(UgObject::find(frame));
    EXPECT_EQ(patternNames(*format()), std::vector<std::string>{"frameA3"});
    EXPECT_EQ(count(QelFmt::kFormatDefV1Classname), 1u);
}

TEST_F(DrawingTest, ARetainedBlockLearnsItsPlaceOnTheNewFormatFromTheDefinitionOnDisk)
{
    catalog.block("TITLE").places.pop_back(); // nothing is known of PLAIN yet
    reload();
    addFormat();
    set("TITLE", "NAME", "GEAR");
    catalog.block("TITLE").places.push_back({"PLAIN", {{"Default", {{"corner", 200, 20, 2}}}}});
    reload();
    drawing()->replaceFormat(formatDef("PLAIN"), size("A3", "PLAIN"));
    EXPECT_EQ(blockAt("TITLE"), (At{220, 20}));
    EXPECT_EQ(value("TITLE", "NAME"), "GEAR");
}

TEST_F(DrawingTest, BlocksInOtherUnitsThanThePartAreNotKept)
{
    addFormat();
    catalog.block("TITLE").units = 2;
    reload();
    drawing()->replaceFormat(formatDef("PLAIN"), size("A3", "PLAIN"));
    EXPECT_TRUE(blockNames().empty());
}

TEST_F(DrawingTest, AMissingFrameLosesTheOldFormat)
{
    leavesRecords = true; // the blocks that were to be kept
    addFormat();
    catalog.format("PLAIN").sizes[0].frame = "nosuch";
    reload();
    EXPECT_EQ(
        textThrownBy([&] { drawing()->replaceFormat(formatDef("PLAIN"), size("A3", "PLAIN")); }),
        "Unable to find pattern nosuch.\nCheck UGII_PATDIR environment variable.");
    EXPECT_EQ(format()->GetFormatDefName(), "PLAIN");
}

// --- deletion ------------------------------------------------------------------------------------------

TEST_F(DrawingTest, DeletingTheSheetTakesItsFormatAndAllThatStandsOnIt)
{
    const tag_t other = story.addSheet("SHEET2", 420, 297);
    TrDrawing::getDrawing(other)->addFormat(formatDef(), size("A3"));
    const std::string onOther = nxhost::listSheet(other);
    const std::size_t before = nxhost::countObjects(story.part());

    story.open(sheet);
    addFormat();
    format()->addBlock("REV")->getTables()[0]->AppendEntry();
    const auto handle = drawing();
    story.open(other);
    UgException::throwOnFailure(UF_DRAW_delete_drawing(sheet));

    EXPECT_FALSE(handle->hasFormat());
    EXPECT_FALSE(TrDrawing::getDrawing(handle->drawingTag())->hasFormat());
    EXPECT_EQ(nxhost::countObjects(story.part()), before - 1); // the sheet itself
    EXPECT_EQ(nxhost::listSheet(other), onOther);
}

TEST_F(DrawingTest, DeletingTheFormatLeavesTheSheetAsItWasBefore)
{
    story.changesOn(sheet, [] {});
    addFormat();
    drawing()->removeFormat();
    const std::string empty = nxhost::listSheet(sheet);
    const std::size_t objects = nxhost::countObjects(story.part());
    addFormat();
    format()->addBlock("REV")->getTables()[0]->AppendEntry();
    format()->addBlock("NOTES");
    drawing()->removeFormat();
    EXPECT_EQ(nxhost::difference(empty, nxhost::listSheet(sheet)), "");
    EXPECT_EQ(nxhost::countObjects(story.part()), objects);
}

TEST_F(DrawingTest, DeletingBlocksInAnyOrderLeavesNothingOfThemAndTakesNothingElse)
{
    addFormat();
    const std::string before = nxhost::listSheet(sheet);
    const std::size_t objects = nxhost::countObjects(story.part());
    for (const bool backwards : {false, true}) {
        auto rev = format()->addBlock("REV"), notes = format()->addBlock("NOTES");
        rev->getTables()[0]->AppendEntry();
        format()->removeBlock(backwards ? notes : rev);
        format()->removeBlock(backwards ? rev : notes);
        EXPECT_EQ(nxhost::difference(before, nxhost::listSheet(sheet)), "");
        EXPECT_EQ(nxhost::countObjects(story.part()), objects);
    }
}
