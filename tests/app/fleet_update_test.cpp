// Many drawings brought up to date, and put back.
#include "fleet_shell.h"

namespace {

class FleetUpdate : public FleetShell {
protected:
    void SetUp() override
    {
        FleetShell::SetUp();
        stampMany(4);
        changeDefinitions();
    }
    Outcome update(const std::string &rest) const { return qelfmt("--defs site update " + rest); }
    std::vector<std::string> results(const Outcome &outcome) const
    {
        std::vector<std::string> found;
        for (const auto &row : jsonOf(outcome)) found.push_back(row["result"]);
        return found;
    }
    std::string stateOf(const std::string &drawing) const
    {
        return jsonOf(
            qelfmt("--defs site report --as json --columns state " + drawing))[0]["state"];
    }
    using Results = std::vector<std::string>;
};

TEST_F(FleetUpdate, EveryDrawingIsUpdatedOnceAndKeepsItsValues)
{
    const Outcome first = update("d --json");
    EXPECT_EQ(first.status, 0) << first.err;
    EXPECT_EQ(results(first), Results(4, "updated"));
    EXPECT_EQ(stateOf("d/d0002.qdraw"), "current");
    EXPECT_EQ(qelfmt("field get d/d0002.qdraw number").out, "d0002\n");
    EXPECT_EQ(qelfmt("field get d/d0002.qdraw title").out, "Casing\n");

    const std::string before = contentsOf(drawings(4));
    const Outcome second = update("d --json");
    EXPECT_EQ(results(second), Results(4, "current"));
    EXPECT_EQ(contentsOf(drawings(4)), before);
    EXPECT_EQ(update("d").out, "4 current\n");
}

TEST_F(FleetUpdate, ADryRunSaysTheSameAndSavesNothing)
{
    const std::string before = contentsOf(drawings(4));
    const Outcome dry = update("d --dry-run --json");
    EXPECT_EQ(contentsOf(drawings(4)), before);
    EXPECT_EQ(dry.out, update("d --json").out);
    EXPECT_NE(contentsOf(drawings(4)), before);
}

TEST_F(FleetUpdate, ADryRunIsNoPartOfTheRealOne)
{
    ASSERT_EQ(update("d --dry-run --journal j").status, 0);
    const Outcome resumed = update("d --journal j --resume");
    EXPECT_EQ(resumed.status, 3);
    EXPECT_TRUE(holds(resumed.err, "j: is the journal of another command")) << resumed.err;
}

TEST_F(FleetUpdate, WhatCannotBeUpdatedIsSkippedWithTheReason)
{
    stamp("d/d0004.qdraw");
    ASSERT_EQ(qelfmt("part new d/d0005.qdraw").status, 0);
    std::filesystem::create_directories(folder / "compact/format_defs");
    const Outcome none = qelfmt("--defs compact update d --json");
    EXPECT_EQ(none.status, 1) << none.err; // somebody has to bring the definitions
    const auto rows = jsonOf(none);
    EXPECT_EQ(rows[0]["result"], "skipped");
    EXPECT_TRUE(holds(rows[0]["reason"], "no definition of format ISO, block TITLE")) << rows[0];
    EXPECT_EQ(rows[5]["result"], "skipped");
    EXPECT_EQ(rows[5]["reason"], "has no sheet with a format");
    const Outcome text = update("d");
    EXPECT_EQ(text.status, 0) << text.err; // a sheet without a format waits for nobody
    EXPECT_TRUE(holds(text.out, "4 updated, 1 current, 1 skipped\n")) << text.out;
}

TEST_F(FleetUpdate, ABadDrawingStopsNoOther)
{
    write("d/d0001.qdraw", "not a drawing at all");
    const Outcome outcome = update("d --json");
    EXPECT_EQ(outcome.status, 3);
    EXPECT_TRUE(holds(outcome.err, "d/d0001.qdraw")) << outcome.err;
    EXPECT_EQ(results(outcome), Results({"updated", "failed", "updated", "updated"}));
    EXPECT_EQ(read("d/d0001.qdraw"), "not a drawing at all");
}

TEST_F(FleetUpdate, UndoPutsBackEveryByte)
{
    const std::string before = contentsOf(drawings(4));
    ASSERT_EQ(update("d --journal j").status, 0);
    ASSERT_NE(contentsOf(drawings(4)), before);
    const Outcome dry = qelfmt("undo j --dry-run");
    EXPECT_EQ(dry.status, 0);
    EXPECT_NE(contentsOf(drawings(4)), before);
    const Outcome undone = qelfmt("undo j");
    EXPECT_EQ(undone.status, 0) << undone.err;
    EXPECT_EQ(lineCount(undone.out), 4u);
    EXPECT_TRUE(holds(undone.out, "d0003.qdraw: restored")) << undone.out;
    EXPECT_EQ(contentsOf(drawings(4)), before);
    EXPECT_EQ(qelfmt("undo j").out, ""); // undone once
}

TEST_F(FleetUpdate, UndoLeavesWhatHasChangedSince)
{
    const std::string before = contentsOf(drawings(4));
    ASSERT_EQ(update("d --journal j").status, 0);
    ASSERT_EQ(qelfmt("field set d/d0001.qdraw title Wheel").status, 0);
    const std::string changed = read("d/d0001.qdraw");
    std::filesystem::remove(folder / "d/d0002.qdraw");
    const Outcome undone = qelfmt("undo j");
    EXPECT_EQ(undone.status, 1);
    EXPECT_TRUE(holds(undone.out, "d0001.qdraw: left: it has changed since")) << undone.out;
    EXPECT_TRUE(holds(undone.out, "d0002.qdraw: left: it is gone")) << undone.out;
    EXPECT_EQ(read("d/d0001.qdraw"), changed);
    EXPECT_FALSE(exists("d/d0002.qdraw"));
    EXPECT_EQ(stateOf("d/d0003.qdraw"), "drifted");
}

TEST_F(FleetUpdate, UndoNeedsTheJournalOfAnUpdate)
{
    EXPECT_EQ(qelfmt("undo none").status, 3);
    EXPECT_TRUE(holds(qelfmt("undo none").err, "none: there is no such journal"));
    write("text", "not a journal at all, but long enough to be one of something else .....");
    EXPECT_EQ(qelfmt("undo text").status, 3);
}

TEST_F(FleetUpdate, AJournalIsNotWrittenOver)
{
    ASSERT_EQ(update("d --journal j").status, 0);
    const Outcome again = update("d --journal j");
    EXPECT_EQ(again.status, 3);
    EXPECT_TRUE(holds(again.err, "j: exists: give --resume")) << again.err;
    EXPECT_EQ(qelfmt("undo j").status, 0); // it is all there still
}

} // namespace
