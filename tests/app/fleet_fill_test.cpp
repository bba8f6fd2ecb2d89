// A report, changed by hand and filled in again.
#include "fleet_shell.h"

#include <functional>

namespace {

class FleetFill : public FleetShell {
protected:
    void SetUp() override
    {
        FleetShell::SetUp();
        stamp("d/one.qdraw", {{"number", "0007"}, {"title", "Shaft"}});
        stamp("d/two.qdraw", {{"number", "0008"}});
        ASSERT_EQ(qelfmt("--defs site sheet add d/two.qdraw B --format ISO/A4").status, 0);
    }
    Outcome fill(const std::string &rest = "") const { return qelfmt("fill --data r.csv " + rest); }
    void makeReport(const std::string &rest = "d -o r.csv") const
    {
        const Outcome outcome = qelfmt("--defs site report " + rest);
        ASSERT_EQ(outcome.status, 0) << outcome.err;
    }
    void replace(const std::string &file, const std::string &what, const std::string &with) const
    {
        std::string text = read(file);
        const std::size_t at = text.find(what);
        ASSERT_NE(at, std::string::npos) << what << " in " << text;
        write(file, text.replace(at, what.size(), with));
    }
    std::string bytes() const { return read("d/one.qdraw") + read("d/two.qdraw"); }
    nlohmann::json rows() const { return jsonOf(qelfmt("--defs site report d --as json")); }
    std::string savedAt() const { return shell("stat -c %y d/one.qdraw d/two.qdraw").out; }
    // Fills in, expects it to fail with the text, and to change nothing.
    void expectRefused(const std::string &text, const std::string &rest = "") const
    {
        const std::string before = bytes();
        const Outcome outcome = fill(rest);
        EXPECT_EQ(outcome.status, 3) << outcome.out;
        EXPECT_TRUE(holds(outcome.err, text)) << outcome.err;
        EXPECT_EQ(bytes(), before);
    }
};

TEST_F(FleetFill, AReportAsItIsChangesNothing)
{
    const std::string before = bytes(), times = savedAt();
    for (const char *report : {"d -o r.csv", "d -o r.json", "d -o r.csv --columns TITLE.number",
                               "d -o r.json --columns format,TITLE.*"}) {
        makeReport(report);
        const std::string name = holds(report, "json") ? "r.json" : "r.csv";
        const Outcome outcome = qelfmt("fill d --data " + name);
        EXPECT_EQ(outcome.status, 0) << outcome.err;
        EXPECT_EQ(outcome.out, "0 values set in 0 drawings, 2 unchanged\n");
    }
    EXPECT_EQ(bytes(), before);
    EXPECT_EQ(savedAt(), times);
}

TEST_F(FleetFill, AChangedCellChangesThatValueAndNothingElse)
{
    makeReport();
    const auto before = rows();
    const std::string two = read("d/two.qdraw");
    replace("r.csv", "Shaft", "\"Shaft, \"\"long\"\",\r\ngehärtet\"");
    const Outcome outcome = fill();
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    EXPECT_EQ(outcome.out, "d/one.qdraw, sheet SHEET1, TITLE.title: \"Shaft\" -> \"Shaft, "
                           "\\\"long\\\",\\ngehärtet\"\n"
                           "1 value set in 1 drawing, 1 unchanged\n");
    auto after = rows();
    EXPECT_EQ(after[0]["values"]["TITLE.title"], nlohmann::json({"Shaft, \"long\",", "gehärtet"}));
    after[0]["values"]["TITLE.title"] = "Shaft";
    EXPECT_EQ(after, before);
    EXPECT_EQ(read("d/two.qdraw"), two);
}

TEST_F(FleetFill, AnEmptiedCellEmptiesTheValueAndZerosInFrontStay)
{
    makeReport();
    replace("r.csv", "Shaft", "");
    replace("r.csv", "0007", "00070");
    ASSERT_EQ(fill().status, 0);
    EXPECT_EQ(rows()[0]["values"]["TITLE.title"], "");
    EXPECT_EQ(rows()[0]["values"]["TITLE.number"], "00070");
}

TEST_F(FleetFill, EachSheetGetsItsOwnRow)
{
    write("r.csv", "sheet,TITLE.supplement,file\nB,second,d/two.qdraw\nSHEET1,first,d/two.qdraw\n");
    ASSERT_EQ(fill().status, 0);
    const auto now = rows();
    EXPECT_EQ(now[0]["values"]["TITLE.supplement"], "");
    EXPECT_EQ(now[1]["values"]["TITLE.supplement"], "first");
    EXPECT_EQ(now[2]["values"]["TITLE.supplement"], "second");
}

TEST_F(FleetFill, TheCurrentSheetStaysCurrent)
{
    const auto current = [&] { return jsonOf(qelfmt("--json info d/two.qdraw")); };
    const auto before = current();
    write("r.csv", "file,sheet,TITLE.supplement\nd/two.qdraw,SHEET1,first\n");
    ASSERT_EQ(fill().status, 0);
    EXPECT_EQ(current(), before);
}

TEST_F(FleetFill, JsonIsTakenToo)
{
    makeReport("d -o r.json");
    auto report = nlohmann::json::parse(read("r.json"));
    report[0]["values"]["TITLE.title"] = {"Shaft", "long"};
    report[2]["values"]["TITLE.language"] = "de";
    write("r.json", report.dump());
    const Outcome outcome = qelfmt("fill --data r.json --json");
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    const auto result = jsonOf(outcome);
    ASSERT_EQ(result.size(), 2u);
    EXPECT_EQ(result[0]["result"], "filled");
    EXPECT_EQ(result[0]["set"][0], nlohmann::json({{"sheet", "SHEET1"},
                                                   {"field", "TITLE.title"},
                                                   {"before", "Shaft"},
                                                   {"after", "Shaft\nlong"}}));
    EXPECT_EQ(rows(), report);
}

TEST_F(FleetFill, ADryRunSaysTheSameAndSavesNothing)
{
    makeReport();
    replace("r.csv", "Shaft", "Wheel");
    const std::string before = bytes();
    const Outcome dry = fill("-n");
    EXPECT_EQ(bytes(), before);
    EXPECT_TRUE(holds(dry.out, "\"Shaft\" -> \"Wheel\"")) << dry.out;
    EXPECT_TRUE(holds(dry.out, "(nothing saved)\n")) << dry.out;
    EXPECT_EQ(fill().status, 0);
    EXPECT_NE(bytes(), before);
}

// --- what cannot be filled in -----------------------------------------------------------------------

TEST_F(FleetFill, UnknownColumnsAreListedBeforeAnythingIsDone)
{
    makeReport();
    replace("r.csv", "TITLE.title", "title");
    replace("r.csv", "TITLE.number", "TITLE.owner");
    expectRefused("r.csv, row 1: unknown column \"title\": a value is in a column BLOCK.FIELD, as "
                  "in TITLE.number; else there are file, sheet, format");
    expectRefused("r.csv, row 1: two columns \"TITLE.owner\": remove one");
}

TEST_F(FleetFill, AValueForAFieldThatTheSheetLacksIsRefused)
{
    write("r.csv", "file,sheet,TITLE.titel,NONE.x\nd/one.qdraw,SHEET1,x,\nd/two.qdraw,B,,\n");
    expectRefused("d/one.qdraw, sheet SHEET1: no field TITLE.titel; there are TITLE.department");
    const Outcome outcome = fill();
    EXPECT_EQ(outcome.out, "0 values set in 0 drawings, 1 unchanged, 1 failed\n");
}

TEST_F(FleetFill, AMissingSheetOrFileIsReportedAndTheOthersAreFilled)
{
    write("r.csv", "file,sheet,TITLE.title\nd/gone.qdraw,SHEET1,x\nd/one.qdraw,SHEET1,Wheel\n"
                   "d/two.qdraw,C,x\n");
    const std::string two = read("d/two.qdraw");
    const Outcome outcome = fill("d");
    EXPECT_EQ(outcome.status, 3);
    EXPECT_TRUE(holds(outcome.err, "d/gone.qdraw")) << outcome.err;
    EXPECT_TRUE(holds(outcome.err,
                      "d/two.qdraw, sheet C: there is no such sheet; there are SHEET1, "
                      "B (r.csv, row 4)"))
        << outcome.err;
    EXPECT_EQ(rows()[0]["values"]["TITLE.title"], "Wheel");
    EXPECT_EQ(read("d/two.qdraw"), two);
}

TEST_F(FleetFill, ColumnsThatAreNoValuesCannotBeChanged)
{
    makeReport();
    replace("r.csv", "one.qdraw,SHEET1,ISO,A3,A3", "one.qdraw,SHEET1,ASME,A2,A1");
    const Outcome outcome = fill();
    EXPECT_EQ(outcome.status, 3);
    for (const char *text : {"format is \"ISO\", not \"ASME\"", "size is \"A3\", not \"A2\"",
                             "label is \"A3\", not \"A1\""})
        EXPECT_TRUE(holds(outcome.err, text)) << outcome.err;
    makeReport();
    replace("r.csv", "current,TITLE", "current,TITLE REVISIONS");
    expectRefused("blocks is \"TITLE\", not \"TITLE REVISIONS\"");
    makeReport();
    replace("r.csv", "current,TITLE,,", "current,TITLE,REVISIONS.REVISIONS 1,");
    expectRefused("rows is \"\", not \"REVISIONS.REVISIONS 1\"");
}

// The state follows from the definitions, which may have changed since the report.
TEST_F(FleetFill, TheStateIsNotCompared)
{
    makeReport();
    changeDefinitions();
    replace("r.csv", "Shaft", "Wheel");
    EXPECT_EQ(fill().status, 0);
    EXPECT_EQ(rows()[0]["values"]["TITLE.title"], "Wheel");
}

TEST_F(FleetFill, RowsOfTablesCannotBeChanged)
{
    ASSERT_EQ(qelfmt("--defs site block add d/one.qdraw REVISIONS").status, 0);
    ASSERT_EQ(qelfmt("--defs site table add d/one.qdraw REVISIONS index=A").status, 0);
    makeReport("d -o r.json");
    EXPECT_EQ(qelfmt("fill --data r.json").status, 0);
    auto report = nlohmann::json::parse(read("r.json"));
    report[0]["tables"]["REVISIONS.REVISIONS"][0]["index"] = "B";
    write("r.json", report.dump());
    const Outcome outcome = qelfmt("fill --data r.json");
    EXPECT_EQ(outcome.status, 3);
    EXPECT_TRUE(holds(outcome.err, "rows of tables are not as the report says")) << outcome.err;
}

TEST_F(FleetFill, EverythingThatIsWrongWithADrawingIsSaidAndNothingOfItIsSaved)
{
    ASSERT_EQ(qelfmt("field editable d/one.qdraw number no").status, 0);
    write("r.csv", "file,sheet,size,TITLE.title,TITLE.number,TITLE.x\n"
                   "d/one.qdraw,SHEET1,A2,Wheel,9,y\n");
    const std::string before = bytes();
    const Outcome outcome = fill();
    EXPECT_EQ(outcome.status, 3);
    EXPECT_EQ(lineCount(outcome.err), 3u);
    EXPECT_TRUE(holds(outcome.err, "TITLE.number is locked: give --force")) << outcome.err;
    EXPECT_EQ(bytes(), before);
}

TEST_F(FleetFill, LockedFieldsAreSetByForce)
{
    ASSERT_EQ(qelfmt("field editable d/one.qdraw number no").status, 0);
    write("r.csv", "file,sheet,TITLE.number\nd/one.qdraw,SHEET1,9\n");
    expectRefused("TITLE.number is locked");
    EXPECT_EQ(fill("--force").status, 0);
    EXPECT_EQ(rows()[0]["values"]["TITLE.number"], "9");
}

TEST_F(FleetFill, ValuesThatDoNotFitAreReportedAndRefusedWhenStrict)
{
    write("r.csv", "file,sheet,TITLE.language\nd/one.qdraw,SHEET1,much too long for ten\n");
    expectRefused("d/one.qdraw, sheet SHEET1, TITLE.language: the text is", "--strict");
    const Outcome outcome = fill();
    EXPECT_EQ(outcome.status, 0);
    EXPECT_TRUE(holds(outcome.err, "TITLE.language: the text is ")) << outcome.err;
}

TEST_F(FleetFill, RowsThatAreBrokenAreListed)
{
    write("r.csv", "file,sheet,TITLE.title\n,SHEET1,x\nd/one.qdraw,SHEET1,x\n"
                   "./d/one.qdraw,SHEET1,y\n");
    expectRefused("r.csv, row 2: names no file\n"
                  "r.csv, row 4: sheet SHEET1 of ./d/one.qdraw stands there twice: remove one");
    write("r.json", R"([{"file": "d/one.qdraw", "sheet": "SHEET1", "value": {},
                         "values": {"title": "x", "TITLE.title": 7}}, {"sheet": "B"}, 5])");
    const Outcome json = qelfmt("fill --data r.json");
    EXPECT_EQ(json.status, 3);
    EXPECT_EQ(lineCount(json.err), 5u);
    EXPECT_TRUE(holds(json.err, "r.json, row 1: unknown key \"value\"")) << json.err;
    EXPECT_TRUE(holds(json.err, "r.json, row 1: values: \"title\" names no field")) << json.err;
    EXPECT_TRUE(holds(json.err, "TITLE.title: a value must be a text or a list")) << json.err;
    EXPECT_TRUE(holds(json.err, "r.json, row 2: names no file")) << json.err;
    EXPECT_TRUE(holds(json.err, "r.json, row 3: must be an object")) << json.err;
}

