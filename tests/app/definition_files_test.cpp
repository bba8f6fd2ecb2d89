// Definitions on the command line: texts and parts built, kept in order, compared, found and shown.
#include "definition_files.h"

#include <algorithm>

namespace {

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

TEST_F(DefinitionFiles, TwoTextsThatWouldBecomeOnePartAreRefusedBeforeAnythingIsWritten)
{
    writeText("a/x.yaml", cell("a", 0));
    writeText("b/x.yaml", cell("b", 0));
    const Outcome both = qelfmt("defs build a/x.yaml b/x.yaml -o out");
    EXPECT_EQ(both.status, 3);
    EXPECT_EQ(both.err, "qelfmt: a/x.yaml and b/x.yaml would both become x.prt: rename one of "
                        "them, or build them into different folders\n");
    EXPECT_FALSE(exists("out"));
}

TEST_F(DefinitionFiles, AnotherPartOfTheFolderWithTheSameIdsIsWarnedOf)
{
    writeText("b.yaml", cell("first", 0));
    writeText("a.yaml", cell("second", 0));
    ASSERT_EQ(qelfmt("defs build b.yaml -o site --quiet").err, "");
    ASSERT_EQ(qelfmt("defs build b.yaml -o site --quiet").err, ""); // in its own place
    const Outcome rival = qelfmt("defs build a.yaml -o site --quiet");
    EXPECT_EQ(rival.status, 0);
    EXPECT_EQ(rival.err, "qelfmt: warning: site/format_defs/a.prt and site/format_defs/b.prt both "
                         "define format F, block B: the first one counts; remove one of them\n");
    EXPECT_NE(qelfmt("defs where B --defs site").out.find("a.prt: block B: used\n"),
              std::string::npos);
}

TEST_F(DefinitionFiles, ADefinitionWithoutAnIdIsNotBuilt)
{
    write("d.yaml", "records:\n- kind: format\n  description: no id\n");
    const Outcome built = qelfmt("defs build d.yaml -o site2");
    EXPECT_EQ(built.status, 3);
    EXPECT_EQ(built.err, "d.yaml:2:3: format: id: is missing: nothing of its site could be loaded; "
                         "give it one\n");
    EXPECT_FALSE(exists("site2"));
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

// The patterns of a site may lie in a folder of their own.
TEST_F(DefinitionFiles, PatternsAreFoundAlongTheSearchDirectories)
{
    writeText("d.yaml", cell("a", 0) + cell("b", 20) + cell("c", 40));
    ASSERT_EQ(qelfmt("defs build d.yaml -o site --quiet").status, 0);
    const std::string whole = qelfmt("defs dump --cells site/format_defs/d.prt").out;
    ASSERT_EQ(shell("cp site/format_defs/d.prt lone.prt").status, 0);
    const Outcome found = qelfmt("defs dump --cells lone.prt --defs site");
    EXPECT_EQ(found.out, whole);
    EXPECT_EQ(found.err, "");
    const Outcome lost = qelfmt("defs dump --cells lone.prt --defs more");
    EXPECT_EQ(lost.status, 3); // no such folder
    ASSERT_EQ(shell("mkdir -p more/format_defs").status, 0);
    EXPECT_NE(qelfmt("defs dump --cells lone.prt --defs more").err.find("no such pattern"),
              std::string::npos);
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

TEST_F(DefinitionFiles, WhatWasFoundIsToldBeforeAFileThatCannotBeRead)
{
    writeText("d.yaml", cell("a", 0));
    write("bad.prt", "garbage");
    const std::string gap = "do not tile the block";
    for (const std::string files : {"bad.prt d.yaml", "d.yaml bad.prt", "none.yaml d.yaml"}) {
        const Outcome both = qelfmt("defs check " + files);
        EXPECT_EQ(both.status, 3) << files;
        EXPECT_NE(both.out.find(gap), std::string::npos) << files;
        EXPECT_NE(both.err.find(files.starts_with("none") ? "none.yaml: " : "bad.prt"),
                  std::string::npos)
            << both.err;
    }
}

TEST_F(DefinitionFiles, AWrongFontOfAStyleIsToldOnce)
{
    write("d.yaml", "units: mm\n"
                    "styles: {value: {font: fancy}}\n"
                    "formats: {F: {sheets: iso, sizes: [A3]}}\n"
                    "blocks:\n"
                    "  B:\n"
                    "    size: [60, 20]\n"
                    "    place: {corner: bottom-right, inset: [10, 10]}\n"
                    "    cells:\n" +
                        cell("a", 0) + cell("b", 20) + cell("c", 40));
    const std::string found = qelfmt("defs check d.yaml").out;
    EXPECT_EQ(std::count(found.begin(), found.end(), '\n'), 1) << found;
    EXPECT_TRUE(found.starts_with("d.yaml:2:24: block B, field a: font: ")) << found;
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

TEST_F(DefinitionFiles, AnotherOrderIsADifference)
{
    writeText("a.yaml", cell("a", 0) + cell("b", 20) + cell("c", 40));
    writeText("b.yaml", cell("c", 40) + cell("b", 20) + cell("a", 0));
    // Behind the places of the block, which are its first record.
    EXPECT_EQ(qelfmt("defs diff a.yaml b.yaml").out, "block B, field c: position 4 -> 2\n"
                                                     "block B, field a: position 2 -> 4\n");
    // What is added in the middle moves nothing.
    writeText("b.yaml", cell("a", 0) + "      new: {cell: [0, 0, 9, 9], box: none}\n" +
                            cell("b", 20) + cell("c", 40));
    EXPECT_EQ(qelfmt("defs diff a.yaml b.yaml").out, "block B, field new: added\n");
}

TEST_F(DefinitionFiles, WhatNoClassKnowsAndWhatIsNotStoredIsADifference)
{
    const std::string format = "records:\n- kind: format\n  id: F\n";
    write("a.yaml", "units: mm\n" + format + "  units: 1\n");
    write("b.yaml", "units: in\n" + format +
                        "  layer: 3\n  object_name: N\n  units: 1\n  obsolete: 0\n"
                        "  more_ints: [7]\n  more_attributes: {T: x}\n");
    const Outcome diff = qelfmt("defs diff a.yaml b.yaml");
    EXPECT_EQ(diff.status, 1);
    EXPECT_EQ(diff.out, "the part: units: mm -> in\n"
                        "format F: layer: not stored -> 3\n"
                        "format F: object_name: not stored -> N\n"
                        "format F: more_attributes: not stored -> {T: x}\n"
                        "format F: obsolete: not stored -> 0\n"
                        "format F: more_ints: not stored -> [7]\n");
    EXPECT_EQ(qelfmt("defs diff b.yaml b.yaml").status, 0);
}

TEST_F(DefinitionFiles, FormatsAreListedWithTheirSizesAndBlocksWithTheirFormats)
{
    writeText("d.yaml", cell("a", 0));
    ASSERT_EQ(qelfmt("defs build d.yaml -o site").status, 0);
    EXPECT_EQ(qelfmt("defs list --defs site").out, "FORMAT  UNITS  SIZES  DESCRIPTION\n"
                                                   "F       mm     A3 A4  Sheets\n"
                                                   "\n"
                                                   "BLOCK  UNITS  FORMATS  DESCRIPTION\n"
                                                   "B      mm     F        \n");
    const auto listed = json("defs list --defs site");
    EXPECT_EQ(listed[0]["id"], "F");
    EXPECT_EQ(listed[1]["kind"], "block");
    EXPECT_EQ(listed[1]["id"], "B");
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
