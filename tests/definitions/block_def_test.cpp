// Block definitions: layout, what the site adds, what they own, copies and comparison.
#include "definitions/block_def.h"

#include "foundation/log.h"
#include "tests/definitions/block_def_story.h"

namespace {

using Def = TrBlockDefV1;
using Texts = std::vector<std::string>;

Texts ids(const std::vector<TrFieldDefV1> &fields)
{
    Texts all;
    for (const TrFieldDefV1 &field : fields) all.push_back(field.GetId());
    return all;
}

Texts ids(const Def::Tables &tables)
{
    Texts all;
    for (const auto &table : tables) all.push_back(table->GetId());
    return all;
}

} // namespace

TEST_F(BlockDef, ValuesStandInTheirStoredPlaces)
{
    Def block;
    block.SetId("TITLE");
    block.SetCategory("Titles");
    block.SetDescription("description");
    block.SetPatternName("pattern");
    block.SetDialogName("dialog");
    block.SetExcludeBlockIds({"A", "B"});
    block.SetUnits(1);
    block.SetMovable(2);
    block.SetPatternLayer(3);
    block.SetTextLayer(4);
    block.SetCanDelete(5);
    EXPECT_EQ(block.GetUdoObject()->getStringAttributeValue("BLOCK_ID"), "TITLE");
    EXPECT_EQ(block.GetUdoObject()->getStringAttributeValue("CATEGORY"), "Titles");
    EXPECT_EQ(block.GetStrings(), (Texts{"description", "pattern", "dialog", "A", "B"}));
    EXPECT_EQ(block.GetInts(), (std::vector<int>{1, 2, 3, 4, 5}));
    EXPECT_EQ(LumUg::GetUDOClassName(block.GetUdoObject()), "KORVAN_FORMAT_BLOCK_DEF_V1");
    EXPECT_EQ(block.GetId(), "TITLE");
    EXPECT_EQ(block.GetCategory(), "Titles");
    EXPECT_EQ(block.GetTextLayer(), 4);
}

TEST_F(BlockDef, WithoutAnIdItIsAnError)
{
    const char *const text = "Something wrong with block definition. It did not have a ID.";
    Def block;
    EXPECT_EQ(textThrownBy([&] { block.GetId(); }), text);
    block.SetDescription("made without one");
    EXPECT_EQ(textThrownBy([&] { block.GetId(); }), text);
    EXPECT_EQ(textThrownBy([&] { block.GetShowInMenu(); }), text);
    EXPECT_EQ(textThrownBy([&] { block.GetExcludeBlockIds(false); }), text);
    EXPECT_EQ(textThrownBy([&] { block.clone(); }), text);
    EXPECT_EQ(textThrownBy([&] { static_cast<void>(block == block); }), text);
    EXPECT_EQ(textThrownBy([&] { block.InfoObject(); }), text);
}

TEST_F(BlockDef, WithoutACategoryItIsOfTheEmptyOne)
{
    EXPECT_EQ(makeBlock("TITLE").GetCategory(), "");
}

TEST_F(BlockDef, AnIdCanBeChanged)
{
    Def block = makeBlock("A");
    block.SetId("B");
    EXPECT_EQ(block.GetId(), "B");
}

// --- what the site adds ---------------------------------------------------------------------------

TEST_F(BlockDef, EmptyExclusionsAreSkipped)
{
    Def block = makeBlock("TITLE");
    block.SetExcludeBlockIds({"", "X", ""});
    EXPECT_EQ(block.GetNumberOfStrings(), 6u);
    EXPECT_EQ(block.GetExcludeBlockIds(true), Texts{"X"});
}

TEST_F(BlockDef, FewerExclusionsLeaveNoSurplusAndTheTextsBeforeThemAlone)
{
    Def block = filled();
    block.SetExcludeBlockIds({"A", "B", "C"});
    block.SetExcludeBlockIds({"Z"});
    EXPECT_EQ(block.GetStrings(),
              (Texts{"text of Description", "text of PatternName", "text of DialogName", "Z"}));
    block.SetExcludeBlockIds({});
    EXPECT_EQ(block.GetNumberOfStrings(), 3u);
}

