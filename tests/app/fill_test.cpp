// Many values at once, from data files.
#include "shell.h"

namespace {

class Fill : public Shell {
protected:
    void SetUp() override
    {
        Shell::SetUp();
        buildIso();
        ASSERT_EQ(qelfmt("stamp ISO/A3 --defs site -o a.qdraw").status, 0);
    }
    Outcome fill(const std::string &rest) const
    {
        return qelfmt("--defs site fill a.qdraw " + rest);
    }
    nlohmann::json values() const { return json("--defs site field list a.qdraw")["TITLE"]; }
};

TEST_F(Fill, ACsvFileHasAFieldARow)
{
    write("v.csv", "field,value\r\nnumber,0815\r\ntitle,\"Shaft, \"\"long\"\"\"\r\n"
                   "supplement,\"one\ntwo\"\r\n");
    ASSERT_EQ(fill("--data v.csv").status, 0);
    EXPECT_EQ(values()["number"], "0815");
    EXPECT_EQ(values()["title"], "Shaft, \"long\"");
    EXPECT_EQ(values()["supplement"], nlohmann::json({"one", "two"}));
}

TEST_F(Fill, ACsvFileHasARecordARow)
{
    write("v.csv", "number,title\n0001,Shaft\n0002,Wheel\n");
    ASSERT_EQ(fill("--data v.csv --record 0002").status, 0);
    EXPECT_EQ(values()["number"], "0002");
    EXPECT_EQ(values()["title"], "Wheel");
    const Outcome which = fill("--data v.csv");
    EXPECT_EQ(which.status, 3);
    EXPECT_NE(which.err.find("choose one with --record and its number"), std::string::npos);
    EXPECT_NE(fill("--data v.csv --record 3").err.find("no record whose number is 3"),
              std::string::npos);
}

TEST_F(Fill, AFileOfSeveralRecordsNamesThemWhenNoneOrAWrongOneIsChosen)
{
    write("v.json", R"({"shaft": {"title": "Shaft"}, "wheel": {"TITLE": {"title": "Wheel"}}})");
    const std::string before = read("a.qdraw");
    const Outcome which = fill("--data v.json");
    EXPECT_EQ(which.status, 3);
    EXPECT_NE(which.err.find("v.json: holds the records shaft, wheel: choose with --record, as in "
                             "--record shaft"),
              std::string::npos)
        << which.err;
    EXPECT_NE(fill("--data v.json --record bolt")
                  .err.find("v.json: no record bolt; it holds shaft, wheel"),
              std::string::npos);
    EXPECT_EQ(read("a.qdraw"), before);
    ASSERT_EQ(fill("--data v.json --record wheel").status, 0);
    EXPECT_EQ(values()["title"], "Wheel");
}

TEST_F(Fill, AListOfRecordsIsCountedFromZero)
{
    write("v.json", R"([{"title": "First"}, {"title": "Second"}])");
    EXPECT_NE(
        fill("--data v.json")
            .err.find("v.json: is a list of records: choose one with --record; it holds 0, 1"),
        std::string::npos);
    EXPECT_NE(fill("--data v.json --record 2").err.find("no record 2; it holds 0, 1"),
              std::string::npos);
    ASSERT_EQ(fill("--data v.json --record 1").status, 0);
    EXPECT_EQ(values()["title"], "Second");
}

TEST_F(Fill, RecordsOfACsvFileAreNamedByTheirFirstCells)
{
    write("rows.csv", "number,title\n0001,Shaft\n0002,Wheel\n");
    EXPECT_NE(fill("--data rows.csv").err.find("it holds 0001, 0002"), std::string::npos);
    EXPECT_NE(fill("--data rows.csv --record 1").err.find("it holds 0001, 0002"),
              std::string::npos);
    write("head.csv", "number,title\n");
    EXPECT_NE(fill("--data head.csv").err.find("head.csv: holds no record"), std::string::npos);
}

TEST_F(Fill, OneRecordOfBlocksIsNotTakenForRecords)
{
    write("v.json", R"({"TITLE": {"title": "Shaft"}})");
    ASSERT_EQ(fill("--data v.json").status, 0);
    EXPECT_EQ(values()["title"], "Shaft");
}

TEST_F(Fill, UnknownNamesAreListedTogetherAndWhatThereIsOnce)
{
    write("v.json", R"({"titel": "x", "TITLE": {"numbr": "y"}, "title": ["a", ["b"]]})");
    const Outcome refused = fill("--data v.json");
    EXPECT_NE(refused.err.find("v.json: no fields titel, TITLE.numbr on a.qdraw, sheet SHEET1; "
                               "there are TITLE.department, "),
              std::string::npos)
        << refused.err;
    EXPECT_NE(
        refused.err.find("v.json, title: a value must be a text, a number or a list of texts"),
        std::string::npos);
    EXPECT_EQ(refused.err.find("there are"), refused.err.rfind("there are"));
}

TEST_F(Fill, AListForAFieldOfOneLineIsReported)
{
    write("v.json", R"({"number": ["0815", "0816"], "supplement": ["one", "two"]})");
    const auto report = json("--defs site fill a.qdraw --data v.json");
    ASSERT_GE(report["misfits"].size(), 1u);
    EXPECT_EQ(report["misfits"][0]["field"], "TITLE.number");
    EXPECT_EQ(report["misfits"][0]["lines_too_many"], 1);
    EXPECT_NE(
        fill("--data v.json").err.find("TITLE.number: the text has 2 lines in a field of one line"),
        std::string::npos);
    EXPECT_EQ(fill("--data v.json").err.find("TITLE.supplement: the text has 2 lines"),
              std::string::npos);
    EXPECT_EQ(fill("--data v.json --strict").status, 1);
}

TEST_F(Fill, MissingNamesAreReportedAndRefusedWhenAllAreWanted)
{
    write("v.json", R"({"TITLE": {"title": "Shaft"}, "number": 7})");
    const auto report = json("--defs site fill a.qdraw --data v.json");
    EXPECT_EQ(report["set"], nlohmann::json({"TITLE.title", "TITLE.number"}));
    EXPECT_EQ(report["missing"].size(), 13u);
    EXPECT_EQ(report["missing"][0], "TITLE.department");
    const std::string before = read("a.qdraw");
    const Outcome refused = fill("--data v.json --complete");
    EXPECT_EQ(refused.status, 1);
    EXPECT_NE(refused.err.find("TITLE.department"), std::string::npos);
    EXPECT_EQ(read("a.qdraw"), before);
}

TEST_F(Fill, UnknownAndLockedNamesAreAllReportedAndNothingIsSaved)
{
    ASSERT_EQ(qelfmt("--defs site field editable a.qdraw number no").status, 0);
    const std::string before = read("a.qdraw");
    write("v.json", R"({"title": "x", "titel": "y", "number": "z"})");
    const Outcome refused = fill("--data v.json");
    EXPECT_EQ(refused.status, 3);
    EXPECT_NE(refused.err.find("no field titel"), std::string::npos);
    EXPECT_NE(refused.err.find("TITLE.number: is locked"), std::string::npos);
    EXPECT_EQ(read("a.qdraw"), before);
}

TEST_F(Fill, ValuesThatDoNotFitAreReported)
{
    write("v.json", R"({"language": "much too long for ten", "title": "Shaft"})");
    const auto report = json("--defs site fill a.qdraw --data v.json");
    ASSERT_EQ(report["misfits"].size(), 1u);
    EXPECT_EQ(report["misfits"][0]["field"], "TITLE.language");
    EXPECT_GT(report["misfits"][0]["too_wide"].get<double>(), 0.0);
    EXPECT_EQ(fill("--data v.json --strict").status, 1);
}

TEST_F(Fill, BrokenFilesAreNamedWithTheLine)
{
    write("quote.csv", "field,value\ntitle,\"open\n");
    EXPECT_NE(fill("--data quote.csv").err.find("quote.csv, line 2: a quote is opened"),
              std::string::npos);
    write("ragged.csv", "field,value\ntitle\n");
    EXPECT_NE(fill("--data ragged.csv").err.find("ragged.csv, line 2: 1 cells"), std::string::npos);
    write("latin.csv", "field,value\ntitle,\xE9t\xE9\n");
    EXPECT_NE(fill("--data latin.csv").err.find("latin.csv, line 2: a byte that is no UTF-8"),
              std::string::npos);
    write("broken.json", "{\"title\": \n \"x\",}\n");
    const std::string broken = fill("--data broken.json").err;
    EXPECT_NE(broken.find("broken.json: is no JSON: parse error at line 2"), std::string::npos)
        << broken;
    EXPECT_EQ(broken.find("json.exception"), std::string::npos);
    EXPECT_NE(fill("--data none.csv").err.find("none.csv: cannot be opened"), std::string::npos);
}

} // namespace