// A drawing that could not be read when the report was made has an empty row.
TEST_F(FleetFill, TheRowOfAFailedDrawingChangesNothing)
{
    const std::string good = read("d/one.qdraw");
    write("d/one.qdraw", "nothing that anybody could read");
    for (const char *name : {"r.csv", "r.json"})
        EXPECT_EQ(qelfmt("--defs site report d -o " + std::string(name)).status, 3);
    write("d/one.qdraw", good);
    EXPECT_EQ(fill().out, "0 values set in 0 drawings, 2 unchanged\n");
    EXPECT_EQ(qelfmt("fill --data r.json").out, "0 values set in 0 drawings, 2 unchanged\n");
}

// --- which drawings -----------------------------------------------------------------------------------

TEST_F(FleetFill, PathsNarrowTheReport)
{
    makeReport("d -o r.csv --columns TITLE.language");
    std::string text = read("r.csv");
    for (std::size_t at = 0; (at = text.find(",en", at)) != std::string::npos;)
        text.replace(at, 3, ",de");
    write("r.csv", text);
    const Outcome one = fill("d/one.qdraw");
    EXPECT_EQ(one.out, "d/one.qdraw, sheet SHEET1, TITLE.language: \"en\" -> \"de\"\n"
                       "1 value set in 1 drawing, 0 unchanged\n");
    EXPECT_EQ(one.err, "r.csv: rows of 1 drawing that are not named are left out\n");
    EXPECT_TRUE(holds(fill(". --shard 1/2").out, "0 values set in 0 drawings, 1 unchanged"));
    EXPECT_TRUE(holds(fill("--shard 2/2").out, "2 values set in 1 drawing, 0 unchanged"));
    stamp("other/three.qdraw");
    expectRefused("r.csv: has no row for the drawings that are named", "other");
}