TEST_F(BlockDef, TheSiteAddsExclusionsUnderTheJoinedName)
{
    story.useSettings("[TITLEExcluded Blocks Ids]\nREV = 1\nAUX = 1\n"
                      "[TITLE Excluded Blocks Ids]\nNOT_THIS = 1\n");
    Def block = makeBlock("TITLE");
    block.SetExcludeBlockIds({"X"});
    Base::log::Recording recording{&QelFmt::info_log()};
    EXPECT_EQ(block.GetExcludeBlockIds(true), Texts{"X"});
    EXPECT_TRUE(recording.texts().empty());
    EXPECT_EQ(block.GetExcludeBlockIds(false), (Texts{"X", "AUX", "REV"})); // keys in byte order
    EXPECT_EQ(recording.texts(), (Texts{"Adding site exclude block AUX for block TITLE",
                                        "Adding site exclude block REV for block TITLE"}));
}

TEST_F(BlockDef, ASiteThatExcludesBlocksNeverSeesACopyAgreeWithItsDefinition)
{
    story.useSettings("[TITLEExcluded Blocks Ids]\nREV = 1\n");
    const Def block = makeBlock("TITLE");
    const Def copy = cloneOf(block);
    EXPECT_EQ(copy.GetExcludeBlockIds(true), Texts{"REV"});
    EXPECT_FALSE(copy == block);
    EXPECT_TRUE(block == block);
}

TEST_F(BlockDef, TheSiteDecidesWhetherItIsInTheMenu)
{
    const Def block = makeBlock("TITLE");
    EXPECT_EQ(block.GetShowInMenu(), 1);
    story.useSettings("[Show In Menu]\nTITLE = 0\nREV = 5\n");
    EXPECT_EQ(block.GetShowInMenu(), 0);
    EXPECT_EQ(makeBlock("REV").GetShowInMenu(), 5);
    EXPECT_EQ(makeBlock("title").GetShowInMenu(), 1);
}

// --- what it owns -----------------------------------------------------------------------------------

TEST_F(BlockDef, ChildrenAreToldApartByTheirClass)
{
    Def block;
    block.SetId("TITLE");
    block.AddFieldDefinition(makeField("ONE"));
    block.AddTableDefinition(makeTable("REV", {"ONE"}));
    block.addBlockLocation(makeBlockPlaces("F", {}));
    block.AddFieldDefinition(makeField("TWO"));
    block.addBlockLocation(makeOldBlockPlaces("G", {}));
    block.AddTableDefinition(makeTable("BOM"));
    EXPECT_EQ(ids(block.GetFieldDefinitions()), (Texts{"ONE", "TWO"}));
    EXPECT_EQ(ids(block.GetTableDefinitions()), (Texts{"REV", "BOM"}));
    EXPECT_EQ(block.GetFormatIds(), (Texts{"F", "G"}));
    EXPECT_EQ(block.GetFieldDefinition("TWO").GetId(), "TWO");
    EXPECT_EQ(block.GetTableDefinition("BOM")->GetId(), "BOM");
    EXPECT_TRUE(block.GetFieldDefinition("two").IsNull());
    ASSERT_TRUE(block.GetTableDefinition("ONE"));
    EXPECT_TRUE(block.GetTableDefinition("ONE")->IsNull());
}

TEST_F(BlockDef, FormatIdsKeepDuplicatesAndLinkOrder)
{
    Def block;
    for (const char *format : {"F", "A", "F"}) block.addBlockLocation(makeBlockPlaces(format, {}));
    EXPECT_EQ(block.GetFormatIds(), (Texts{"F", "A", "F"}));
}

TEST_F(BlockDef, RemovedChildrenAreDeletedWithWhatTheyOwn)
{
    Def block = makeBlock("TITLE");
    block.AddFieldDefinition(makeField("ONE"));
    block.AddTableDefinition(makeTable("REV", {"A", "B"}));
    block.RemoveFieldDefinition(block.GetFieldDefinition("ONE"));
    block.RemoveTableDefinition(*block.GetTableDefinition("REV"));
    block.removeBlockLocation(block.getBlockLocations()[0]);
    EXPECT_EQ(records(TrFieldDefV1::mUDOClass), 0u);
    EXPECT_EQ(records(TrTableDefV1::mUDOClass), 0u);
    EXPECT_EQ(records(QelFmt::BlockLocationV2::mUDOClass), 0u);
    EXPECT_EQ(records(QelFmt::LocationV1::mUDOClass), 0u);
    EXPECT_TRUE(block.getBlockLocations().empty());
}

TEST_F(BlockDef, NoBlockLocationIsNoArgument)
{
    Def block = makeBlock("TITLE");
    EXPECT_THROW(block.addBlockLocation({}), std::logic_error);
    EXPECT_THROW(block.removeBlockLocation({}), std::logic_error);
}

