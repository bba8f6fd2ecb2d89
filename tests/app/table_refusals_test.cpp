// What the verbs on rows and symbols refuse, and what they say when they delete or pass over something.
#include "table_verbs.h"

#include <sqlite3.h>

namespace {

class TableRefusals : public TableVerbs {
protected:
    // Also the tables C.REV, of the same name as B's, and C.PLAIN, whose rows have no symbol and no column
    // for zones; and a format without zones or tables.
    void SetUp() override
    {
        Shell::SetUp();
        write("d.yaml", "units: mm\n"
                        "formats:\n"
                        "  F: {required: [B, C], sheets: iso, sizes: [A3]}\n"
                        "  BARE:\n"
                        "    required: [E]\n"
                        "    sizes:\n"
                        "      - X: {sheet: [420, 297], frame: []}\n"
                        "  UNZONED:\n"
                        "    required: [B]\n"
                        "    sizes:\n"
                        "      - X: {sheet: [420, 297], frame: []}\n"
                        "blocks:\n"
                        "  B:\n"
                        "    size: [100, 60]\n"
                        "    place: {at: [30, 20]}\n"
                        "    cells: {}\n"
                        "    tables:\n"
                        "      REV:\n"
                        "        at: [0, 60]\n"
                        "        direction: down\n"
                        "        row: 5\n"
                        "        symbol: {type: circle, lines: [rev]}\n"
                        "        columns:\n"
                        "          zone: {width: 15, zone: yes}\n"
                        "          rev: {width: 10, share: part REV_, share-rows: numbered}\n"
                        "          change: {width: 40, several-lines: yes}\n"
                        "  C:\n"
                        "    size: [100, 60]\n"
                        "    place: {at: [150, 20]}\n"
                        "    cells: {}\n"
                        "    tables:\n"
                        "      REV:\n"
                        "        at: [0, 60]\n"
                        "        direction: down\n"
                        "        row: 5\n"
                        "        columns:\n"
                        "          rev: {width: 10}\n"
                        "      PLAIN:\n"
                        "        at: [50, 60]\n"
                        "        direction: down\n"
                        "        row: 5\n"
                        "        columns:\n"
                        "          rev: {width: 10}\n"
                        "  E:\n"
                        "    size: [100, 60]\n"
                        "    place: {at: [30, 20]}\n"
                        "    cells:\n"
                        "      name: {cell: [0, 0, 100, 10]}\n");
        const Outcome built = qelfmt("defs build d.yaml -o site --quiet");
        ASSERT_EQ(built.status, 0) << built.err;
        const Outcome stamped = qelfmt("stamp F/A3 --defs site -o a.qdraw");
        ASSERT_EQ(stamped.status, 0) << stamped.err;
    }
    Outcome onB(const std::string &verb, const std::string &rest = "") const
    {
        return qelfmt("--defs site " + verb + " a.qdraw B.REV " + rest);
    }
    // As other programs find them in the drawing: "TITLE=VALUE " each.
    std::string partAttributes(const std::string &prefix) const
    {
        sqlite3 *database = nullptr;
        sqlite3_stmt *statement = nullptr;
        std::string all;
        const std::string query =
            "SELECT title, value FROM attribute WHERE object = 0 AND title LIKE '" + prefix +
            "%' ORDER BY title";
        if (sqlite3_open_v2((folder / "a.qdraw").c_str(), &database, SQLITE_OPEN_READONLY,
                            nullptr) == SQLITE_OK &&
            sqlite3_prepare_v2(database, query.c_str(), -1, &statement, nullptr) == SQLITE_OK)
            while (sqlite3_step(statement) == SQLITE_ROW)
                for (const int column : {0, 1})
                    all += reinterpret_cast<const char *>(sqlite3_column_text(statement, column)) +
                           std::string(column == 0 ? "=" : " ");
        sqlite3_finalize(statement);
        sqlite3_close(database);
        return all;
    }
    // Status, part of the message, and that the drawing is as it was.
    void refused(const std::string &line, int status, const std::string &message) const
    {
        const std::string before = read("a.qdraw");
        const Outcome outcome = qelfmt("--defs site " + line);
        EXPECT_EQ(outcome.status, status) << line;
        EXPECT_NE(outcome.err.find(message), std::string::npos) << line << "\n" << outcome.err;
        EXPECT_LT(outcome.err.size(), 400u) << outcome.err;
        EXPECT_EQ(read("a.qdraw"), before) << line;
    }
};

// --- tables -------------------------------------------------------------------------------------

TEST_F(TableRefusals, ATableIsNamedSoThatThereIsOne)
{
    refused("table rows a.qdraw REV", 3, "which table? Write one of B.REV, C.REV, C.PLAIN");
    refused("table rows a.qdraw ''", 3, "which table? Write one of B.REV, C.REV, C.PLAIN");
    EXPECT_EQ(qelfmt("--defs site table rows a.qdraw PLAIN").status, 0);
    ASSERT_EQ(qelfmt("stamp BARE/X --defs site -o bare.qdraw").status, 0);
    const Outcome none = qelfmt("--defs site table rows bare.qdraw REV");
    EXPECT_EQ(none.status, 3);
    EXPECT_NE(none.err.find("has no table: add a block with one"), std::string::npos) << none.err;
}

TEST_F(TableRefusals, RowsToHideAreNamedOrCounted)
{
    ASSERT_EQ(onB("table add", "rev=A").status, 0);
    for (const char *verb : {"hide", "show"}) {
        const std::string line = "table " + std::string(verb) + " a.qdraw B.REV";
        refused(line, 2, "give rows, or --first COUNT");
        refused(line + " 0 --first 1", 2, "give rows, or --first COUNT");
    }
}

TEST_F(TableRefusals, AFieldIsGivenOnceAndByItsName)
{
    refused("table add a.qdraw B.REV rev=A rev=B", 2, "rev is given twice: write each field once");
    refused("table add a.qdraw B.REV =bar", 2, "=bar: write FIELD=VALUE");
    refused("table add a.qdraw B.REV rev=A bar=", 3, "no field bar; it has zone, rev, change");
    EXPECT_NE(onB("table set", "0 rev A").err.find("has no rows"), std::string::npos);
}

TEST_F(TableRefusals, ACarriageReturnIsNoText)
{
    ASSERT_EQ(onB("table add", "rev=A").status, 0);
    refused("table set a.qdraw B.REV 0 change \"$(printf 'a\\rb')\"", 3,
            "B.REV, row 0, change: a carriage return in the value");
    refused("table add a.qdraw B.REV \"change=$(printf 'a\\rb')\"", 3,
            "B.REV, row 1, change: a carriage return in the value");
}

TEST_F(TableRefusals, ALockedFieldOfARowIsSetOnlyByForce)
{
    ASSERT_EQ(onB("table add", "rev=A zone=typed").status, 0);
    ASSERT_EQ(onB("symbol place", "0 100 240").status, 0);
    for (const char *field : {"rev", "zone"}) {
        const Outcome locked = shell(std::string(QELFMT_LOCK_ROW) + " a.qdraw B REV 0 " + field);
        ASSERT_EQ(locked.status, 0) << locked.err;
    }
    refused("table set a.qdraw B.REV 0 rev B", 3,
            "B.REV, row 0, rev: is locked: give --force to set it");
    refused("symbol zones a.qdraw B.REV --fill", 3,
            "B.REV, row 0, zone: is locked: give --force to set it");
    ASSERT_EQ(onB("table set", "0 rev B --force").status, 0);
    ASSERT_EQ(onB("symbol zones", "--fill --force").status, 0);
    EXPECT_EQ(onB("table get", "0 rev").out, "B\n");
    EXPECT_EQ(onB("table get", "0 zone").out, "B2\n");
}

TEST_F(TableRefusals, SharedAttributesOfMovedRowsAreWrittenAnewWhenThatIsSaid)
{
    for (const char *rev : {"rev=A", "rev=B", "rev=C"}) ASSERT_EQ(onB("table add", rev).status, 0);
    ASSERT_EQ(onB("table move", "2 0").status, 0);
    EXPECT_EQ(partAttributes("REV_"), "REV_0=A REV_1=B REV_2=C "); // the rows are C, A, B
    ASSERT_EQ(onB("table move", "0 1 --share").status, 0);
    EXPECT_EQ(partAttributes("REV_"), "REV_0=A REV_1=C REV_2=B ");
    ASSERT_EQ(onB("table delete", "0 --share").status, 0);
    EXPECT_EQ(partAttributes("REV_"), "REV_0=C REV_1=B REV_2=B "); // the third stays: it is shared
}

// --- CSV ----------------------------------------------------------------------------------------

TEST_F(TableRefusals, ACsvFileThatCannotBeReadIsNamed)
{
    refused("table import a.qdraw B.REV none.csv", 3, "none.csv: cannot be opened: check the path");
    refused("table import a.qdraw B.REV " + folder.string(), 3,
            folder.string() + ": is a folder: name a file in it");
    write("zero.csv", std::string("rev\nA\nB\0C\n", 10));
    refused("table import a.qdraw B.REV zero.csv", 3, "zero.csv, line 3: a zero byte");
    write("twice.csv", "rev,change,rev\nA,x,B\n");
    refused("table import a.qdraw B.REV twice.csv", 3,
            "twice.csv, line 1: two columns \"rev\": remove one");
}

TEST_F(TableRefusals, SomeColumnsInAnotherOrderFillThose)
{
    write("in.csv", "change,rev\nbore,A\n\"hole\nslot\",B\n");
    ASSERT_EQ(onB("table import", "in.csv").status, 0);
    EXPECT_EQ(onB("table export").out, "zone,rev,change\r\n,A,bore\r\n,B,\"hole\nslot\"\r\n");
}

TEST_F(TableRefusals, HiddenRowsAreExportedUnlessOnlyVisibleOnesAreWanted)
{
    for (const char *rev : {"rev=A", "rev=B"}) ASSERT_EQ(onB("table add", rev).status, 0);
    ASSERT_EQ(onB("table hide", "0").status, 0);
    EXPECT_EQ(onB("table export").out, "zone,rev,change\r\n,A,\r\n,B,\r\n");
    EXPECT_EQ(onB("table export", "--visible").out, "zone,rev,change\r\n,B,\r\n");
}

TEST_F(TableRefusals, SymbolsThatGoWithReplacedRowsAreCounted)
{
    ASSERT_EQ(onB("table add", "rev=A").status, 0);
    ASSERT_EQ(onB("symbol place", "0 100 100").status, 0);
    ASSERT_EQ(onB("symbol place", "0 200 100").status, 0);
    write("in.csv", "rev\nB\n");
    const Outcome appended = onB("table import", "in.csv");
    EXPECT_EQ(appended.err.find("symbol"), std::string::npos) << appended.err;
    const Outcome replaced = onB("table import", "in.csv --replace");
    ASSERT_EQ(replaced.status, 0) << replaced.err;
    EXPECT_NE(replaced.err.find("B.REV: 2 symbols were deleted with the rows that were replaced"),
              std::string::npos)
        << replaced.err;
    const Outcome none = onB("table import", "in.csv --replace");
    EXPECT_EQ(none.err.find("symbol"), std::string::npos) << none.err;
    const auto json = this->json("--defs site table import a.qdraw B.REV in.csv --replace");
    EXPECT_EQ(json["symbols_deleted"], 0);
}

// --- symbols ------------------------------------------------------------------------------------

TEST_F(TableRefusals, ASymbolNeedsADefinitionARowAndAPointOnTheSheet)
{
    ASSERT_EQ(onB("table add", "rev=A").status, 0);
    ASSERT_EQ(qelfmt("--defs site table add a.qdraw PLAIN rev=A").status, 0);
    refused("symbol place a.qdraw PLAIN 0 100 100", 3,
            "C.PLAIN: its rows have no symbol: give the table PLAIN of the definition a key "
            "'symbol:'");
    refused("symbol place a.qdraw B.REV 1 100 100", 3, "no row 1: rows are 0 to 0");
    refused("symbol place a.qdraw B.REV -1 100 100", 3, "no row -1: rows are 0 to 0");
    refused("symbol list a.qdraw B.REV -1", 2, "rows are counted from 0");
    for (const char *point : {"421 100", "100 298", "-1 100", "100 -0.5", "nan 1", "1 inf"})
        refused("symbol place a.qdraw B.REV 0 " + std::string(point), 3,
                "is off the sheet: it is 420 wide and 297 high");
    EXPECT_EQ(onB("symbol place", "0 420 297").status, 0); // the very corner
}

TEST_F(TableRefusals, ZonesNeedAColumnAndASheetThatHasThem)
{
    ASSERT_EQ(onB("table add", "rev=A").status, 0);
    ASSERT_EQ(onB("symbol place", "0 100 100").status, 0);
    refused("symbol zones a.qdraw C.REV --fill", 3,
            "C.REV: no field is marked as a zone field: name one with --field, of rev");
    ASSERT_EQ(qelfmt("stamp UNZONED/X --defs site -o u.qdraw").status, 0);
    ASSERT_EQ(qelfmt("--defs site table add u.qdraw REV rev=A").status, 0);
    ASSERT_EQ(qelfmt("--defs site symbol place u.qdraw REV 0 100 100").status, 0);
    const Outcome zones = qelfmt("--defs site symbol zones u.qdraw REV");
    EXPECT_EQ(zones.status, 3);
    EXPECT_NE(zones.err.find("B.REV: the format's sheet size has no zones"), std::string::npos)
        << zones.err;
}

} // namespace
