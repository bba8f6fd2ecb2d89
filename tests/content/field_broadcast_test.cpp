// Values shared through attributes of the part and of sheets.
#include "tests/content/block_on_sheet.h"

#include "uf_obj.h"
#include "uf_object_types.h"
#include "ug_part.hxx"
#include "ug_point.hxx"

namespace {

// What callers outside the class do not see.
class OpenField : public TrFieldV1 {
public:
    explicit OpenField(const TrFieldBase &field) : TrFieldV1(field.GetUdoObject()) {}
    using TrFieldBase::GetBroadcastPoint;
    using TrFieldBase::GetBroadcastValue;
    using TrFieldBase::getSyncAllDrawings;
};

void toDrawing(TrFieldDefV1 &def) { def.SetBroadcastString("DRG"); }
void toPart(TrFieldDefV1 &def)
{
    def.SetBroadcastString("DRG");
    def.SetBroadcastType(1);
}

} // namespace

class FieldBroadcast : public BlockOnSheet {
protected:
    std::string onSheet(tag_t of, const std::string &title) const
    {
        const auto points = carriers(of);
        EXPECT_LE(points.size(), 1u);
        return points.empty() ? "no carrier" : attributeOf(*points[0], title);
    }
    std::string onPart(const std::string &title) const
    {
        return attributeOf(*story.partObject(), title);
    }
};

TEST_F(FieldBroadcast, CarrierIsOnePointFarBelowTheSheetOnLayer254)
{
    has("A", toDrawing);
    has("B", [](TrFieldDefV1 &def) { def.SetBroadcastString("OTHER"); });
    place();
    field("A")->ModifyValue({"4711"});
    field("B")->ModifyValue({"4712"});
    ASSERT_EQ(carriers(sheet).size(), 1u);
    const auto *point = dynamic_cast<UgPoint *>(carriers(sheet)[0]);
    ASSERT_NE(point, nullptr);
    EXPECT_EQ(point->getName(), "DWG_ATTR");
    EXPECT_EQ(point->getLayer(), 254);
    EXPECT_EQ(point->getPosition()[0], 0.0);
    EXPECT_EQ(point->getPosition()[1], -3000.0);
    EXPECT_EQ(onSheet(sheet, "DRG"), "4711");
    EXPECT_EQ(onSheet(sheet, "OTHER"), "4712");
    saveAndReopen();
    field("A")->ModifyValue({"4713"});
    EXPECT_EQ(onSheet(sheet, "DRG"), "4713");
}

TEST_F(FieldBroadcast, CarrierOfAnotherProgramIsUsed)
{
    UgPoint *point = UgPoint::create(Point3(5.0, 5.0, 0.0));
    point->setLayer(254);
    point->setName("DWG_ATTR_2");
    has("A", toDrawing);
    place();
    field("A")->ModifyValue({"4711"});
    EXPECT_EQ(attributeOf(*point, "DRG"), "4711");
    EXPECT_EQ(carriers(sheet).size(), 1u);
}

TEST_F(FieldBroadcast, PointsOfOtherLayersOrNamesAreNoCarriers)
{
    UgPoint *layer = UgPoint::create(Point3(5.0, 5.0, 0.0));
    layer->setLayer(253);
    layer->setName("DWG_ATTR");
    UgPoint *name = UgPoint::create(Point3(6.0, 5.0, 0.0));
    name->setLayer(254);
    name->setName("MY_DWG_ATTR");
    has("A", toDrawing);
    place();
    field("A")->ModifyValue({"4711"});
    EXPECT_EQ(attributeOf(*layer, "DRG"), "-");
    EXPECT_EQ(attributeOf(*name, "DRG"), "-");
    EXPECT_EQ(carriers(sheet).size(), 3u);
}

TEST_F(FieldBroadcast, DeletedCarrierIsMadeAnew)
{
    has("A", toDrawing);
    place();
    field("A")->ModifyValue({"4711"});
    UF_OBJ_delete_object(carriers(sheet)[0]->getTag());
    field("A")->ModifyValue({"4712"});
    EXPECT_EQ(onSheet(sheet, "DRG"), "4712");

    const tag_t second = carriers(sheet)[0]->getTag();
    UgPoint *another = UgPoint::create(Point3(0.0, -3000.0, 0.0));
    another->setLayer(254);
    another->setName("DWG_ATTR");
    UF_OBJ_delete_object(second);
    field("A")->ModifyValue({"4713"}); // the one that is left, not a third one
    EXPECT_EQ(onSheet(sheet, "DRG"), "4713");
}