TEST_F(BlockDef, UpgradedPlacesComeInTheOrderInWhichTheOldOnesWereFound)
{
    Def block;
    block.SetId("TITLE");
    block.addBlockLocation(makeOldBlockPlaces("OLD", {{"A3", 1, 2}}));
    block.addBlockLocation(makeBlockPlaces("NEW", {}));
    const auto result = block.getBlockLocationsAndUpgrade();
    ASSERT_EQ(result.size(), 2u);
    EXPECT_EQ(result[0]->GetFormatId(), "OLD");
    EXPECT_EQ(LumUg::GetUDOClassName(result[0]->GetUdoObject()), "KORVAN_FORMAT_BLOCK_LOC_V2");
    EXPECT_EQ(result[1]->GetFormatId(), "NEW");
    EXPECT_EQ(block.GetFormatIds(), (Texts{"NEW", "OLD"})); // a new record is linked last
    EXPECT_EQ(records(QelFmt::TrBlockLocationV1::mUDOClass), 0u);
    EXPECT_TRUE(story.changesDuring([&] { block.getBlockLocationsAndUpgrade(); }).empty());
}

// --- copies and comparison --------------------------------------------------------------------------

TEST_F(BlockDef, ADifferenceInAnySlotIsSeen)
{
    const Def block = filled();
    EXPECT_TRUE(cloneOf(block) == block);
    forEachSlot(Def::kLayout, [&](const auto &slot) {
        SCOPED_TRACE(slot.name);
        Def copy = cloneOf(block);
        change(copy, slot);
        EXPECT_FALSE(copy == block);
        EXPECT_FALSE(block == copy);
        EXPECT_TRUE(copy != block);
    });
}

TEST_F(BlockDef, EmptyExclusionsAndAnAbsentCategoryMakeNoDifference)
{
    Def a = makeBlock("TITLE"), b = makeBlock("TITLE");
    a.SetExcludeBlockIds({"", "X"});
    b.SetExcludeBlockIds({"X", ""});
    b.SetCategory("");
    EXPECT_TRUE(a == b);
}

TEST_F(BlockDef, WhatItOwnsIsComparedInLinkOrder)
{
    const auto made = [](const Texts &formats, const Texts &fields, const Texts &tables) {
        Def block;
        block.SetId("TITLE");
        for (const std::string &id : formats) block.addBlockLocation(makeBlockPlaces(id, {}));
        for (const std::string &id : fields) block.AddFieldDefinition(makeField(id));
        for (const std::string &id : tables) block.AddTableDefinition(makeTable(id));
        return block;
    };
    const Def block = made({"F", "G"}, {"A", "B"}, {"R", "S"});
    EXPECT_TRUE(block == made({"F", "G"}, {"A", "B"}, {"R", "S"}));
    EXPECT_FALSE(block == made({"G", "F"}, {"A", "B"}, {"R", "S"}));
    EXPECT_FALSE(block == made({"F", "G"}, {"B", "A"}, {"R", "S"}));
    EXPECT_FALSE(block == made({"F", "G"}, {"A", "B"}, {"S", "R"}));
    EXPECT_FALSE(block == made({"F"}, {"A", "B"}, {"R", "S"}));
    EXPECT_FALSE(block == made({"F", "G"}, {"A"}, {"R", "S"}));
    EXPECT_FALSE(block == made({"F", "G"}, {"A", "B"}, {"R"}));
}

TEST_F(BlockDef, OnlyTheOrderWithinAKindIsCompared)
{
    Def a, b;
    a.SetId("TITLE");
    a.AddFieldDefinition(makeField("A"));
    a.addBlockLocation(makeBlockPlaces("F", {}));
    b.SetId("TITLE");
    b.addBlockLocation(makeBlockPlaces("F", {}));
    b.AddFieldDefinition(makeField("A"));
    EXPECT_TRUE(a == b);
}

TEST_F(BlockDef, AComparisonLogsTheLinesOfItsFieldsOnly)
{
    Def block = makeBlock("TITLE");
    block.AddFieldDefinition(makeField("NAME"));
    const Def copy = cloneOf(block);
    Base::log::Recording recording{&QelFmt::info_log(), &QelFmt::verbose_log()};
    EXPECT_TRUE(copy == block);
    Texts own = recording.texts();
    std::erase_if(own, [](const std::string &text) { return text.starts_with("Looking for key"); });
    EXPECT_EQ(own, Texts{"Checking field NAME equality"});
}

