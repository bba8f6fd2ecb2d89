// Table definitions: layout, the fields of a row, the site's symbol texts.
#include "definitions/table_def.h"

#include "drawing/block.h"
#include "foundation/log.h"
#include "tests/definitions/slot_walk.h"
#include "tests/support/definitions.h"

#include <limits>

namespace {

using Def = TrTableDefV1;
using Texts = std::vector<std::string>;

class TableDef : public testing::Test {
protected:
    TableDef() { story.newPart(); }

    static Def filled()
    {
        Def table;
        fill(table, Def::kLayout);
        return table;
    }
    static Def cloneOf(const Def &source)
    {
        Def copy;
        copy.Clone(source);
        return copy;
    }
    static Texts fieldIds(const Def &table)
    {
        Texts ids;
        for (const TrFieldDefV1 &field : table.GetFieldDefinitions()) ids.push_back(field.GetId());
        return ids;
    }
    std::size_t fieldRecords() const
    {
        return LumUg::UDO::GetAllUgUDOsOfClass(story.partObject(),
                                               TrFieldDefV1::mUDOClass.GetClassId())
            .size();
    }

    Story story;
};

} // namespace

TEST_F(TableDef, ValuesStandInTheirStoredOrder)
{
    Def table;
    table.SetId("REV");
    table.SetSymbol1Value("one");
    table.SetEntryListString("list");
    table.SetSymbol2Value("two");
    table.SetSymbolFontName("font");
    table.SetLocationX(0.5);
    table.SetLocationY(1.5);
    table.SetSymbolTextSize(2.5);
    table.SetSymbolSize(3.5);
    table.SetSymbolTextAspect(4.5);
    table.SetSymbolType(1);
    table.SetSymbolColor(11);
    table.SetDirection(21);
    table.SetSymbolIdType(31);
    table.SetSymbolLayer(41);
    EXPECT_EQ(table.GetStrings(), (Texts{"REV", "one", "list", "two", "font"}));
    EXPECT_EQ(table.GetDoubles(), (std::vector<double>{0.5, 1.5, 2.5, 3.5, 4.5}));
    EXPECT_EQ(table.GetInts(), (std::vector<int>{1, 11, 21, 31, 41}));
    EXPECT_EQ(table.GetSymbol2Value(), "two");
    EXPECT_EQ(table.GetEntryListString(), "list");
    EXPECT_EQ(table.GetSymbolLayer(), 41);
    EXPECT_EQ(table.GetSymbolTextAspect(), 4.5);
    EXPECT_EQ(LumUg::GetUDOClassName(table.GetUdoObject()), "KORVAN_FORMAT_TABLE_DEF_V1");
}

// --- fields ---------------------------------------------------------------------------------------

TEST_F(TableDef, FieldsComeInLinkOrder)
{
    const Def table = makeTable("REV", {"NO", "DATE", "BY"});
    EXPECT_EQ(fieldIds(table), (Texts{"NO", "DATE", "BY"}));
}

TEST_F(TableDef, AFieldAddedToAViewWithoutARecordMakesTheRecord)
{
    Def table;
    table.AddFieldDefinition(makeField("NO"));
    EXPECT_FALSE(table.IsNull());
    EXPECT_EQ(fieldIds(table), Texts{"NO"});
    EXPECT_TRUE(Def().GetFieldDefinitions().empty());
}

TEST_F(TableDef, AFieldIsFoundByItsExactId)
{
    Def table = makeTable("REV", {"NO", "no", "no"});
    EXPECT_EQ(table.GetFieldDefinition("NO").tag(), table.GetFieldDefinitions()[0].tag());
    EXPECT_EQ(table.GetFieldDefinition("no").tag(), table.GetFieldDefinitions()[1].tag());
    EXPECT_TRUE(table.GetFieldDefinition("No").IsNull());
    EXPECT_TRUE(table.GetFieldDefinition("").IsNull());
}

TEST_F(TableDef, RecordsOfOtherClassesAreNoFields)
{
    Def table = makeTable("REV", {"NO"});
    const auto place = makePlace("NO", 1, 2);
    table.SetLink(LumUg::kChildLink, 0, place->GetUdoObject()); // before the field's
    table.SetLink(LumUg::kChildLink, 1, makeField("NO").GetUdoObject());
    EXPECT_EQ(fieldIds(table), Texts{"NO"});
    EXPECT_FALSE(table.GetFieldDefinition("NO").IsNull());
}