TEST_F(FieldBroadcast, DrawingIsTheCurrentOneThePartIsTheWorkPart)
{
    has("A", toDrawing);
    has("B", [](TrFieldDefV1 &def) {
        toPart(def);
        def.SetBroadcastString("PART");
    });
    place();
    const tag_t other = story.addSheet("OTHER", 420, 297); // current
    field("A")->ModifyValue({"4711"});
    field("B")->ModifyValue({"bracket"});
    EXPECT_EQ(onSheet(other, "DRG"), "4711");
    EXPECT_EQ(onSheet(sheet, "DRG"), ""); // what the first, empty value had put there
    EXPECT_EQ(onPart("PART"), "bracket");
}

TEST_F(FieldBroadcast, EmptyValueOverwrites)
{
    has("A", toPart);
    place();
    field("A")->ModifyValue({"X"});
    field("A")->ModifyValue({""});
    EXPECT_EQ(onPart("DRG"), "");
}

TEST_F(FieldBroadcast, NewBlockOverwritesWhatWasThere)
{
    story.partObject()->addStringAttribute("DRG", "by somebody else");
    has("A", toPart);
    place();
    EXPECT_EQ(onPart("DRG"), "");
}

TEST_F(FieldBroadcast, WithoutANameNothingIsShared)
{
    has("A", [](TrFieldDefV1 &def) { def.SetBroadcastType(1); });
    has("B");
    place();
    field("A")->ModifyValue({"X"});
    field("B")->ModifyValue({"X"});
    EXPECT_TRUE(story.partObject()->askStringAttributeTitles().empty());
    EXPECT_TRUE(carriers(sheet).empty());
}

TEST_F(FieldBroadcast, SingleLineFieldSharesItsFirstLine)
{
    has("A", toPart);
    place();
    field("A")->ModifyValue({"one", "two"});
    EXPECT_EQ(onPart("DRG"), "one");
    EXPECT_EQ(onPart("DRG0"), "-");
}

TEST_F(FieldBroadcast, MultilineFieldSharesALineEachAndLeavesOldOnes)
{
    has("A", [](TrFieldDefV1 &def) {
        toPart(def);
        def.SetMultiline(1);
    });
    place();
    field("A")->ModifyValue({"one", "two", "three"});
    EXPECT_EQ(onPart("DRG0") + onPart("DRG1") + onPart("DRG2"), "onetwothree");
    field("A")->ModifyValue({"1"});
    EXPECT_EQ(onPart("DRG0"), "1");
    EXPECT_EQ(onPart("DRG1"), "two"); // counted up to the new number of lines only
    EXPECT_EQ(onPart("DRG"), "-");
}

TEST_F(FieldBroadcast, IndentationIsNotShared)
{
    has("A", [](TrFieldDefV1 &def) {
        toPart(def);
        def.SetIndentation(3);
    });
    place();
    field("A")->ModifyValue({"X"});
    EXPECT_EQ(onPart("DRG"), "X");
}

// --- read back ----------------------------------------------------------------------------------

TEST_F(FieldBroadcast, SingleLineIsReadWithItsSteps)
{
    has("A", toPart);
    place();
    UgPart &part = *story.partObject();
    const OpenField one(*field("A"));
    part.deleteStringAttribute("DRG");
    EXPECT_EQ(one.GetBroadcastValue(&part), Lines{});
    part.addStringAttribute("DRG", "4711");
    Base::log::Recording recording{&QelFmt::info_log()};
    EXPECT_EQ(one.GetBroadcastValue(&part), Lines{"4711"});
    EXPECT_EQ(
        recording.texts(),
        (Lines{"Getting broadcast value for field A\nAttribute title = DRG", "-- Single line value",
               "-- Found the attribute. Getting value... ", "Found broadcast value to be 4711"}));
}

TEST_F(FieldBroadcast, MultilineIsReadUpToTheFirstGap)
{
    has("A", [](TrFieldDefV1 &def) {
        toPart(def);
        def.SetMultiline(1);
    });
    place();
    UgPart &part = *story.partObject();
    part.setStringAttributeValue("DRG0", "zero");
    part.addStringAttribute("DRG1", "one");
    part.addStringAttribute("DRG3", "three");
    EXPECT_EQ(OpenField(*field("A")).GetBroadcastValue(&part), (Lines{"zero", "one"}));
}

// --- sent again ---------------------------------------------------------------------------------

