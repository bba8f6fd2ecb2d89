// What is on the disk already is not lost, whatever else happens to it.
#include "fleet_shell.h"
#include "interrupted_save.h"

#include <sys/stat.h>

namespace {

class FleetSafety : public FleetShell {
protected:
    void SetUp() override
    {
        FleetShell::SetUp();
        write("rows.csv", "number,title\r\nP-1,Casing\r\nP-2,Wheel\r\nP-3,Shaft\r\n");
    }
    Outcome stampRows(const std::string &rest = "") const
    {
        return qelfmt("--defs site stamp ISO/A3 --data rows.csv -o 'out/{number}.qdraw' " + rest);
    }
    std::string title(const std::string &drawing) const
    {
        return qelfmt("field get " + drawing + " title").out;
    }
    std::string path(const std::string &name) const { return (folder / name).string(); }
};

TEST_F(FleetSafety, ASaveThatWasCutOffDoesNotReachTheDrawingStampedOverIt)
{
    ASSERT_EQ(stampRows().status, 0);
    saveAndDie(path("out/P-2.qdraw"));
    ASSERT_TRUE(exists("out/P-2.qdraw-journal"));
    write("rows.csv", "number,title\r\nP-2,A wheel of another kind\r\n");
    const Outcome over = stampRows("--overwrite");
    EXPECT_EQ(over.status, 0) << over.err;
    EXPECT_FALSE(exists("out/P-2.qdraw-journal"));
    EXPECT_EQ(title("out/P-2.qdraw"), "A wheel of another kind\n");
    EXPECT_EQ(qelfmt("part check out/P-2.qdraw").status, 0);
}

TEST_F(FleetSafety, OneSheetIsStampedOverASaveThatWasCutOffJustAsWell)
{
    stamp("P-9.qdraw", {{"title", "Casing"}});
    saveAndDie(path("P-9.qdraw"));
    write("values.json", R"({"title": "Casing of another kind"})");
    const Outcome over =
        qelfmt("--defs site stamp ISO/A3 --data values.json -o P-9.qdraw --overwrite");
    EXPECT_EQ(over.status, 0) << over.err;
    EXPECT_EQ(title("P-9.qdraw"), "Casing of another kind\n");
}

TEST_F(FleetSafety, ADrawingThatSomebodyIsSavingIsNotReplaced)
{
    ASSERT_EQ(stampRows().status, 0);
    const std::string before = read("out/P-2.qdraw");
    const OpenTransaction save(path("out/P-2.qdraw"));
    const Outcome over = stampRows("--overwrite");
    EXPECT_EQ(over.status, 3);
    EXPECT_TRUE(holds(over.err, "P-2.qdraw: the part is in use by process ")) << over.err;
    EXPECT_EQ(read("out/P-2.qdraw"), before);
}

TEST_F(FleetSafety, TheDrawingBehindALinkIsReplacedAndTheLinkStays)
{
    stamp("real.qdraw", {{"title", "Casing"}});
    std::filesystem::create_directories(folder / "out");
    std::filesystem::create_symlink("../real.qdraw", folder / "out/P-2.qdraw");
    chmod(path("real.qdraw").c_str(), 0640);
    const Outcome over = stampRows("--overwrite");
    EXPECT_EQ(over.status, 0) << over.err;
    EXPECT_TRUE(std::filesystem::is_symlink(folder / "out/P-2.qdraw"));
    EXPECT_EQ(title("real.qdraw"), "Wheel\n");
    struct stat status {};
    stat(path("real.qdraw").c_str(), &status);
    EXPECT_EQ(status.st_mode & 0777, 0640u);
}

TEST_F(FleetSafety, WhatStoodThereBeforeARunIsNotItsOwnWhenItIsResumed)
{
    stamp("out/P-2.qdraw", {{"title", "Somebody's own"}});
    const std::string before = read("out/P-2.qdraw");
    const Outcome first = stampRows("--journal j");
    EXPECT_EQ(first.status, 3);
    EXPECT_TRUE(holds(first.err, "out/P-2.qdraw: exists already")) << first.err;
    const Outcome resumed = stampRows("--journal j --resume");
    EXPECT_EQ(resumed.status, 3);
    EXPECT_TRUE(holds(resumed.err, "out/P-2.qdraw: exists already")) << resumed.err;
    EXPECT_EQ(read("out/P-2.qdraw"), before);
}

TEST_F(FleetSafety, AStampThatWasKilledMakesTheRest)
{
    constexpr int kRecords = 60;
    std::string rows = "number\r\n";
    for (int i = 1; i <= kRecords; ++i) rows += "R-" + std::to_string(i) + "\r\n";
    write("rows.csv", rows);
    const auto made = [&] {
        int count = 0;
        for (int i = 1; i <= kRecords; ++i)
            count += exists("out/R-" + std::to_string(i) + ".qdraw");
        return count;
    };
    {
        RunningCommand running(folder, {"--defs", "site", "stamp", "ISO/A3", "--data", "rows.csv",
                                        "-o", "out/{number}.qdraw", "-j", "2", "--journal", "j"});
        ASSERT_TRUE(RunningCommand::waitFor([&] { return made() >= 5; }));
        running.signal(SIGKILL);
        running.end();
    }
    const Outcome resumed = stampRows("-j 2 --journal j --resume");
    EXPECT_EQ(resumed.status, 0) << resumed.err;
    EXPECT_EQ(made(), kRecords);
    for (int i : {1, 5, 6, 7, kRecords})
        EXPECT_EQ(qelfmt("field get out/R-" + std::to_string(i) + ".qdraw number").out,
                  "R-" + std::to_string(i) + "\n");
}

TEST_F(FleetSafety, ADryRunOrOtherDataIsAnotherRun)
{
    ASSERT_EQ(stampRows("-n --journal j").status, 0);
    const Outcome real = stampRows("--journal j --resume");
    EXPECT_EQ(real.status, 3);
    EXPECT_TRUE(holds(real.err, "j: is the journal of another command")) << real.err;

    ASSERT_EQ(stampRows("--journal k").status, 0);
    write("rows.csv", "number,title\r\nP-1,Casting\r\nP-2,Wheel\r\nP-3,Shaft\r\n");
    const Outcome other = stampRows("--journal k --resume");
    EXPECT_EQ(other.status, 3);
    EXPECT_TRUE(holds(other.err, "k: is the journal of another command")) << other.err;

    const std::string render = "render out -o svg --svg --journal l ";
    const Outcome dry = qelfmt(render + "-n");
    EXPECT_TRUE(holds(dry.err, "3 of 3 drawings drawn (nothing saved)")) << dry.err;
    EXPECT_FALSE(exists("svg"));
    EXPECT_EQ(qelfmt(render + "--resume").status, 3);
}

TEST_F(FleetSafety, UndoTakesTheJournalOfAnUpdateAndLeavesEveryOtherFileAlone)
{
    stamp("a.qdraw", {{"title", "Casing"}});
    ASSERT_EQ(qelfmt("check a.qdraw --defs site --journal checks").status, 0);
    for (const char *name : {"a.qdraw", "checks"})
        for (const char *dry : {"", " -n"}) {
            const std::string before = read(name);
            const Outcome undone = qelfmt(std::string("undo ") + name + dry);
            EXPECT_EQ(undone.status, 3);
            EXPECT_TRUE(holds(undone.err, "name the journal that was given to 'qelfmt update'"))
                << undone.err;
            EXPECT_EQ(read(name), before);
        }
    EXPECT_EQ(title("a.qdraw"), "Casing\n");
}

TEST_F(FleetSafety, UndoPutsBackTheDrawingBehindALinkWithItsPermissions)
{
    stamp("real.qdraw");
    std::filesystem::create_symlink("real.qdraw", folder / "link.qdraw");
    chmod(path("real.qdraw").c_str(), 0640);
    const std::string before = read("real.qdraw");
    changeDefinitions();
    ASSERT_EQ(qelfmt("--defs site update link.qdraw --journal j").status, 0);
    ASSERT_NE(read("real.qdraw"), before);
    const Outcome undone = qelfmt("undo j");
    EXPECT_EQ(undone.status, 0) << undone.err;
    EXPECT_EQ(read("real.qdraw"), before);
    EXPECT_TRUE(std::filesystem::is_symlink(folder / "link.qdraw"));
    struct stat status {};
    stat(path("real.qdraw").c_str(), &status);
    EXPECT_EQ(status.st_mode & 0777, 0640u);
}

TEST_F(FleetSafety, UndoLeavesWhatIsNoDrawingAnyMore)
{
    stamp("a.qdraw");
    changeDefinitions();
    ASSERT_EQ(qelfmt("--defs site update a.qdraw --journal j").status, 0);
    write("a.qdraw", "a text of somebody's own, longer than the beginning of a database ........");
    const Outcome undone = qelfmt("undo j");
    EXPECT_EQ(undone.status, 1);
    EXPECT_TRUE(holds(undone.out, "a.qdraw: left: it has changed since")) << undone.out;
    EXPECT_TRUE(holds(read("a.qdraw"), "somebody's own"));
}

TEST_F(FleetSafety, AReportOfDamagedRowsFails)
{
    stamp("a.qdraw", {{"title", "Casing"}});
    const std::string report = "report a.qdraw --as json --columns format,'TITLE.*'";
    ASSERT_EQ(qelfmt(report).status, 0);
    // One bit of "udo" makes "uto", one of "note" "nnte".
    for (const char *damage :
         {"UPDATE object SET kind='uto' WHERE ordinal=(SELECT max(ordinal) FROM object WHERE "
          "kind='udo')",
          "UPDATE object SET kind='nnte' WHERE kind='note'", "DELETE FROM object WHERE kind='note'",
          "DELETE FROM object WHERE kind='view'"}) {
        SCOPED_TRACE(damage);
        std::filesystem::copy_file(folder / "a.qdraw", folder / "b.qdraw",
                                   std::filesystem::copy_options::overwrite_existing);
        tamper(path("b.qdraw"), damage);
        const Outcome outcome = qelfmt("report b.qdraw --as json --columns format,'TITLE.*'");
        EXPECT_EQ(outcome.status, 3);
        EXPECT_TRUE(holds(outcome.err, "b.qdraw: the part is damaged")) << outcome.err;
        EXPECT_FALSE(jsonOf(outcome)[0].contains("values"));
    }
}

TEST_F(FleetSafety, ResultsThatCannotBeWrittenAreNoSuccess)
{
    stamp("a.qdraw");
    for (const char *line : {"report a.qdraw --as json", "report a.qdraw", "check a.qdraw",
                             "field list a.qdraw", "--help"}) {
        const Outcome outcome =
            shell(std::string("sh -c '" QELFMT_COMMAND " --defs site ") + line + " >/dev/full'");
        EXPECT_EQ(outcome.status, 3) << line;
        EXPECT_TRUE(holds(outcome.err, "standard output: cannot be written: No space left on"))
            << line << ": " << outcome.err;
    }
}

TEST_F(FleetSafety, TwoDrawingsDoNotEndInOnePicture)
{
    stamp("d/X.qdraw", {{"title", "Two sheets"}});
    ASSERT_EQ(qelfmt("sheet add d/X.qdraw SHEET2 --format ISO/A4 --defs site").status, 0);
    stamp("d/X-SHEET1.qdraw", {{"title", "One sheet"}});
    const Outcome drawn = qelfmt("render d -o out --svg -j 1 --journal j");
    EXPECT_EQ(drawn.status, 3);
    EXPECT_TRUE(holds(drawn.err, "d/X.qdraw: would be drawn to out/X-SHEET1.svg, which is the "
                                 "picture of d/X-SHEET1.qdraw"))
        << drawn.err;
    EXPECT_TRUE(holds(read("out/X-SHEET1.svg"), "One sheet"));
    EXPECT_EQ(qelfmt("render d -o other// --svg -j 1").status, 3);
    EXPECT_EQ(qelfmt("render d -o out --svg -j 1 --journal j --resume").status, 3);
    EXPECT_TRUE(holds(read("out/X-SHEET1.svg"), "One sheet"));
}

TEST_F(FleetSafety, TheNameOfASheetLeadsToNoOtherFolder)
{
    stamp("d/X.qdraw");
    ASSERT_EQ(qelfmt("sheet add d/X.qdraw A/B --format ISO/A4 --defs site").status, 0);
    const Outcome drawn = qelfmt("render d -o out --svg");
    EXPECT_EQ(drawn.status, 0) << drawn.err;
    EXPECT_TRUE(exists("out/X-A_B.svg"));
}

TEST_F(FleetSafety, RecordsOfDrawingsOfOneNameAreToldApart)
{
    for (const char *name : {"d/a.qdraw", "e/a.qdraw", "e/b.qdraw"}) stamp(name, {{"title", name}});
    const auto records = jsonOf(qelfmt("report . --as records"));
    ASSERT_EQ(records.size(), 3u);
    EXPECT_EQ(records["d/a"]["title"], "d/a.qdraw");
    EXPECT_EQ(records["e/a"]["title"], "e/a.qdraw");
    EXPECT_EQ(records["b"]["title"], "e/b.qdraw");
}

TEST_F(FleetSafety, TheSameRecordTwiceIsRefused)
{
    write("twice.json", R"({"a": {"number": "1"}, "a": {"number": "2"}})");
    const Outcome outcome =
        qelfmt("--defs site stamp ISO/A3 --data twice.json -o 'out/{number}.qdraw'");
    EXPECT_EQ(outcome.status, 3);
    EXPECT_TRUE(holds(outcome.err, "twice.json: \"a\" stands twice in one object")) << outcome.err;
    EXPECT_FALSE(exists("out"));
}

} // namespace
