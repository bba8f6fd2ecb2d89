// Stories of tables: stacked, changed, hidden, moved, deleted, saved and opened again.
#include "table_story.h"

namespace {

using Tables = TableStory;

// Notes of NO stand a margin of 1 right of and above the base of their row.
TEST_F(Tables, RowsOfDifferentHeightsStackUpwards)
{
    append("UP", "A", {"one"});                 // 4.5 high, from 60
    append("UP", "B", {"one", "two"});          // 8.25, from 64.5
    append("UP", "C", {"one", "two", "three"}); // 12, from 72.75
    append("UP", "D", {""});                    // its letter: 4.5, from 84.75
    const PlaceList expected{{11, 61}, {11, 65.5}, {11, 73.75}, {11, 85.75}};
    EXPECT_EQ(placesOf("UP"), expected);
    reopen();
    EXPECT_EQ(placesOf("UP"), expected);
    EXPECT_EQ(order("UP"), "ABCD");
}

TEST_F(Tables, RowsOfDifferentHeightsStackDownwards)
{
    append("DOWN", "A", {"one"});                 // 4.5 high, down from 210
    append("DOWN", "B", {"one", "two"});          // from 205.5
    append("DOWN", "C", {"one", "two", "three"}); // from 197.25
    append("DOWN", "D", {""});                    // from 185.25
    const PlaceList expected{{111, 211}, {111, 206.5}, {111, 198.25}, {111, 186.25}};
    EXPECT_EQ(placesOf("DOWN"), expected);
    reopen();
    EXPECT_EQ(placesOf("DOWN"), expected);
}

TEST_F(Tables, AValueThatGrowsMovesTheRowsAfterItAlsoAfterReopening)
{
    for (const char *no : {"A", "B", "C"}) append("UP", no, {"one"});
    EXPECT_EQ(placesOf("UP"), (PlaceList{{11, 61}, {11, 65.5}, {11, 70}}));
    reopen();
    set("UP", 1, "TEXT", {"one", "two", "three"}); // 12 high: the next one starts at 76.5
    EXPECT_EQ(placesOf("UP"), (PlaceList{{11, 61}, {11, 65.5}, {11, 77.5}}));
    set("UP", 1, "TEXT", {"one"});
    EXPECT_EQ(placesOf("UP"), (PlaceList{{11, 61}, {11, 65.5}, {11, 70}}));
}

TEST_F(Tables, DeletionClosesUpInBothDirections)
{
    for (const char *table : {"UP", "DOWN"})
        for (const char *no : {"A", "B", "C", "D"}) append(table, no, {no, no});
    remove("UP", 1);
    remove("DOWN", 0);
    EXPECT_EQ(order("UP"), "ACD");
    EXPECT_EQ(order("DOWN"), "BCD");
    // Rows of 8.25.
    const PlaceList up{{11, 61}, {11, 69.25}, {11, 77.5}};
    const PlaceList down{{111, 211}, {111, 202.75}, {111, 194.5}};
    EXPECT_EQ(placesOf("UP"), up);
    EXPECT_EQ(placesOf("DOWN"), down);
    reopen();
    EXPECT_EQ(placesOf("UP"), up);
    EXPECT_EQ(placesOf("DOWN"), down);
    EXPECT_EQ(order("UP") + order("DOWN"), "ACDBCD");
}

TEST_F(Tables, DeletingEveryRowLeavesNothingOnTheSheet)
{
    const std::string before = nxhost::listSheet(sheet);
    for (const char *no : {"A", "B", "C"}) append("UP", no, {"one"});
    const double at[3] = {200, 100, 0};
    ASSERT_EQ(TRV_FMT_place_symbol(sheet, "TITLE", "UP", 1, at), 0);
    for (int row = 2; row >= 0; --row) remove("UP", row);
    EXPECT_EQ(nxhost::difference(before, nxhost::listSheet(sheet)), "");
}

TEST_F(Tables, HiddenRowsTakeNoRoomAndComeBack)
{
    for (const char *no : {"A", "B", "C"}) append("UP", no, {no, no}); // 8.25 each
    hide("UP", 1, 1);
    // The hidden one stands where the next one does.
    EXPECT_EQ(placesOf("UP"), (PlaceList{{11, 61}, {11, 69.25}, {11, 69.25}}));
    reopen();
    EXPECT_EQ(placesOf("UP"), (PlaceList{{11, 61}, {11, 69.25}, {11, 69.25}}));
    EXPECT_TRUE(isBlanked(*record("UP")->entry(1)->field("NO")));
    EXPECT_FALSE(isBlanked(*record("UP")->entry(2)->field("NO")));
    EXPECT_EQ(order("UP"), "ABC"); // hidden, not gone
    hide("UP", 1, 0);
    EXPECT_FALSE(isBlanked(*record("UP")->entry(1)->field("NO")));
    EXPECT_EQ(placesOf("UP"), (PlaceList{{11, 61}, {11, 69.25}, {11, 77.5}}));
}

TEST_F(Tables, AValueOfAHiddenRowStaysOutOfSight)
{
    for (const char *no : {"A", "B"}) append("UP", no, {"one"});
    hide("UP", 0, 1);
    set("UP", 0, "TEXT", {"one", "two"});
    EXPECT_TRUE(isBlanked(*record("UP")->entry(0)->field("TEXT")));
    EXPECT_EQ(placesOf("UP"), (PlaceList{{11, 61}, {11, 61}}));
}

TEST_F(Tables, TheOrderOfMovedRowsSurvivesReopening)
{
    append("UP", "A", {"one"});
    append("UP", "B", {"one", "two"});
    append("UP", "C", {"one", "two", "three"});
    ASSERT_TRUE(record("UP")->moveEntry(2, 0));
    // C is 12 high, A 4.5.
    const PlaceList expected{{11, 61}, {11, 73}, {11, 77.5}};
    EXPECT_EQ(placesOf("UP"), expected);
    reopen();
    EXPECT_EQ(order("UP"), "CAB");
    EXPECT_EQ(placesOf("UP"), expected);
    record("UP")->MoveEntryDown(0);
    reopen();
    EXPECT_EQ(order("UP"), "ACB");
}

TEST_F(Tables, RowsFollowTheirBlock)
{
    for (const char *no : {"A", "B"}) append("DOWN", no, {"one"});
    const double to[2] = {30, 20}; // from (10, 10)
    ASSERT_EQ(QEL_FMT_move_block(sheet, "TITLE", to), 0) << TRV_FMT_ask_last_error();
    EXPECT_EQ(placesOf("DOWN"), (PlaceList{{131, 221}, {131, 216.5}}));
    reopen();
    EXPECT_EQ(placesOf("DOWN"), (PlaceList{{131, 221}, {131, 216.5}}));
}

// --- symbols --------------------------------------------------------------------------------------

TEST_F(Tables, SymbolsFollowTheirValues)
{
    append("UP", "A", {"one"});
    const double at[3] = {200, 100, 0};
    ASSERT_EQ(TRV_FMT_place_symbol(sheet, "TITLE", "UP", 0, at), 0) << TRV_FMT_ask_last_error();
    EXPECT_EQ(symbolTexts("UP", 0), (Texts{"A"}));
    set("UP", 0, "NO", {"B"});
    EXPECT_EQ(symbolTexts("UP", 0), (Texts{"B"}));
    reopen();
    EXPECT_EQ(symbolTexts("UP", 0), (Texts{"B"}));
    const auto symbol = record("UP")->entry(0)->getSymbols().at(0);
    EXPECT_EQ(originOf(symbol->GetSymbolObject()->getTag()), (Place{200, 100}));
    set("UP", 0, "NO", {"C"});
    EXPECT_EQ(symbolTexts("UP", 0), (Texts{"C"}));
}

TEST_F(Tables, SymbolsOfRowsWithoutAValueSayWhatTheRowBeforeSays)
{
    append("UP", "A", {"one"});
    append("UP", "", {"two"});
    const double at[3] = {200, 100, 0};
    ASSERT_EQ(TRV_FMT_place_symbol(sheet, "TITLE", "UP", 1, at), 0) << TRV_FMT_ask_last_error();
    EXPECT_EQ(symbolTexts("UP", 1), (Texts{"A"}));
}

TEST_F(Tables, SymbolsGoWithTheirRowAlone)
{
    for (const char *no : {"A", "B"}) append("UP", no, {"one"});
    const double first[3] = {200, 100, 0}, second[3] = {220, 100, 0};
    ASSERT_EQ(TRV_FMT_place_symbol(sheet, "TITLE", "UP", 0, first), 0);
    ASSERT_EQ(TRV_FMT_place_symbol(sheet, "TITLE", "UP", 1, second), 0);
    remove("UP", 0);
    reopen();
    ASSERT_EQ(order("UP"), "B");
    EXPECT_EQ(symbolTexts("UP", 0), (Texts{"B"}));
}

// --- cost -------------------------------------------------------------------------------------------

class TableCalls : public TableStory {
protected:
    template <class Body> static std::size_t callsOf(Body &&body)
    {
        const std::size_t before = nxhost::totalCalls();
        body();
        return nxhost::totalCalls() - before;
    }
    std::size_t appendRows(int count)
    {
        return callsOf([&] {
            for (int i = 0; i < count; ++i) append("DOWN", "A", {"one", "two"});
        });
    }
};

TEST_F(TableCalls, AppendingRowsAndSettingTheirValuesIsLinear)
{
    const std::size_t first = appendRows(50);
    const std::size_t second = appendRows(50);
    const std::size_t third = appendRows(100);
    // Rows behind 100 others cost what the first ones did, but for the very first.
    EXPECT_LE(second, first + first / 50);
    EXPECT_LE(third, 2 * second + second / 50);
}

TEST_F(TableCalls, LayingOutATableIsLinear)
{
    const auto layOut = [&] { return callsOf([&] { record("DOWN")->locate(); }); };
    appendRows(25);
    const std::size_t small = layOut();
    appendRows(75); // four times as many
    const std::size_t large = layOut();
    EXPECT_LE(large, 4 * small + small / 50);
    EXPECT_GT(large, small);
}

TEST_F(TableCalls, OneMoreRowInATableFromDiskCostsOnePassOverItsHeights)
{
    appendRows(100);
    reopen();
    const std::size_t first = appendRows(1);
    const std::size_t second = appendRows(1);
    const std::size_t pass = callsOf([&] {
        for (const auto &row : record("DOWN")->getEntries()) row->CalcHeight();
    });
    // A pass asks the heights of 101 rows; wrapping and hidden flags come on top.
    EXPECT_LE(first - second, 2 * pass);
}

} // namespace
