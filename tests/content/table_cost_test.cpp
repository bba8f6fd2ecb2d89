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
