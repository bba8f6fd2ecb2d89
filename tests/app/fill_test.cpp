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
    EXPECT_NE(fill("--data none.csv").err.find("none.csv: cannot be opened"), std::string::npos);
}

} // namespace
