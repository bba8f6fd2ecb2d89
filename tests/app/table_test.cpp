// Rows of tables and their symbols from the command line.
#include "table_verbs.h"

namespace {

TEST_F(TableVerbs, RowsAreAppendedAndRead)
{
    EXPECT_EQ(table("add", "rev=A 'change=bore enlarged'").out, "0\n");
    EXPECT_EQ(table("add", "rev=B").out, "1\n");
    ASSERT_EQ(table("set", "1 change 'first line' 'second line'").status, 0);
    EXPECT_EQ(table("get", "1 change").out, "first line\nsecond line\n");
    EXPECT_EQ(rows()[0]["values"]["change"], "bore enlarged");
    EXPECT_EQ(rows()[1]["values"]["change"], nlohmann::json({"first line", "second line"}));
    const auto tables = json("--defs site table list a.qdraw");
    EXPECT_EQ(tables[0]["table"], "REV");
    EXPECT_EQ(tables[0]["rows"], 2);
    EXPECT_EQ(tables[0]["fields"], nlohmann::json({"zone", "rev", "change"}));
}

TEST_F(TableVerbs, AValueIsEmptiedOnlyWhenThatIsSaid)
{
    addRows("A");
    EXPECT_EQ(table("set", "0 rev").status, 2);
    EXPECT_EQ(table("get", "0 rev").out, "A\n");
    ASSERT_EQ(table("set", "0 rev --clear").status, 0);
    EXPECT_EQ(table("get", "0 rev").out, "\n");
}

TEST_F(TableVerbs, RowsMoveHideAndGo)
{
    addRows("ABCD");
    ASSERT_EQ(table("move", "3 0").status, 0);
    EXPECT_EQ(order(), "DABC");
    ASSERT_EQ(table("hide", "1 2").status, 0);
    EXPECT_EQ(rows()[1]["hidden"], true);
    EXPECT_EQ(rows()[3]["hidden"], false);
    ASSERT_EQ(table("show", "--first 2").status, 0);
    EXPECT_EQ(rows()[1]["hidden"], false);
    EXPECT_EQ(rows()[2]["hidden"], true);
    ASSERT_EQ(table("delete", "0 2").status, 0);
    EXPECT_EQ(order(), "AC");
}

TEST_F(TableVerbs, CsvGoesInAndOutUnchanged)
{
    const std::string csv = "zone,rev,change\r\n"
                            "007,A,\"bore, \"\"H7\"\"\"\r\n"
                            ",B,\"first\nsecond\"\r\n"
                            "D4,C,Ø 32 泵\r\n";
    write("in.csv", csv);
    ASSERT_EQ(table("import", "in.csv").status, 0);
    EXPECT_EQ(table("export").out, csv);
    ASSERT_EQ(table("export", "-o out.csv").status, 0);
    EXPECT_EQ(read("out.csv"), csv);
    ASSERT_EQ(table("import", "in.csv").status, 0); // appends
    EXPECT_EQ(order(), "ABCABC");
    ASSERT_EQ(table("import", "in.csv --replace").status, 0);
    EXPECT_EQ(order(), "ABC");
}

TEST_F(TableVerbs, AnImportWithUnknownColumnsChangesNothing)
{
    addRows("A");
    const std::string before = read("a.qdraw");
    write("in.csv", "rev,chang,zon\nB,x,y\n");
    const Outcome refused = table("import", "in.csv --replace");
    EXPECT_EQ(refused.status, 3);
    EXPECT_NE(refused.err.find("no field \"chang\""), std::string::npos) << refused.err;
    EXPECT_NE(refused.err.find("no field \"zon\""), std::string::npos);
    EXPECT_NE(refused.err.find("zone, rev, change"), std::string::npos);
    EXPECT_EQ(read("a.qdraw"), before);
}

TEST_F(TableVerbs, RowsAndFieldsThatAreNotThereAreNamedWithWhatThereIs)
{
    EXPECT_NE(table("set", "0 rev A").err.find("has no rows"), std::string::npos);
    addRows("AB");
    const Outcome row = table("set", "2 rev A");
    EXPECT_EQ(row.status, 3);
    EXPECT_NE(row.err.find("a.qdraw, sheet SHEET1, B.REV: no row 2: rows are 0 to 1"),
              std::string::npos)
        << row.err;
    EXPECT_NE(table("set", "0 REV A").err.find("no field REV; it has zone, rev, change"),
              std::string::npos);
    EXPECT_NE(qelfmt("--defs site table rows a.qdraw BOM").err.find("there are B.REV"),
              std::string::npos);
    EXPECT_EQ(table("add", "rev").status, 2);
}

TEST_F(TableVerbs, ADryRunSavesNothing)
{
    addRows("A");
    const std::string before = read("a.qdraw");
    for (const char *verb : {"add", "delete", "hide"}) {
        const std::string rest = verb == std::string("add") ? "-n rev=B" : "-n 0";
        EXPECT_EQ(table(verb, rest).status, 0) << verb;
        EXPECT_EQ(read("a.qdraw"), before) << verb;
    }
    EXPECT_EQ(symbol("place", "-n 0 100 100").status, 0);
    EXPECT_EQ(read("a.qdraw"), before);
}

TEST_F(TableVerbs, AValueTooWideForItsColumnIsReportedWithItsCell)
{
    addRows("A");
    const Outcome set = table("set", "0 rev 'far too long for ten millimetres'");
    EXPECT_EQ(set.status, 0);
    EXPECT_NE(set.err.find("B.REV, row 0, rev: the text is "), std::string::npos) << set.err;
    EXPECT_NE(set.err.find("too wide for its cell, 10 wide"), std::string::npos) << set.err;
    const Outcome strict = table("set", "--strict 0 rev 'once more too long for the cell'");
    EXPECT_EQ(strict.status, 1);
    EXPECT_EQ(rows()[0]["values"]["rev"], "far too long for ten millimetres");
}

TEST_F(TableVerbs, SymbolsStandInTheZoneThatTheFramePrints)
{
    addRows("AB");
    // An A3 frame has 8 fields of 50 with corners of 60, and 6 of 50 with corners of 48.5. From the left
    // 100 is in the first field after the corner, "2"; from the top 297 - 240 = 57 in the second, "B".
    // The library counts from the right: (420 - 10 - 100) / 50 = 6, "7"; and from the bottom:
    // 240 / 49.5 = 4, "E".
    ASSERT_EQ(symbol("place", "0 100 240").status, 0);
    ASSERT_EQ(symbol("place", "0 399 20").status, 0); // the lower right corner: F8, and A1
    const auto symbols = json("--defs site symbol list a.qdraw REV");
    ASSERT_EQ(symbols.size(), 2u);
    EXPECT_EQ(symbols[0]["lines"], nlohmann::json({"A"}));
    EXPECT_EQ(symbols[0]["x"], 100.0);
    EXPECT_EQ(symbols[0]["zone"], "B2");
    EXPECT_EQ(symbols[0]["library_zone"], "E7");
    EXPECT_EQ(symbols[1]["zone"], "F8");
    EXPECT_EQ(symbols[1]["library_zone"], "A1");
}

TEST_F(TableVerbs, TheZoneColumnIsFilledFromTheSymbolsOfItsRow)
{
    addRows("AB");
    ASSERT_EQ(table("set", "1 zone typed").status, 0);
    ASSERT_EQ(symbol("place", "0 100 240").status, 0);
    ASSERT_EQ(symbol("place", "0 101 241").status, 0); // the same zone
    ASSERT_EQ(symbol("place", "0 399 20").status, 0);
    EXPECT_EQ(rows()[0]["values"]["zone"], "");
    ASSERT_EQ(symbol("zones").status, 0); // without --fill nothing changes
    EXPECT_EQ(rows()[0]["values"]["zone"], "");
    ASSERT_EQ(symbol("zones", "--fill").status, 0);
    EXPECT_EQ(rows()[0]["values"]["zone"], "B2, F8");
    EXPECT_EQ(rows()[1]["values"]["zone"], "typed"); // no symbols
    ASSERT_EQ(symbol("zones", "--fill --field change --library").status, 0);
    EXPECT_EQ(rows()[0]["values"]["change"], "E7, A1");
}

} // namespace
