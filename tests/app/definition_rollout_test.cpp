// What a rollout does to placed blocks: told before anybody rolls out.
#include "definition_files.h"

namespace {

class Rollout : public DefinitionFiles {
protected:
    void SetUp() override
    {
        DefinitionFiles::SetUp();
        writeText("d.yaml", cell("a", 0) + cell("b", 20) + cell("c", 40));
        ASSERT_EQ(qelfmt("defs build d.yaml -o site --quiet").status, 0);
        ASSERT_EQ(shell("cp site/format_defs/d.prt old.prt").status, 0);
    }

    // What the check says of d.yaml, or of the part, against old.prt alone.
    std::string against(const std::string &file = "d.yaml") const
    {
        return qelfmt("defs check " + file + " --against old.prt").out;
    }

    // Built anew as it is told to be.
    std::string againstBuilt() const
    {
        EXPECT_EQ(qelfmt("defs build d.yaml -o site --quiet --keep-order-of old.prt").status, 0);
        return against("site/format_defs/d.prt");
    }

    // A block with no cells and these tables, whose columns are 20 wide.
    void writeTables(const std::string &tables) const
    {
        writeText("d.yaml", "      a: {cell: [0, 0, 60, 20], value: a}\n    tables:\n" + tables);
    }
    static std::string table(const std::string &id, const std::string &columns, int y = 20)
    {
        return "      " + id + ": {at: [0, " + std::to_string(y) +
               "], direction: down, columns: {" + columns + "}}\n";
    }
};

TEST_F(Rollout, OfTheSameTextChangesNothing)
{
    EXPECT_EQ(against(), "");
    EXPECT_EQ(qelfmt("defs check d.yaml --against old.prt").status, 0);
}

// The update deletes b before it pairs: a and c find themselves.
TEST_F(Rollout, AFieldThatIsGoneMiswiresNoOther)
{
    writeText("d.yaml", cell("a", 0) + "      c: {cell: [20, 0, 40, 20], value: c}\n");
    EXPECT_EQ(against(), "d.yaml:6:5: block B, field b: removed with its value\n"
                         "d.yaml:10:10: block B, field c: moved: location_x: 40 -> 20\n");
    EXPECT_EQ(qelfmt("defs check d.yaml --against old.prt").status, 1);
}

// b -> weight where b stood: the update deletes b and pairs c with weight.
TEST_F(Rollout, AFieldRenamedInPlaceMiswiresThoseBehindIt)
{
    writeText("d.yaml", cell("a", 0) + cell("weight", 20) + cell("c", 40));
    EXPECT_EQ(against(),
              "d.yaml:6:5: block B, field b: removed with its value\n"
              "d.yaml:10:15: block B, field weight: added\n"
              "d.yaml:11:10: block B, field c: REORDERED: its values on placed blocks would stand "
              "in the cell weight; the new field weight stands before it: put new fields behind "
              "all others, or build with --keep-order-of old.prt\n");
    EXPECT_EQ(againstBuilt(), "site/format_defs/d.prt: block B, field b: removed with its value\n"
                              "site/format_defs/d.prt: block B, field weight: added\n");
}

TEST_F(Rollout, WhatTheCheckForetellsTheLibraryDoes)
{
    ASSERT_EQ(qelfmt("stamp F/A3 --defs site -o a.qdraw").status, 0);
    ASSERT_EQ(qelfmt("field set a.qdraw c \"typed into c\" --defs site").status, 0);
    writeText("d.yaml", cell("a", 0) + cell("weight", 20) + cell("c", 40));
    ASSERT_NE(againstBuilt().find("weight: added"), std::string::npos);
    ASSERT_EQ(qelfmt("format update a.qdraw --force --defs site").status, 0);
    const auto values = json("field list a.qdraw --defs site")["B"];
    EXPECT_EQ(values["c"], "typed into c");
    EXPECT_EQ(values["weight"], "weight");
    EXPECT_FALSE(values.contains("b"));
}

TEST_F(Rollout, AnotherOrderIsToldWithItsCureAndTheCureHelps)
{
    writeText("d.yaml", cell("c", 40) + cell("b", 20) + cell("a", 0));
    const std::string cure = "the fields have changed their order: build with --keep-order-of "
                             "old.prt\n";
    EXPECT_EQ(against(), "d.yaml:9:10: block B, field c: REORDERED: its values on placed blocks "
                         "would stand in the cell a; " +
                             cure +
                             "d.yaml:11:10: block B, field a: REORDERED: its values on placed "
                             "blocks would stand in the cell c; " +
                             cure);
    EXPECT_EQ(againstBuilt(), "");
}

TEST_F(Rollout, TwoCellsThatChangePlacesHaveMoved)
{
    writeText("d.yaml", cell("a", 20) + cell("b", 0) + cell("c", 40));
    EXPECT_EQ(against(), "d.yaml:9:10: block B, field a: moved: location_x: 0 -> 20\n"
                         "d.yaml:10:10: block B, field b: moved: location_x: 20 -> 0\n");
}

TEST_F(Rollout, AnotherCornerOfTheCellIsAMoveToo)
{
    writeText("d.yaml", "      a: {cell: [0, 0, 20, 20], value: a, at: top-left}\n" +
                            cell("b", 20) + cell("c", 40));
    EXPECT_EQ(against(),
              "d.yaml:9:10: block B, field a: moved: location_y: 0 -> 20, text_site: 7 -> 1\n");
}

TEST_F(Rollout, AnotherPlaceOfTheBlockIsTold)
{
    const std::string cells = cell("a", 0) + cell("b", 20) + cell("c", 40);
    writeText("d.yaml", cells, "{corner: bottom-right, inset: [10, 20]}");
    EXPECT_EQ(against(),
              "d.yaml:7:12: block B, places for F: moved: the block would stand elsewhere\n");
}

TEST_F(Rollout, SizesAndBlocksThatComeAndGoAreTold)
{
    write("d.yaml", "units: mm\n"
                    "formats:\n"
                    "  F: {description: Sheets, sheets: iso, sizes: [A3, A2]}\n"
                    "blocks:\n"
                    "  C:\n"
                    "    size: [60, 20]\n"
                    "    place: {corner: bottom-right, inset: [10, 10]}\n"
                    "    cells: {a: {cell: [0, 0, 60, 20]}}\n");
    EXPECT_EQ(against(),
              "d.yaml:3:6: format F, size A4: removed: sheets of that size keep their frame and "
              "can take another size only\n"
              "d.yaml:3:53: format F, size A2: added\n"
              "old.prt: block B: removed: placed ones keep their own copy\n"
              "d.yaml:6:5: block C: added\n");
}

TEST_F(Rollout, ColumnsPairByIdWhateverTheirOrder)
{
    writeTables(table("T", "x: {width: 20}, y: {width: 20}"));
    ASSERT_EQ(qelfmt("defs build d.yaml -o site --quiet").status, 0);
    ASSERT_EQ(shell("cp site/format_defs/d.prt old.prt").status, 0);
    writeTables(table("T", "y: {width: 20}, x: {width: 20}, z: {width: 20}"));
    EXPECT_EQ(against(),
              "d.yaml:11:54: block B, table T, field y: moved: location_x: 20 -> 0\n"
              "d.yaml:11:54: block B, table T, field y: another order of columns: values stay in "
              "theirs, which pair by id\n"
              "d.yaml:11:70: block B, table T, field x: moved: location_x: 0 -> 20\n"
              "d.yaml:11:70: block B, table T, field x: another order of columns: values stay in "
              "theirs, which pair by id\n"
              "d.yaml:11:86: block B, table T, field z: added to every row\n");
    EXPECT_EQ(againstBuilt(),
              "site/format_defs/d.prt: block B, table T, field x: moved: location_x: 0 -> 20\n"
              "site/format_defs/d.prt: block B, table T, field y: moved: location_x: 20 -> 0\n"
              "site/format_defs/d.prt: block B, table T, field z: added to every row\n");
}

// Tables pair by position, and none is deleted before.
TEST_F(Rollout, TablesBehindOneThatIsGoneAreMiswiredAndTheStoredOrderIsNoCure)
{
    writeTables(table("S", "x: {width: 20}") + table("T", "x: {width: 20}", 10));
    ASSERT_EQ(qelfmt("defs build d.yaml -o site --quiet").status, 0);
    ASSERT_EQ(shell("cp site/format_defs/d.prt old.prt").status, 0);

    writeTables(table("T", "x: {width: 20}", 10) + table("S", "x: {width: 20}"));
    const std::string swapped = against();
    EXPECT_NE(swapped.find("table T: REORDERED: table 2 -> 1; its rows on placed blocks would "
                           "stand in the table S: build with --keep-order-of old.prt\n"),
              std::string::npos)
        << swapped;
    EXPECT_EQ(againstBuilt(), "");

    writeTables(table("T", "x: {width: 20}", 10));
    EXPECT_EQ(againstBuilt(),
              "site/format_defs/d.prt: block B, table S: removed: 'qelfmt format update' takes it "
              "and its rows off placed blocks\n"
              "site/format_defs/d.prt: block B, table T: REORDERED: table 2 -> 1; its rows on "
              "placed blocks would belong to no table: keep the table that is gone, or let "
              "'qelfmt format update' go by the ids\n");
}

TEST_F(Rollout, WholeBlocksKeepTheirOrderToo)
{
    const auto blocks = [&](const std::vector<std::string> &ids) {
        std::string text = "units: mm\nformats: {F: {sheets: iso, sizes: [A3]}}\nblocks:\n";
        for (const std::string &id : ids)
            text += "  " + id + ": {size: [60, 20], place: {corner: bottom-right, inset: [10, " +
                    "10]}, cells: {a: {cell: [0, 0, 60, 20]}}}\n";
        write("d.yaml", text);
    };
    blocks({"X", "Y"});
    ASSERT_EQ(qelfmt("defs build d.yaml -o site --quiet").status, 0);
    ASSERT_EQ(shell("cp site/format_defs/d.prt old.prt").status, 0);
    blocks({"NEW", "Y", "X"});
    EXPECT_EQ(againstBuilt(), "site/format_defs/d.prt: block NEW: added\n");
    const std::string text = qelfmt("defs dump site/format_defs/d.prt").out;
    EXPECT_LT(text.find("  id: X\n"), text.find("  id: Y\n"));
    EXPECT_LT(text.find("  id: Y\n"), text.find("  id: NEW\n"));
}

TEST_F(Rollout, ATextIsToBeBuiltBeforeItIsComparedWith)
{
    for (const std::string verb :
         {"defs check d.yaml --against ", "defs build d.yaml -o x -n --keep-order-of "}) {
        const std::string option =
            verb.find("against") != std::string::npos ? "--against" : "--keep-order-of";
        const Outcome text = qelfmt(verb + "d.yaml");
        EXPECT_EQ(text.status, 3);
        EXPECT_EQ(text.err,
                  "qelfmt: d.yaml: " + option +
                      " needs a definition part, as it is on drawings: build the text first with "
                      "'qelfmt defs build d.yaml -o FOLDER' and name FOLDER/format_defs/d.prt\n");
        const Outcome none = qelfmt(verb + "none.prt");
        EXPECT_EQ(none.status, 3);
        EXPECT_EQ(none.err, "qelfmt: none.prt: cannot be opened: check the path\n");
    }
}

TEST_F(Rollout, TheJsonNamesTheNewPlace)
{
    writeText("d.yaml", cell("a", 0) + cell("b", 20) + cell("c", 40) + cell("d", 60));
    const auto changes =
        nlohmann::json::parse(qelfmt("defs check d.yaml --against old.prt --json").out);
    const auto &added = changes.back();
    EXPECT_EQ(added["file"], "d.yaml");
    EXPECT_EQ(added["line"], 12);
    EXPECT_EQ(added["where"], "block B, field d");
    EXPECT_EQ(added["text"], "added");
}

} // namespace