TEST_F(TableDef, ARemovedFieldIsDeleted)
{
    Def table = makeTable("REV", {"NO", "DATE", "BY"});
    const std::size_t before = fieldRecords();
    table.RemoveFieldDefinition(table.GetFieldDefinition("DATE"));
    EXPECT_EQ(fieldIds(table), (Texts{"NO", "BY"}));
    EXPECT_EQ(fieldRecords(), before - 1);
}

// --- comparison and copies ------------------------------------------------------------------------

TEST_F(TableDef, ADifferenceInAnySlotIsSeen)
{
    const Def table = filled();
    EXPECT_TRUE(cloneOf(table) == table);
    forEachSlot(Def::kLayout, [&](const auto &slot) {
        SCOPED_TRACE(slot.name);
        Def copy = cloneOf(table);
        change(copy, slot);
        EXPECT_FALSE(copy == table);
        EXPECT_TRUE(copy != table);
        EXPECT_FALSE(table == copy);
        if constexpr (std::is_same_v<std::remove_cvref_t<decltype(slot)>, LumUg::DoubleSlot>) {
            copy.SetDouble(slot.index, std::numeric_limits<double>::quiet_NaN());
            EXPECT_FALSE(copy == copy);
        }
    });
}

TEST_F(TableDef, FieldsAreComparedPairwiseInLinkOrder)
{
    const Def table = makeTable("REV", {"NO", "DATE"});
    EXPECT_TRUE(table == makeTable("REV", {"NO", "DATE"}));
    EXPECT_FALSE(table == makeTable("REV", {"DATE", "NO"}));
    EXPECT_FALSE(table == makeTable("REV", {"NO"}));
    EXPECT_FALSE(table == makeTable("REV", {"NO", "DATE", "BY"}));
    Def other = makeTable("REV", {"NO", "DATE"});
    other.GetFieldDefinition("DATE").SetTextColor(1);
    EXPECT_FALSE(table == other);
}

TEST_F(TableDef, AViewWithoutARecordIsUnequal)
{
    const Def table = makeTable("REV"), none;
    EXPECT_FALSE(table == none);
    EXPECT_FALSE(none == table);
}

TEST_F(TableDef, AComparisonLogsTheLinesOfItsFieldsOnly)
{
    const Def a = makeTable("REV", {"NO", "DATE"}), b = makeTable("REV", {"NO", "DATE"});
    Base::log::Recording recording{&QelFmt::info_log(), &QelFmt::verbose_log()};
    EXPECT_TRUE(a == b);
    EXPECT_EQ(recording.texts(),
              (Texts{"Checking field NO equality", "Checking field DATE equality"}));
}

TEST_F(TableDef, ACloneHasRecordsOfItsOwn)
{
    Def table = filled();
    table.AddFieldDefinition(makeField("NO"));
    table.AddFieldDefinition(makeField("DATE"));
    const Def copy = cloneOf(table);
    EXPECT_EQ(RawSlots(copy), RawSlots(table));
    EXPECT_EQ(fieldIds(copy), (Texts{"NO", "DATE"}));
    EXPECT_TRUE(copy == table);
    for (std::size_t i = 0; i < 2; ++i)
        EXPECT_NE(copy.GetFieldDefinitions()[i].tag(), table.GetFieldDefinitions()[i].tag());
}

TEST_F(TableDef, ACloneIntoARecordInUseAddsToItsFields)
{
    Def target = makeTable("OLD", {"KEPT"});
    target.Clone(makeTable("REV", {"NO", "DATE"}));
    EXPECT_EQ(target.GetId(), "REV");
    EXPECT_EQ(fieldIds(target), (Texts{"KEPT", "NO", "DATE"}));
}

// --- symbol texts of the site ---------------------------------------------------------------------