TEST_F(BlockDef, ACloneHasRecordsOfItsOwnAllTheWayDown)
{
    Def block = filled();
    block.AddFieldDefinition(makeField("A"));
    block.AddTableDefinition(makeTable("REV", {"B", "C"}));
    block.addBlockLocation(makeBlockPlaces("F", {{"A3", {makePlace("p", 1, 2)}}}));
    block.addBlockLocation(makeOldBlockPlaces("G", {{"A3", 1, 2}}));
    const auto copy = block.clone();
    EXPECT_TRUE(*copy == block);
    EXPECT_EQ(RawSlots(*copy), RawSlots(block));
    EXPECT_NE(copy->tag(), block.tag());
    EXPECT_EQ(records(TrFieldDefV1::mUDOClass), 6u);
    EXPECT_EQ(records(TrTableDefV1::mUDOClass), 2u);
    EXPECT_EQ(records(QelFmt::LocationV1::mUDOClass), 2u);
    EXPECT_EQ(records(QelFmt::TrBlockLocationV1::mUDOClass), 2u);
    block.DeleteUDO();
    EXPECT_EQ(records(TrFieldDefV1::mUDOClass), 3u);
    EXPECT_EQ(ids(copy->GetTableDefinitions()[0]->GetFieldDefinitions()), (Texts{"B", "C"}));
}

TEST_F(BlockDef, ACloneIntoARecordInUseReplacesValuesAndAddsChildren)
{
    Def target = filled();
    target.AddFieldDefinition(makeField("KEPT"));
    Def source = makeBlock("REV");
    source.AddFieldDefinition(makeField("NEW"));
    target.Clone(source);
    EXPECT_EQ(target.GetId(), "REV");
    EXPECT_EQ(target.GetCategory(), "");
    EXPECT_EQ(target.GetDescription(), "");
    EXPECT_TRUE(target.GetExcludeBlockIds(true).empty());
    EXPECT_EQ(target.GetMovable(), 0);
    EXPECT_EQ(ids(target.GetFieldDefinitions()), (Texts{"KEPT", "NEW"}));
}

TEST_F(BlockDef, HasOneGeneration)
{
    Def block = makeBlock("TITLE");
    EXPECT_FALSE(block.checkAndUpgrade());
    EXPECT_FALSE(block.upgrade());
}

// --- listing ------------------------------------------------------------------------------------------

TEST_F(BlockDef, ListsItselfAndThenWhatItOwns)
{
    Def block;
    block.SetId("TITLE");
    block.SetDescription("Title block");
    block.SetUnits(1);
    block.SetPatternName("title");
    block.SetDialogName("dialog");
    block.SetMovable(3);
    block.SetPatternLayer(20);
    block.SetTextLayer(30);
    block.addBlockLocation(makeOldBlockPlaces("F1", {{"A3", 410, 10}}));
    block.addBlockLocation(makeBlockPlaces("F2", {}));
    block.AddFieldDefinition(makeField("NAME"));
    block.AddTableDefinition(makeTable("REV"));
    block.InfoObject();
    EXPECT_EQ(nxhost::takeInfoWindow(), "ID                      TITLE\n"
                                        "Description             Title block\n"
                                        "Units                   Millimeters\n"
                                        "Pattern Name            title\n"
                                        "Dialog Name             dialog\n"
                                        "Movable                 True\n"
                                        "Pattern Layer           20\n"
                                        "Text Layer              30\n"
                                        "Block locations:\n"
                                        "Block locations for format F1\n"
                                        "  A3: 410,10\n"
                                        "Field Definitions:\n"
                                        "ID                      NAME\n"
                                        "X                       0\n"
                                        "Y                       0\n"
                                        "Symbol File             0\n"
                                        "Table Definitions:\n"
                                        "ID                      REV\n"
                                        "Symbol Line 1 Value     \n"
                                        "Symbol Line 2 Value     \n"
                                        "Symbol Type             0\n"
                                        "Symbol Color            0\n"
                                        "Relative Location       0,0\n"
                                        "Direction               Up\n"
                                        "Field Definitions:\n");
}

TEST_F(BlockDef, AnyUnitButOneIsListedAsInches)
{
    for (const int units : {0, 2, 3}) {
        Def block = makeBlock("TITLE");
        block.SetUnits(units);
        block.InfoObject();
        const std::string listing = nxhost::takeInfoWindow();
        EXPECT_NE(listing.find("Units                   Inches\n"), std::string::npos);
        EXPECT_NE(listing.find("Movable                 False\n"), std::string::npos);
    }
}
