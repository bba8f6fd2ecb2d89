// Which drawings a command over many takes.
#include "fleet_shell.h"

#include <set>

namespace {

class FleetPaths : public FleetShell {
protected:
    void SetUp() override
    {
        FleetShell::SetUp();
        stamp("one.qdraw");
        for (const char *name : {"pumps/a.qdraw", "pumps/old/b.qdraw", "valves/c.qdraw",
                                 "valves/spare part.qdraw", "valves/other.name"}) {
            std::filesystem::create_directories((folder / name).parent_path());
            std::filesystem::copy_file(folder / "one.qdraw", folder / name);
        }
    }
    // The files of a report, in its order.
    std::vector<std::string> files(const std::string &arguments) const
    {
        const Outcome outcome = qelfmt("--json report --columns format " + arguments);
        std::vector<std::string> found;
        for (const auto &row : jsonOf(outcome)) found.push_back(row["file"]);
        return found;
    }
    using Names = std::vector<std::string>;
};

TEST_F(FleetPaths, AFolderIsSearchedWithAllBelowForDrawings)
{
    EXPECT_EQ(files("pumps valves"), Names({"pumps/a.qdraw", "pumps/old/b.qdraw", "valves/c.qdraw",
                                            "valves/spare part.qdraw"}));
}

TEST_F(FleetPaths, ADrawingThatIsNamedTwiceIsTakenOnce)
{
    EXPECT_EQ(files("pumps pumps/a.qdraw ./pumps/old/../a.qdraw"),
              Names({"pumps/a.qdraw", "pumps/old/b.qdraw"}));
}

TEST_F(FleetPaths, ANamedFileIsTakenWhateverItIsCalled)
{
    EXPECT_EQ(files("valves/other.name"), Names({"valves/other.name"}));
}

TEST_F(FleetPaths, AListHasAPathALineOrAPathBeforeEachNul)
{
    write("list.txt", "pumps/a.qdraw\r\n\nvalves/spare part.qdraw\n");
    EXPECT_EQ(files("--files-from list.txt"), Names({"pumps/a.qdraw", "valves/spare part.qdraw"}));
    EXPECT_EQ(files("--files-from list.txt one.qdraw"),
              Names({"one.qdraw", "pumps/a.qdraw", "valves/spare part.qdraw"}));
    write("nul.txt", std::string("one.qdraw\0valves/c.qdraw\0", 24));
    EXPECT_EQ(files("--files-from nul.txt"), Names({"one.qdraw", "valves/c.qdraw"}));
    EXPECT_EQ(files("--files-from - < list.txt"),
              Names({"pumps/a.qdraw", "valves/spare part.qdraw"}));
}

TEST_F(FleetPaths, WhatDoesNotExistIsReportedWithTheRest)
{
    const Outcome outcome = qelfmt("--json report --columns format one.qdraw gone.qdraw");
    EXPECT_EQ(outcome.status, 3);
    EXPECT_TRUE(holds(outcome.err, "gone.qdraw")) << outcome.err;
    const auto rows = jsonOf(outcome);
    ASSERT_EQ(rows.size(), 2u);
    EXPECT_EQ(rows[0]["state"], "failed");
    EXPECT_TRUE(holds(rows[0]["error"], "gone.qdraw")) << rows[0];
    EXPECT_EQ(rows[1]["format"], "ISO");

    const Outcome list = qelfmt("report --files-from no-such-list");
    EXPECT_EQ(list.status, 3);
    EXPECT_TRUE(holds(list.err, "no-such-list: cannot be opened: check the path")) << list.err;
}

TEST_F(FleetPaths, WithoutPathsACommandSaysWhatToGive)
{
    for (const char *verb : {"report", "check", "update"}) {
        const Outcome outcome = qelfmt(verb);
        EXPECT_EQ(outcome.status, 2) << verb;
        EXPECT_TRUE(holds(outcome.err, "give drawings, folders or --files-from")) << outcome.err;
    }
}

TEST_F(FleetPaths, AFolderWithoutDrawingsIsNoError)
{
    std::filesystem::create_directories(folder / "empty");
    for (const char *verb : {"report", "check", "update"}) {
        const Outcome outcome = qelfmt(std::string(verb) + " empty --defs site");
        EXPECT_EQ(outcome.status, 0) << outcome.err;
        EXPECT_TRUE(holds(outcome.err, "no drawings there")) << outcome.err;
    }
}

TEST_F(FleetPaths, ShardsTogetherAreTheList)
{
    const Names all = files("pumps valves one.qdraw");
    ASSERT_EQ(all.size(), 5u);
    for (const int shares : {1, 2, 3, 7}) {
        std::multiset<std::string> together;
        for (int i = 1; i <= shares; ++i) {
            const std::string shard = "--shard " + std::to_string(i) + "/" + std::to_string(shares);
            const Names share = files("pumps valves one.qdraw " + shard);
            EXPECT_LE(share.size(), 5u / static_cast<unsigned>(shares) + 1);
            EXPECT_EQ(share, files("one.qdraw valves pumps " + shard)); // however they are named
            together.insert(share.begin(), share.end());
        }
        EXPECT_EQ(Names(together.begin(), together.end()), all) << shares;
    }
}

TEST_F(FleetPaths, AShardThatIsNoneIsRefused)
{
    for (const char *shard : {"0/3", "4/3", "1", "1/", "/3", "a/b", "1/0", "-1/3", "1/3x"}) {
        const Outcome outcome = qelfmt(std::string("report . --shard=") + shard);
        EXPECT_EQ(outcome.status, 2) << shard;
        EXPECT_TRUE(holds(outcome.err, "write K/N with K from 1 to N")) << outcome.err;
    }
}

} // namespace
