// Reports of many drawings, in every form.
#include "fleet_shell.h"
#include "interrupted_save.h"

#include <map>

namespace {

class FleetReport : public FleetShell {
protected:
    void SetUp() override
    {
        FleetShell::SetUp();
        stamp("d/one.qdraw", {{"number", "0007"}, {"title", "Shaft, \"long\""}});
        stamp("d/two.qdraw", {{"number", "0008"}, {"supplement", {"42CrMo4", "gehärtet"}}});
        ASSERT_EQ(qelfmt("--defs site sheet add d/two.qdraw B --format ISO-COMPACT/A4").status, 0);
        ASSERT_EQ(qelfmt("--defs site sheet add d/two.qdraw EMPTY").status, 0);
        ASSERT_EQ(qelfmt("--defs site block add d/one.qdraw REVISIONS").status, 0);
        ASSERT_EQ(qelfmt("--defs site table add d/one.qdraw REVISIONS index=A change=New").status,
                  0);
    }
    Outcome report(const std::string &rest) const { return qelfmt("--defs site report " + rest); }
};

std::string nameOf(int number)
{
    std::string digits = std::to_string(number);
    return "d/m" + std::string(3 - digits.size(), '0') + digits + ".qdraw";
}

// Whether the process has the file open.
bool isAt(pid_t process, const std::string &file)
{
    std::error_code gone;
    for (const auto &entry :
         std::filesystem::directory_iterator("/proc/" + std::to_string(process) + "/fd", gone))
        if (std::filesystem::read_symlink(entry.path(), gone) == file) return true;
    return false;
}

TEST_F(FleetReport, JsonHasAnObjectASheetWithEveryValueAndRow)
{
    const auto rows = jsonOf(report("d --as json"));
    ASSERT_EQ(rows.size(), 4u);
    const auto &one = rows[0];
    EXPECT_EQ(one["file"], "d/one.qdraw");
    EXPECT_EQ(one["sheet"], "SHEET1");
    EXPECT_EQ(one["format"], "ISO");
    EXPECT_EQ(one["size"], "A3");
    EXPECT_EQ(one["label"], "A3");
    EXPECT_EQ(one["state"], "current");
    EXPECT_EQ(one["blocks"], nlohmann::json({"TITLE", "REVISIONS"}));
    EXPECT_EQ(one["values"]["TITLE.number"], "0007");
    EXPECT_EQ(one["values"].size(), 15u); // the cells of the title block
    ASSERT_EQ(one["tables"]["REVISIONS.REVISIONS"].size(), 1u);
    EXPECT_EQ(one["tables"]["REVISIONS.REVISIONS"][0]["change"], "New");
    EXPECT_EQ(rows[1]["values"]["TITLE.supplement"], nlohmann::json({"42CrMo4", "gehärtet"}));
    EXPECT_EQ(rows[2]["sheet"], "B");
    EXPECT_EQ(rows[2]["format"], "ISO-COMPACT");
    EXPECT_EQ(rows[3],
              nlohmann::json({{"file", "d/two.qdraw"}, {"sheet", "EMPTY"}, {"state", "none"}}));
}

TEST_F(FleetReport, CsvHasAColumnAFieldAndLeavesEmptyWhatASheetLacks)
{
    const std::string csv = report("d --as csv --columns format,'*.number'").out;
    EXPECT_EQ(csv, "file,sheet,format,TITLE.number,TITLE_COMPACT.number\r\n"
                   "d/one.qdraw,SHEET1,ISO,0007,\r\n"
                   "d/two.qdraw,SHEET1,ISO,0008,\r\n"
                   "d/two.qdraw,B,ISO-COMPACT,,0008\r\n" // the number is shared by the part
                   "d/two.qdraw,EMPTY,,,\r\n");
}

TEST_F(FleetReport, AColumnThatCannotBeIsRefused)
{
    const Outcome misspelt = report("d --columns file,sate");
    EXPECT_EQ(misspelt.status, 2);
    EXPECT_TRUE(holds(misspelt.err, "--columns sate: there is no such column: there are file, "
                                    "sheet, format, size, label, state, blocks, rows, and values "
                                    "as BLOCK.FIELD"))
        << misspelt.err;
}

TEST_F(FleetReport, NoRowIsMergedTwice)
{
    ASSERT_EQ(report("d --as json -o p.json").status, 0);
    ASSERT_EQ(report("d/one.qdraw --as json -o q.json").status, 0);
    const Outcome same = report("--merge p.json ./p.json");
    EXPECT_EQ(same.status, 3);
    EXPECT_TRUE(holds(same.err, "./p.json: is named twice")) << same.err;
    const Outcome both = report("--merge p.json q.json");
    EXPECT_EQ(both.status, 3);
    EXPECT_TRUE(holds(both.err, "d/one.qdraw, sheet SHEET1: is in two of the reports")) << both.err;
}

TEST_F(FleetReport, CommasQuotesAndLineBreaksAreQuotedInCsv)
{
    const std::string csv = report("d/one.qdraw d/two.qdraw --as csv "
                                   "--columns TITLE.title,TITLE.supplement")
                                .out;
    EXPECT_TRUE(holds(csv, "d/one.qdraw,SHEET1,\"Shaft, \"\"long\"\"\",\r\n")) << csv;
    EXPECT_TRUE(holds(csv, "d/two.qdraw,SHEET1,,\"42CrMo4\ngehärtet\"\r\n")) << csv;
}

TEST_F(FleetReport, TheTableShowsTheStateAndHowMuchIsFilled)
{
    const std::string table = report("d").out;
    EXPECT_EQ(lineCount(table), 5u); // a title and four sheets
    EXPECT_TRUE(holds(table, "filled")) << table;
    EXPECT_TRUE(holds(table, "REVISIONS.REVISIONS 1")) << table;
    EXPECT_TRUE(holds(table, "none")) << table;
}

// What `stamp --data` takes.
TEST_F(FleetReport, RecordsNameDrawingsAndTheirFields)
{
    const auto records = jsonOf(report("d --as records"));
    EXPECT_EQ(records["one"]["number"], "0007");
    EXPECT_EQ(records["two/SHEET1"]["supplement"], nlohmann::json({"42CrMo4", "gehärtet"}));
    EXPECT_EQ(records["two/B"]["number"], "0008");
}

TEST_F(FleetReport, TheFormFollowsTheNameOfTheFile)
{
    ASSERT_EQ(report("d -o r.csv").status, 0);
    EXPECT_EQ(read("r.csv"), report("d --as csv").out);
    ASSERT_EQ(report("d -o r.json").status, 0);
    EXPECT_EQ(read("r.json"), report("d --json").out);
    const Outcome other = report("d -o r.txt");
    EXPECT_EQ(other.status, 2);
    EXPECT_TRUE(holds(other.err, "r.txt: write .csv or .json, or give --as")) << other.err;
    EXPECT_EQ(report("d -o none/r.csv").status, 3);
}

TEST_F(FleetReport, ReportsOfShardsMergeToTheReportOfAll)
{
    for (const char *shard : {"1/3", "2/3", "3/3"})
        ASSERT_EQ(
            report(std::string("d --shard ") + shard + " -o part-" + shard[0] + ".json").status, 0);
    ASSERT_EQ(report("d -o all.json").status, 0);
    const Outcome merged = report("--merge part-3.json part-1.json part-2.json -o merged.json");
    ASSERT_EQ(merged.status, 0) << merged.err;
    EXPECT_EQ(read("merged.json"), read("all.json"));
    ASSERT_EQ(report("--merge part-1.json part-2.json part-3.json -o merged.csv").status, 0);
    EXPECT_EQ(read("merged.csv"), report("d --as csv").out);
}

TEST_F(FleetReport, MergingTakesNothingElse)
{
    write("list.json", "[1]");
    for (const auto &[name, what] :
         std::map<std::string, std::string>{{"list.json", "is no JSON report"},
                                            {"gone.json", "cannot be opened: check the path"},
                                            {"d", "is a folder: name a file in it"},
                                            {"d/one.qdraw", "is no JSON: "}}) {
        const Outcome merged = report("--merge " + name);
        EXPECT_EQ(merged.status, 3);
        EXPECT_TRUE(holds(merged.err, name + ": " + what)) << merged.err;
    }
}

// Without state, label and rows the records are read without opening the drawing.
TEST_F(FleetReport, WhatTheRecordsTellIsWhatTheLibraryTells)
{
    const auto whole = jsonOf(report("d --as json"));
    const auto quick = jsonOf(qelfmt("report d --as json --columns format,size,'*.*'"));
    ASSERT_EQ(quick.size(), whole.size());
    for (std::size_t i = 0; i < whole.size(); ++i) {
        EXPECT_EQ(quick[i]["file"], whole[i]["file"]);
        EXPECT_EQ(quick[i]["sheet"], whole[i]["sheet"]);
        EXPECT_EQ(quick[i].value("format", ""), whole[i].value("format", ""));
        EXPECT_EQ(quick[i].value("values", nlohmann::json()),
                  whole[i].value("values", nlohmann::json()));
    }
}

TEST_F(FleetReport, TheNumberOfWorkersChangesNothing)
{
    const std::string one = report("d --as json -j 1").out;
    EXPECT_EQ(report("d --as json -j 3").out, one);
    EXPECT_EQ(report("d --as json -j 40").out, one);
}

// It has been given many at a time by then, and the one it dies of is the one that it waits for.
TEST_F(FleetReport, AWorkerThatDiesTakesDownItsOwnOfManyQuickDrawings)
{
    constexpr int kMany = 120;
    for (int i = 0; i < kMany; ++i)
        std::filesystem::copy_file(folder / "d/one.qdraw", folder / nameOf(i));
    OpenTransaction save(folder / "d/m060.qdraw");
    save.run("COMMIT; BEGIN EXCLUSIVE");
    RunningCommand running(folder,
                           {"report", "d", "-j", "1", "--columns", "TITLE.*", "-o", "r.json"});
    const std::string waitedFor = std::filesystem::canonical(folder / "d/m060.qdraw");
    pid_t worker = 0;
    ASSERT_TRUE(RunningCommand::waitFor([&] {
        for (const pid_t process : running.workers())
            if (isAt(process, waitedFor)) worker = process;
        return worker != 0;
    }));
    kill(worker, SIGKILL);
    const Outcome end = running.end();
    EXPECT_EQ(end.status, 3);
    EXPECT_TRUE(holds(end.err, "d/m060.qdraw: the process that worked on it was ended by signal 9"))
        << end.err;
    std::map<std::string, int> failed;
    int told = 0;
    for (const auto &row : nlohmann::json::parse(read("r.json"))) {
        if (row.contains("error")) ++failed[row["file"]];
        told += row.contains("values");
    }
    EXPECT_EQ(failed, (std::map<std::string, int>{{"d/m060.qdraw", 1}}));
    EXPECT_EQ(told, kMany - 1 + 3); // one.qdraw has a sheet with values, two.qdraw two
}

TEST_F(FleetReport, AReportChangesNoDrawing)
{
    const std::string before = read("d/two.qdraw");
    ASSERT_EQ(report("d").status, 0);
    EXPECT_EQ(read("d/two.qdraw"), before);
}

TEST_F(FleetReport, WithAStateTheReportSaysWhatHasDrifted)
{
    changeDefinitions();
    const auto rows = jsonOf(report("d --as json --columns state"));
    EXPECT_EQ(rows[0]["state"], "drifted");
    std::filesystem::create_directories(folder / "empty/format_defs");
    const auto gone = jsonOf(qelfmt("--defs empty report d --as json --columns state"));
    EXPECT_EQ(gone[0]["state"], "orphan");
}

} // namespace