namespace {

// A placed block that holds the table, as far as the table looks up to it.
struct PlacedTable {
    PlacedTable()
    {
        table = makeTable("REV");
        table.SetSymbol1Value("ours 1");
        table.SetSymbol2Value("ours 2");
        definition.SetId("TITLE");
        definition.AddTableDefinition(table);
        block.SetBlockDefName("TITLE");
        block.SetLink(LumUg::kChildLink, 0, definition.GetUdoObject());
    }
    Def table;
    TrBlockDefV1 definition;
    TrBlockV1 block;
};

} // namespace

TEST_F(TableDef, TheSiteReplacesTheLinesOfTheSymbolThatItNames)
{
    story.useSettings("[TITLE-REV Overrides]\nsymbol2Value = theirs\n");
    const PlacedTable placed;
    EXPECT_EQ(placed.table.GetSymbol1ValueOverride(), "ours 1");
    EXPECT_EQ(placed.table.GetSymbol2ValueOverride(), "theirs");
    EXPECT_EQ(placed.table.GetSymbol2Value(), "ours 2");

    story.useSettings("[TITLE-REV Overrides]\nsymbol1Value = \"\"\n[TITLE-rev "
                      "Overrides]\nsymbol2Value = other table\n");
    EXPECT_EQ(placed.table.GetSymbol1ValueOverride(), "");
    EXPECT_EQ(placed.table.GetSymbol2ValueOverride(), "ours 2");
}

TEST_F(TableDef, ASymbolTextTellsWhereItLookedAndWhatItFound)
{
    story.useSettings("[TITLE-REV Overrides]\nsymbol1Value = A\n");
    const PlacedTable placed;
    Base::log::Recording recording{&QelFmt::info_log()};
    placed.table.GetSymbol1ValueOverride();
    placed.table.GetSymbol2ValueOverride();
    const std::string passed = "was not a block UDO(KORVAN_FORMAT_BLOCK_DEF_V1 - " +
                               std::to_string(TrBlockDefV1::mUDOClass.GetClassId()) + "), so next!";
    EXPECT_EQ(recording.texts(),
              (Texts{passed, "found a block UDO", "Looking for section TITLE-REV Overrides",
                     "symbol1Value = A", passed, "found a block UDO",
                     "Looking for section TITLE-REV Overrides", "symbol2Value = ours 2"}));
}

TEST_F(TableDef, SymbolTextsAreRefusedForATableThatStandsOnNoDrawing)
{
    const Def alone = makeTable("REV");
    EXPECT_THROW(alone.GetSymbol1ValueOverride(), std::logic_error);
    TrBlockDefV1 definition;
    definition.SetId("TITLE");
    definition.AddTableDefinition(alone); // as in a definition file
    EXPECT_THROW(alone.GetSymbol2ValueOverride(), std::logic_error);
}

// --- listing --------------------------------------------------------------------------------------

TEST_F(TableDef, ListsItselfAndThenItsFields)
{
    Def table = makeTable("REV", {"NO", "DATE"});
    table.SetSymbol1Value("A");
    table.SetSymbol2Value("B");
    table.SetEntryListString("not listed");
    table.SetSymbolType(3);
    table.SetSymbolColor(7);
    table.SetLocationX(5);
    table.SetLocationY(-10);
    table.SetDirection(0);
    table.InfoObject();
    EXPECT_EQ(nxhost::takeInfoWindow(), "ID                      REV\n"
                                        "Symbol Line 1 Value     A\n"
                                        "Symbol Line 2 Value     B\n"
                                        "Symbol Type             3\n"
                                        "Symbol Color            7\n"
                                        "Relative Location       5,-10\n"
                                        "Direction               Up\n"
                                        "Field Definitions:\n"
                                        "ID                      NO\n"
                                        "X                       0\n"
                                        "Y                       0\n"
                                        "Symbol File             0\n"
                                        "ID                      DATE\n"
                                        "X                       0\n"
                                        "Y                       0\n"
                                        "Symbol File             0\n");
}

TEST_F(TableDef, AnyDirectionButZeroIsListedAsDown)
{
    for (const int direction : {1, 2, -1}) {
        Def table = makeTable("REV");
        table.SetDirection(direction);
        table.InfoObject();
        EXPECT_NE(nxhost::takeInfoWindow().find("Direction               Down\n"),
                  std::string::npos);
    }
}