TEST_F(FleetFill, DataForOneDrawingIsTakenAsBefore)
{
    write("v.csv", "field,value\ntitle,Wheel\n");
    EXPECT_EQ(qelfmt("--defs site fill d/one.qdraw --data v.csv").status, 0);
    EXPECT_EQ(rows()[0]["values"]["TITLE.title"], "Wheel");
    for (const char *rest :
         {"d/one.qdraw d/two.qdraw --data v.csv", "--data v.csv",
          "d/one.qdraw --data v.csv --journal j", "d/one.qdraw --data v.csv -j 2"}) {
        const Outcome outcome = qelfmt(std::string("--defs site fill ") + rest);
        EXPECT_EQ(outcome.status, 2) << rest;
        EXPECT_TRUE(holds(outcome.err, "v.csv: is no report of 'qelfmt report'")) << outcome.err;
    }
    makeReport();
    EXPECT_EQ(fill("--complete").status, 2);
}

TEST_F(FleetFill, ARunOfManyCanBeResumed)
{
    makeReport();
    replace("r.csv", "Shaft", "Wheel");
    write("d/two.qdraw", "broken");
    EXPECT_EQ(fill("--journal j").status, 3);
    std::filesystem::remove(folder / "d/two.qdraw");
    stamp("d/two.qdraw", {{"number", "0008"}});
    ASSERT_EQ(qelfmt("--defs site sheet add d/two.qdraw B --format ISO/A4").status, 0);
    const Outcome resumed = fill("--journal j --resume");
    EXPECT_EQ(resumed.status, 0) << resumed.err;
    EXPECT_TRUE(holds(resumed.err, "1 of 2 were done before")) << resumed.err;
    EXPECT_TRUE(holds(resumed.out, "1 value set in 1 drawing, 1 unchanged")) << resumed.out;
    replace("r.csv", "Wheel", "Gear");
    const Outcome other = fill("--journal j --resume");
    EXPECT_EQ(other.status, 3);
    EXPECT_TRUE(holds(other.err, "is the journal of another command")) << other.err;
}

} // namespace