TEST_F(FieldBroadcast, IsSentAgainToThePartOrTheCarrierButNeverByTypeZero)
{
    struct Row {
        int type;
        const char *part, *drawing;
    };
    const Row rows[] = {{0, "-", "-"}, {1, "value", "-"}, {2, "-", "value"}};
    for (const Row &row : rows) {
        has("F" + std::to_string(row.type), [&](TrFieldDefV1 &def) {
            def.SetBroadcastString("T" + std::to_string(row.type));
            def.SetBroadcastType(row.type);
        });
    }
    place();
    for (const Row &row : rows) {
        const std::string number = std::to_string(row.type);
        field("F" + number)->ModifyValue({"value"});
        UgPart &part = *story.partObject();
        if (part.hasStringAttribute("T" + number)) part.deleteStringAttribute("T" + number);
        for (UgAttributableObject *point : carriers(sheet))
            if (point->hasStringAttribute("T" + number)) point->deleteStringAttribute("T" + number);
        field("F" + number)->RebroadcastValue();
        EXPECT_EQ(onPart("T" + number), row.part) << number;
        EXPECT_EQ(onSheet(sheet, "T" + number), row.drawing) << number;
    }
}

// --- all sheets ---------------------------------------------------------------------------------

class FieldSync : public FieldBroadcast {
protected:
    // Three sheets: two with a format, the last without.
    void threeSheets(int sync)
    {
        has("A", [&](TrFieldDefV1 &def) {
            toDrawing(def);
            def.SetSyncAllDrawings(sync);
        });
        place();
        placeOnNewSheet("SECOND");
        story.addSheet("BARE", 420, 297);
        story.open(sheet);
    }
    Lines shared() const
    {
        Lines values;
        for (const tag_t one : story.sheets()) values.push_back(onSheet(one, "DRG"));
        return values;
    }
};

TEST_F(FieldSync, ValueReachesEverySheetThatHoldsAFormat)
{
    threeSheets(1);
    field("A")->ModifyValue({"4711"});
    EXPECT_EQ(shared(), (Lines{"4711", "4711", "no carrier"}));
}

TEST_F(FieldSync, WithoutItOnlyTheCurrentSheetHasIt)
{
    threeSheets(0);
    field("A")->ModifyValue({"4711"});
    EXPECT_EQ(shared(), (Lines{"4711", "", "no carrier"}));
}

TEST_F(FieldSync, SettingsWinOverTheDefinition)
{
    threeSheets(0);
    story.useSettings("[Sync In All Drawings]\nTITLE-A = 1\n");
    field("A")->ModifyValue({"4711"});
    EXPECT_EQ(shared(), (Lines{"4711", "4711", "no carrier"}));
    story.useSettings("[Sync In All Drawings]\nTITLE-A = 0\n");
    field("A")->ModifyValue({"4712"});
    EXPECT_EQ(shared(), (Lines{"4712", "4711", "no carrier"}));
}

TEST_F(FieldSync, SettingThatIsNoNumberSwitchesItOff)
{
    threeSheets(1);
    story.useSettings("[Sync In All Drawings]\nTITLE-A = yes\n");
    EXPECT_FALSE(OpenField(*field("A")).getSyncAllDrawings());
    story.useSettings("[Sync In All Drawings]\nTITLE-B = 0\n");
    EXPECT_TRUE(OpenField(*field("A")).getSyncAllDrawings());
}

TEST_F(FieldSync, NewFieldTakesTheValueOfAnotherSheet)
{
    threeSheets(1);
    field("A")->ModifyValue({"4711"});
    const auto fresh = placeOnNewSheet("FOURTH");
    EXPECT_EQ(fieldOn(*fresh, "A")->GetValue(), Lines{"4711"});
}

TEST_F(FieldSync, EmptyValuesOfOtherSheetsDoNotCount)
{
    has("A", [&](TrFieldDefV1 &def) {
        toDrawing(def);
        def.SetSyncAllDrawings(1);
        def.SetDefaultString({"default"});
    });
    place();
    field("A")->ModifyValue({""});
    const auto second = placeOnNewSheet("SECOND");
    EXPECT_EQ(fieldOn(*second, "A")->GetValue(), Lines{"default"});
}

TEST_F(FieldSync, CostGrowsWithTheSheetsThatAreKeptTheSame)
{
    threeSheets(1);
    const auto cost = [&] {
        static int number = 0;
        const auto one = field("A");
        one->ModifyValue({"warm " + std::to_string(++number)});
        nxhost::clearCallCounts();
        one->ModifyValue({"next " + std::to_string(++number)});
        return nxhost::totalCalls();
    };
    const std::size_t two = cost();
    placeOnNewSheet("S4");
    placeOnNewSheet("S5");
    story.open(sheet);
    const std::size_t four = cost();
    placeOnNewSheet("S6");
    placeOnNewSheet("S7");
    placeOnNewSheet("S8");
    placeOnNewSheet("S9");
    story.open(sheet);
    // The same for each sheet more.
    EXPECT_EQ(cost() - four, 2 * (four - two));
}
