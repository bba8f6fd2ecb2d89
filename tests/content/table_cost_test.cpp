// What rows cost, in calls of the platform.
#include "tests/content/table_rows.h"

class TableCost : public TableRows {
protected:
    std::size_t costOf(const std::function<void()> &action)
    {
        nxhost::clearCallCounts();
        action();
        return nxhost::totalCalls();
    }
};

TEST_F(TableCost, AppendingAndFillingARowCostsTheSameInALongTable)
{
    revisions(0, [](TrFieldDefV1 &def) {
        def.SetBroadcastString(def.GetId());
        def.SetBroadcastTableType(1);
        def.SetTopBorderPolicy(1);
    });
    const auto row = [&] { append("A", {"one"}); };
    for (int i = 0; i < 10; ++i) row();
    const std::size_t early = costOf(row);
    for (int i = 0; i < 100; ++i) row();
    EXPECT_EQ(costOf(row), early);
}

TEST_F(TableCost, ARowOfTwoColumnsStaysWithinItsCalls)
{
    revisions(0, [](TrFieldDefV1 &def) { def.SetTopBorderPolicy(1); });
    append("A", {"one"});
    EXPECT_LE(costOf([&] { append("B", {"two"}); }), 1150u);
    EXPECT_LE(costOf([&] { set(*table()->entry(1), "TEXT", {"new"}); }), 220u);
}

TEST_F(TableCost, ChangingARowsTextCostsTheSameInALongTable)
{
    revisions(0, [](TrFieldDefV1 &def) {
        def.SetBroadcastString(def.GetId());
        def.SetBroadcastTableType(1);
    });
    for (int i = 0; i < 10; ++i) append("A", {"one"});
    int number = 0;
    const auto change = [&](std::size_t index) {
        const auto one = table()->entry(index);
        set(*one, "TEXT", {std::to_string(++number)});
    };
    change(5);
    const std::size_t early = costOf([&] { change(5); });
    for (int i = 0; i < 100; ++i) append("A", {"one"});
    EXPECT_EQ(costOf([&] { change(5); }), early);
    EXPECT_EQ(costOf([&] { change(100); }), early);
}

TEST_F(TableCost, PlacingATableIsOnePassOverItsRows)
{
    revisions(0, [](TrFieldDefV1 &def) { def.SetTopBorderPolicy(1); });
    const auto place = [&] { table()->locate(); };
    for (int i = 0; i < 10; ++i) append("A", {"one"});
    const double ten = static_cast<double>(costOf(place));
    for (int i = 0; i < 30; ++i) append("A", {"one"});
    const double forty = static_cast<double>(costOf(place));
    for (int i = 0; i < 120; ++i) append("A", {"one"});
    const double many = static_cast<double>(costOf(place)); // 160
    EXPECT_NEAR((many - forty) / 120.0, (forty - ten) / 30.0, 0.5);
}

TEST_F(TableCost, FirstRowOfATableFoundOnDiskCostsOnePass)
{
    revisions();
    for (int i = 0; i < 50; ++i) append("A", {"one"});
    saveAndReopen();
    const auto one = table();
    const std::size_t first = costOf([&] { one->AppendEntry(); });
    const std::size_t second = costOf([&] { one->AppendEntry(); });
    EXPECT_GT(first, second + 50);      // each row is looked at
    EXPECT_LT(first, second + 50 * 60); // once
    EXPECT_EQ(costOf([&] { one->AppendEntry(); }), second);
}

// What appending all rows first and filling them afterwards pays for each value.
TEST_F(TableCost, AHeightThatChangesMovesEveryRowAfterItOnce)
{
    revisions(0, [](TrFieldDefV1 &def) { def.SetTopBorderPolicy(1); });
    const auto grow = [&](std::size_t count) {
        while (table()->entryCount() < count) append("A", {"one"});
    };
    int lines = 1;
    const auto change = [&] { // one line, two, one, ...
        lines = 3 - lines;
        return static_cast<double>(
            costOf([&] { set(*table()->entry(0), "TEXT", Lines(lines, "x")); }));
    };
    grow(10);
    const double ten = (change() + change()) / 2.0;
    grow(40);
    const double forty = (change() + change()) / 2.0;
    grow(160);
    const double many = (change() + change()) / 2.0;
    EXPECT_NEAR((many - forty) / 120.0, (forty - ten) / 30.0, (forty - ten) / 30.0 / 50.0);
}

TEST_F(TableCost, DeletingRowsCostsTheSameForEachInALongTable)
{
    revisions();
    const auto grow = [&](std::size_t count) {
        while (table()->entryCount() < count) append("A", {"one"});
    };
    const auto deleteTen = [&](std::size_t stride) {
        const auto one = table();
        return costOf([&] {
            for (std::size_t i = 10; i > 0; --i) one->RemoveEntry(one->entry(i * stride - 1));
        });
    };
    grow(20);
    const std::size_t early = deleteTen(1);
    grow(160);
    EXPECT_EQ(deleteTen(1), early);
    EXPECT_EQ(deleteTen(7), early); // here and there
    table()->locate();
    append("B");
    EXPECT_EQ(table()->entryCount(), 141u);
}

// --- with symbols -------------------------------------------------------------------------------

TEST_F(TableCost, PlacingATableWithASymbolForEachBlankRowIsOnePass)
{
    revisions(
        0, [](TrFieldDefV1 &) {}, "REV");
    append("A", {"one"});
    const auto grow = [&](std::size_t count) {
        while (table()->entryCount() < count) table()->AppendEntry()->addSymbol(Point3(9, 9, 0));
    };
    const auto place = [&] { return static_cast<double>(costOf([&] { table()->locate(); })); };
    grow(10);
    const double ten = place();
    grow(40);
    const double forty = place();
    grow(160);
    const double many = place();
    EXPECT_NEAR((many - forty) / 120.0, (forty - ten) / 30.0, 0.5);
}

TEST_F(TableCost, AValueThatManyBlankRowsFollowCostsOnePassOverThem)
{
    revisions(
        0, [](TrFieldDefV1 &) {}, "REV");
    append("A", {"one"});
    const auto grow = [&](std::size_t count) {
        while (table()->entryCount() < count) table()->AppendEntry()->addSymbol(Point3(9, 9, 0));
    };
    int number = 0;
    const auto change = [&](const char *field) {
        return static_cast<double>(
            costOf([&] { set(*table()->entry(0), field, {std::to_string(++number)}); }));
    };
    grow(10);
    change("REV"); // looks once which rows have symbols
    const double ten = change("REV"), otherTen = change("TEXT");
    grow(40);
    const double forty = change("REV");
    grow(160);
    const double many = change("REV");
    EXPECT_NEAR((many - forty) / 120.0, (forty - ten) / 30.0, 0.5);
    EXPECT_EQ(change("TEXT"), otherTen); // no symbol names it
}
