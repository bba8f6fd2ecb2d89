// Drawings that cannot be read, or cannot be saved, among many that can.
#include "fleet_shell.h"
#include "troubled_drawings.h"

namespace {

constexpr int kCount = 8;

class FleetTroubles : public FleetShell {
protected:
    void SetUp() override
    {
        FleetShell::SetUp();
        stampMany(kCount);
        changeDefinitions();
        breakDrawing(folder / drawing(2));
        lock.emplace(folder / drawing(4));
        makeUnwritable(folder / drawing(6));
        unwritable = read(drawing(6));
    }
    Outcome run(const std::string &arguments) const
    {
        return shell(withoutPrivileges() + " " QELFMT_COMMAND " --defs site " + arguments);
    }
    void expectNamed(const Outcome &outcome, std::initializer_list<int> numbers) const
    {
        EXPECT_EQ(outcome.status, 3);
        EXPECT_EQ(lineCount(outcome.err), numbers.size()) << outcome.err;
        for (const int i : numbers) EXPECT_TRUE(holds(outcome.err, drawing(i))) << outcome.err;
    }

    std::optional<DrawingLock> lock;
    std::string unwritable;
};

TEST_F(FleetTroubles, AnUpdateReportsAllThreeAndDoesTheRest)
{
    const Outcome outcome = run("--json update d");
    expectNamed(outcome, {2, 4, 6});
    const auto rows = jsonOf(outcome);
    for (int i = 0; i < kCount; ++i)
        EXPECT_EQ(rows[i]["result"], i == 2 || i == 4 || i == 6 ? "failed" : "updated") << rows[i];
    EXPECT_EQ(read(drawing(6)), unwritable);
}

TEST_F(FleetTroubles, ACheckReportsWhatCannotBeReadAndFindsTheRest)
{
    const Outcome outcome = run("--json check d --sarif out.sarif");
    expectNamed(outcome, {2, 4});
    const auto found = jsonOf(outcome);
    EXPECT_EQ(found["drawings"], kCount - 2);
    EXPECT_EQ(found["findings"].size(), kCount - 2u); // drifted
    ASSERT_EQ(found["unread"].size(), 2u);
    EXPECT_EQ(found["unread"][0]["file"], drawing(2));
    const auto invocation = nlohmann::json::parse(read("out.sarif"))["runs"][0]["invocations"][0];
    EXPECT_EQ(invocation["executionSuccessful"], false);
    EXPECT_EQ(invocation["toolExecutionNotifications"].size(), 2u);
}

TEST_F(FleetTroubles, AReportHasARowForThem)
{
    const Outcome outcome = run("report d --as json");
    expectNamed(outcome, {2, 4});
    EXPECT_EQ(jsonOf(outcome).size(), static_cast<std::size_t>(kCount));
}

TEST_F(FleetTroubles, FillingReportsAllThreeAndDoesTheRest)
{
    std::string report = "file,sheet,TITLE.title\r\n";
    for (const std::string &name : drawings(kCount)) report += name + ",SHEET1,Wheel\r\n";
    write("titles.csv", report);
    expectNamed(run("fill --data titles.csv"), {2, 4, 6});
    EXPECT_EQ(read(drawing(6)), unwritable);
    lock.reset();
    EXPECT_EQ(qelfmt("field get " + drawing(5) + " title").out, "Wheel\n");
    EXPECT_EQ(qelfmt("field get " + drawing(4) + " title").out, "Casing\n");
}

TEST_F(FleetTroubles, WhatHasFailedIsTriedAgain)
{
    expectNamed(run("update d --journal j"), {2, 4, 6});
    lock.reset();
    const Outcome resumed = run("--json update d --journal j --resume -q");
    expectNamed(resumed, {2, 6});
    EXPECT_EQ(jsonOf(resumed)[4]["result"], "updated");
}

} // namespace
