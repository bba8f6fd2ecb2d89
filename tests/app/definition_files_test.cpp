// Definitions on the command line: texts and parts built, kept in order, compared, found and shown.
#include "shell.h"

#include <algorithm>

namespace {

class DefinitionFiles : public Shell {
protected:
    // A format F and a block B of 60 x 20 with these cells, as NAME.yaml.
    void writeText(const std::string &name, const std::string &cells,
                   const std::string &place = "{corner: bottom-right, inset: [10, 10]}") const
    {
        write(name, "units: mm\n"
                    "formats:\n"
                    "  F: {description: Sheets, required: [B], sheets: iso, sizes: [A3, A4]}\n"
                    "blocks:\n"
                    "  B:\n"
                    "    size: [60, 20]\n"
                    "    place: " +
                        place +
                        "\n"
                        "    cells:\n" +
                        cells);
    }

    static std::string cell(const std::string &id, int x)
    {
        return "      " + id + ": {cell: [" + std::to_string(x) + ", 0, 20, 20], value: " + id +
               "}\n";
    }

    // The ids of the fields of B, in stored order.
    std::string storedOrder(const std::string &part) const
    {
        std::string ids;
        std::istringstream lines(qelfmt("defs dump " + part).out);
        bool field = false;
        for (std::string line; std::getline(lines, line);) {
            if (line.find("kind: ") != std::string::npos)
                field = line.find("kind: field") != std::string::npos;
            else if (field && line.find(" id: ") != std::string::npos)
                ids += line.substr(line.find(" id: ") + 5);
        }
        return ids;
    }
};

// --- build ----------------------------------------------------------------------------------------

TEST_F(DefinitionFiles, ARebuiltTextKeepsTheStoredOrderAndAppendsWhatIsNew)
{
    writeText("d.yaml", cell("a", 0) + cell("b", 20) + cell("c", 40));
    ASSERT_EQ(qelfmt("defs build d.yaml -o site").status, 0);
    EXPECT_EQ(storedOrder("site/format_defs/d.prt"), "abc");
    ASSERT_EQ(shell("cp site/format_defs/d.prt old.prt").status, 0);

    // Cells moved about in the text, a new one among them, one gone.
    writeText("d.yaml", cell("new", 20) + cell("c", 40) + cell("a", 0));
    ASSERT_EQ(qelfmt("defs build d.yaml -o site --keep-order-of old.prt").status, 0);
    EXPECT_EQ(storedOrder("site/format_defs/d.prt"), "acnew");
    ASSERT_EQ(qelfmt("defs build d.yaml -o other").status, 0);
    EXPECT_EQ(storedOrder("other/format_defs/d.prt"), "newca");
}

// What a placed block shows stays in its cells, since it pairs with its definition by position.
TEST_F(DefinitionFiles, PlacedValuesStayInTheirCellsWithTheOrderKept)
{
    writeText("d.yaml", cell("a", 0) + cell("b", 20) + cell("c", 40));
    ASSERT_EQ(qelfmt("defs build d.yaml -o site").status, 0);
    ASSERT_EQ(qelfmt("stamp F/A3 --defs site -o a.qdraw").status, 0);
    ASSERT_EQ(qelfmt("field set a.qdraw b \"typed into b\" --defs site").status, 0);
    ASSERT_EQ(shell("cp site/format_defs/d.prt old.prt").status, 0);
    writeText("d.yaml", cell("c", 40) + cell("b", 20) + cell("a", 0));
    ASSERT_EQ(qelfmt("defs build d.yaml -o site --keep-order-of old.prt").status, 0);
    ASSERT_EQ(qelfmt("format update a.qdraw --defs site").status, 0);
    EXPECT_EQ(json("field list a.qdraw --defs site")["B"]["b"], "typed into b");
}

// --- dump -----------------------------------------------------------------------------------------

TEST_F(DefinitionFiles, APartComesBackFromEitherOfItsTextsByteForByte)
{
    buildIso();
    const std::string built = read("site/format_defs/iso.prt");
    for (const std::string form : {"", "--cells "}) {
        ASSERT_EQ(qelfmt("defs dump " + form + "site/format_defs/iso.prt -o iso.yaml").status, 0);
        const Outcome again = qelfmt("defs build iso.yaml -o again --quiet");
        ASSERT_EQ(again.status, 0) << again.err;
        EXPECT_TRUE(read("again/format_defs/iso.prt") == built) << "form: " << form;
    }
    EXPECT_EQ(shell("diff -r site/patterns again/patterns").status, 0);
    EXPECT_EQ(qelfmt("defs check iso.yaml").out, "");
}

// --- check ----------------------------------------------------------------------------------------

TEST_F(DefinitionFiles, FindingsAreLinesOrJsonAndGiveStatusOne)
{
    writeText("d.yaml", cell("a", 0) + "      b: {cell: [20, 0, 30, 20], font: fancy}\n");
    const Outcome text = qelfmt("defs check d.yaml");
    EXPECT_EQ(text.status, 1);
    EXPECT_EQ(text.out,
              "d.yaml:10:40: block B, field b: font: the font \"fancy\" is missing: texts would "
              "not be drawn as meant; write osifont\n"
              "d.yaml:9:7: block B: cells: do not tile the block: none covers [50, 0, 10, 20]; "
              "widen a cell, or add one with value: \"\"\n");
    const Outcome asJson = qelfmt("defs check d.yaml --json");
    EXPECT_EQ(asJson.status, 1);
    const auto findings = nlohmann::json::parse(asJson.out);
    ASSERT_EQ(findings.size(), 2u);
    EXPECT_EQ(findings[0]["file"], "d.yaml");
    EXPECT_EQ(findings[0]["line"], 10);
    EXPECT_EQ(findings[0]["column"], 40);
    EXPECT_EQ(findings[0]["where"], "block B, field b");
    EXPECT_EQ(findings[0]["key"], "font");
    EXPECT_EQ(findings[0]["text"], "the font \"fancy\" is missing: texts would not be drawn as "
                                   "meant; write osifont");
}

TEST_F(DefinitionFiles, WhatCannotBeReadIsAFindingTooAndAMissingFileIsNone)
{
    writeText("d.yaml", "      a: {cell: [0, 0, 60], label: A}\n");
    write("empty.yaml", "");
    const auto findings = nlohmann::json::parse(qelfmt("defs check d.yaml empty.yaml --json").out);
    ASSERT_EQ(findings.size(), 2u);
    EXPECT_EQ(findings[0]["key"], "cell");
    EXPECT_EQ(findings[0]["line"], 9);
    EXPECT_EQ(findings[1]["file"], "empty.yaml");
    EXPECT_FALSE(findings[1].contains("line"));
    EXPECT_EQ(qelfmt("defs check d.yaml empty.yaml").status, 1);
    const Outcome missing = qelfmt("defs check none.yaml");
    EXPECT_EQ(missing.status, 3);
    EXPECT_EQ(missing.err, "qelfmt: none.yaml: cannot be opened: check the path\n");
}

TEST_F(DefinitionFiles, APartIsCheckedWithItsPatterns)
{
    writeText("d.yaml", cell("a", 0) + cell("b", 20) + cell("c", 40));
    ASSERT_EQ(qelfmt("defs build d.yaml -o site").status, 0);
    EXPECT_EQ(qelfmt("defs check site/format_defs/d.prt").out, "");
    ASSERT_EQ(shell("rm -r site/patterns").status, 0);
    const Outcome lost = qelfmt("defs check site/format_defs/d.prt");
    EXPECT_EQ(lost.status, 1);
    EXPECT_NE(lost.out.find("block B: pattern_name: the pattern \"B-"), std::string::npos)
        << lost.out;
    EXPECT_NE(lost.out.find("format F, size A3: frame_name: the pattern \"F-A3-"),
              std::string::npos);
}

TEST_F(DefinitionFiles, ACheckAgainstAnOlderPartTellsWhatARolloutWouldDo)
{
    writeText("d.yaml", cell("a", 0) + cell("b", 20) + cell("c", 40));
    ASSERT_EQ(qelfmt("defs build d.yaml -o site").status, 0);
    EXPECT_EQ(qelfmt("defs check d.yaml --against site/format_defs/d.prt").status, 0);

    writeText("d.yaml", cell("c", 0) + cell("new", 20) + cell("a", 40),
              "{corner: bottom-right, inset: [10, 20]}");
    const Outcome rollout = qelfmt("defs check d.yaml --against site/format_defs/d.prt");
    EXPECT_EQ(rollout.status, 1);
    const std::string old = "site/format_defs/d.prt: block B";
    EXPECT_EQ(rollout.out,
              old + ", field b: removed\n" + old +
                  ", field c: REORDERED: position 3 -> 1; values of placed blocks would stand in "
                  "other cells: build with --keep-order-of\n" +
                  old + ", field new: added\n" + old +
                  ", field a: REORDERED: position 1 -> 3; values of placed blocks would stand in "
                  "other cells: build with --keep-order-of\n" +
                  old + ": moved: its places have changed\n");
    const auto asJson = nlohmann::json::parse(
        qelfmt("defs check d.yaml --against site/format_defs/d.prt --json").out);
    EXPECT_EQ(asJson.size(), 5u);
    EXPECT_EQ(asJson[0]["where"], "block B, field b");
}

// --- diff, list, where, show ------------------------------------------------------------------------

TEST_F(DefinitionFiles, ADifferenceIsToldSlotBySlot)
{
    writeText("a.yaml", cell("a", 0));
    ASSERT_EQ(qelfmt("defs build a.yaml -o site").status, 0);
    writeText("b.yaml", "      a: {cell: [0, 0, 20, 20], value: changed, size: 3.5}\n"
                        "      z: {cell: [20, 0, 40, 20], box: none}\n");
    EXPECT_EQ(qelfmt("defs diff site/format_defs/a.prt a.yaml").status, 0);
    const Outcome diff = qelfmt("defs diff site/format_defs/a.prt b.yaml");
    EXPECT_EQ(diff.status, 1);
    EXPECT_EQ(diff.out, "block B, field a: default_string: [a] -> [changed]\n"
                        "block B, field a: text_size: 2.5 -> 3.5\n"
                        "block B, field z: added\n");
    const auto asJson =
        nlohmann::json::parse(qelfmt("defs diff site/format_defs/a.prt b.yaml --json").out);
    EXPECT_EQ(asJson[1]["what"], "text_size: 2.5 -> 3.5");
}

TEST_F(DefinitionFiles, FormatsAreListedWithTheirSizes)
{
    writeText("d.yaml", cell("a", 0));
    ASSERT_EQ(qelfmt("defs build d.yaml -o site").status, 0);
    EXPECT_EQ(qelfmt("defs list --defs site").out, "FORMAT  UNITS  SIZES  DESCRIPTION\n"
                                                   "F       mm     A3 A4  Sheets\n");
    const auto listed = json("defs list --defs site");
    EXPECT_EQ(listed[0]["id"], "F");
    EXPECT_EQ(listed[0]["sizes"], (std::vector<std::string>{"A3", "A4"}));
}

TEST_F(DefinitionFiles, EveryPlaceOfADefinitionIsToldAndWhichOneCounts)
{
    writeText("a.yaml", cell("first", 0));
    writeText("b.yaml", cell("second", 0));
    ASSERT_EQ(qelfmt("defs build a.yaml -o site").status, 0);
    ASSERT_EQ(qelfmt("defs build b.yaml -o more").status, 0);
    write("more/format_defs/c.prt", "garbage");
    const Outcome found = qelfmt("defs where B --defs site --defs more");
    EXPECT_EQ(found.status, 0);
    const auto lines = std::count(found.out.begin(), found.out.end(), '\n');
    EXPECT_EQ(lines, 5) << found.out; // two folders, a file that is no part, two places
    EXPECT_NE(found.out.find("a.prt: block B: used\n"), std::string::npos) << found.out;
    EXPECT_NE(found.out.find("b.prt: block B: hidden by the first one\n"), std::string::npos);
    EXPECT_NE(found.out.find("c.prt"), std::string::npos);

    const Outcome nowhere = qelfmt("defs where NONE --defs site");
    EXPECT_EQ(nowhere.status, 1);
    EXPECT_EQ(nowhere.err,
              "qelfmt: NONE is in none of the folders above: see 'qelfmt defs list'\n");
}

TEST_F(DefinitionFiles, ADefinitionIsShownSlotBySlotAndCanBeBuiltAgain)
{
    writeText("d.yaml", cell("a", 0));
    ASSERT_EQ(qelfmt("defs build d.yaml -o site").status, 0);
    const Outcome shown = qelfmt("defs show B --defs site");
    EXPECT_EQ(shown.status, 0);
    EXPECT_NE(shown.out.find("- kind: block\n  id: B\n"), std::string::npos) << shown.out;
    EXPECT_NE(shown.out.find("default_string: [a]\n"), std::string::npos);
    write("shown.yaml", shown.out);
    EXPECT_EQ(qelfmt("defs build shown.yaml -o again").status, 0);
    EXPECT_EQ(qelfmt("defs show NONE --defs site").status, 3);
}

TEST_F(DefinitionFiles, AnUnknownSubcommandIsNamed)
{
    const Outcome wrong = qelfmt("defs chekc d.yaml");
    EXPECT_EQ(wrong.status, 2);
    EXPECT_EQ(wrong.err,
              "qelfmt: \"chekc\" is no verb of qelfmt defs: use one of build, list, dump, "
              "check, diff, schema, where, show\n");
    EXPECT_EQ(
        qelfmt("--defs site defss list").err.rfind("qelfmt: \"defss\" is no verb of qelfmt", 0),
        0u);
}

TEST_F(DefinitionFiles, OneOfAKindIsNotMany)
{
    writeText("d.yaml", cell("a", 0));
    EXPECT_EQ(qelfmt("defs build d.yaml -o site").err,
              "site/format_defs/d.prt: 1 format, 1 block, 3 patterns\n");
}

// --- init -----------------------------------------------------------------------------------------

TEST_F(DefinitionFiles, ANewSiteIsBuiltCheckedAndStamped)
{
    ASSERT_EQ(qelfmt("init mine").status, 0);
    EXPECT_EQ(qelfmt("defs check mine/own.yaml").out, "");
    ASSERT_EQ(qelfmt("defs build mine/own.yaml -o mine").status, 0);
    ASSERT_EQ(qelfmt("stamp ACME/A3 --defs mine -o first.pdf").status, 0);
    EXPECT_NE(shell("pdftotext first.pdf -").out.find("Acme Ltd"), std::string::npos);
    EXPECT_TRUE(exists("mine/qelfmt.schema.json"));

    const Outcome again = qelfmt("init mine");
    EXPECT_EQ(again.status, 3);
    EXPECT_EQ(again.err, "qelfmt: mine: is not empty: name a new folder\n");
    EXPECT_EQ(qelfmt("init other --dry-run").status, 0);
    EXPECT_FALSE(exists("other"));
}

} // namespace
