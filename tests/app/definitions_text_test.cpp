// Definition texts: what is built from them, and what is said about mistakes.
#include "shell.h"

namespace {

class DefinitionText : public Shell {
protected:
    // A whole small file, with `cells` below its block.
    Outcome build(const std::string &cells, const std::string &formats = "")
    {
        write("d.yaml", "units: mm\n"
                        "formats:\n"
                        "  F: {required: [B], sheets: iso, sizes: [A3]" +
                            formats +
                            "}\n"
                            "blocks:\n"
                            "  B:\n"
                            "    size: [60, 20]\n"
                            "    place: {corner: bottom-right, inset: [10, 10]}\n"
                            "    cells:\n" +
                            cells);
        return qelfmt("defs build d.yaml -o site --quiet");
    }
};

TEST_F(DefinitionText, EveryMistakeIsReportedInOneRunWithItsPlace)
{
    const Outcome bad = build("      a: {cell: [0, 0, 60], label: A}\n"
                              "      b: {cell: [0, 10, 60, 10], colour: 3}\n"
                              "      c: {cell: [0, 10, 60, 10], from: nowhere X}\n",
                              ", size: [A9]");
    EXPECT_EQ(bad.status, 3);
    EXPECT_NE(bad.err.find("d.yaml:9:"), std::string::npos) << bad.err;
    EXPECT_NE(bad.err.find("cell a: cell: must be a list of 4 numbers"), std::string::npos);
    EXPECT_NE(bad.err.find("cell b: colour: unknown key: did you mean color?"), std::string::npos);
    EXPECT_NE(bad.err.find("cell c: from: \"nowhere X\" must be one of"), std::string::npos);
    EXPECT_NE(bad.err.find("format F: size: unknown key: did you mean sizes?"), std::string::npos);
    EXPECT_FALSE(exists("site/format_defs/d.prt"));
}

TEST_F(DefinitionText, BrokenYamlAndMissingFilesAreNamed)
{
    write("broken.yaml", "formats: [\n");
    const Outcome broken = qelfmt("defs build broken.yaml -o site");
    EXPECT_EQ(broken.status, 3);
    EXPECT_NE(broken.err.find("broken.yaml:"), std::string::npos);
    EXPECT_NE(qelfmt("defs build none.yaml -o site").err.find("none.yaml: cannot be opened"),
              std::string::npos);
}

TEST_F(DefinitionText, AFolderInThePlaceOfATextIsNamed)
{
    write("d.yaml/x", "");
    write("values.json/x", "");
    const std::string words = ": is a folder: name a file in it\n";
    EXPECT_EQ(qelfmt("defs check d.yaml").out, "d.yaml" + words);
    EXPECT_EQ(qelfmt("defs build d.yaml -o site").err, "d.yaml" + words);
    write("e.yaml", "formats: {F: {sheets: iso, sizes: [A3]}}\n");
    ASSERT_EQ(qelfmt("defs build e.yaml -o site --quiet").status, 0);
    EXPECT_EQ(qelfmt("stamp F/A3 --defs site -o a.pdf --data values.json").err,
              "qelfmt: values.json" + words);
}

TEST_F(DefinitionText, ASourceWithoutANameIsAMistakeLikeAnyOther)
{
    const Outcome bad = build("      a: {cell: [0, 0, 20, 20], from: \"part \"}\n"
                              "      b: {cell: [20, 0, 20, 20], share: \"part \"}\n"
                              "      c: {cell: [40, 0, 20, 20], from: \"sheet\"}\n");
    EXPECT_EQ(bad.status, 3);
    EXPECT_EQ(bad.err,
              "d.yaml:9:39: block B, cell a: from: must be one of: part NAME, sheet NAME, site "
              "NAME, environment NAME, size\n"
              "d.yaml:10:41: block B, cell b: share: must be part NAME or sheet NAME\n"
              "d.yaml:11:40: block B, cell c: from: must be one of: part NAME, sheet NAME, site "
              "NAME, environment NAME, size\n");
}

TEST_F(DefinitionText, ASecondDocumentIsNotPassedOver)
{
    write("d.yaml", "formats: {F: {sheets: iso, sizes: [A3]}}\n---\nblocks: {}\n");
    EXPECT_EQ(qelfmt("defs check d.yaml").out,
              "d.yaml:3:1: a second document begins above: what follows a line of --- would not be "
              "read; remove that line, or make it a file of its own\n");
}

TEST_F(DefinitionText, ADecimalCommaIsNamed)
{
    EXPECT_EQ(build("      a: {cell: [0, 0, 60, 20], size: \"3,5\"}\n").err,
              "d.yaml:9:39: block B, cell a: size: must be a number: write 3.5, with a point\n");
    EXPECT_EQ(build("      a: {cell: [0, 0, 60, 20], size: 3,5}\n").err,
              "d.yaml:9:41: block B, cell a: 5: is half a number behind a comma: write the number "
              "with a point\n");
    EXPECT_EQ(build("      a:\n        cell: [0, 0, 60, 20]\n        size: 3,5\n").err,
              "d.yaml:11:15: block B, cell a: size: must be a number: write 3.5, with a point\n");
}

TEST_F(DefinitionText, AWrongBorderOfATableIsToldOnce)
{
    EXPECT_EQ(build("      a: {cell: [0, 0, 60, 20]}\n"
                    "    tables:\n"
                    "      T: {at: [0, 0], direction: down, borders: [lower], columns: {a: {width: "
                    "9}, b: {width: 9}}}\n")
                  .err,
              "d.yaml:11:49: block B, table T: borders: \"lower\" is none of left, right, top, "
              "bottom, middle, none\n");
}

TEST_F(DefinitionText, TextsStayTexts)
{
    ASSERT_EQ(build("      a: {cell: [0, 0, 60, 20], value: 01}\n"
                    "      b: {cell: [0, 0, 60, 20], box: none, value: no}\n"
                    "      c: {cell: [0, 0, 60, 20], box: none, value: 1.10}\n")
                  .status,
              0);
    ASSERT_EQ(qelfmt("stamp F/A3 --defs site -o a.qdraw").status, 0);
    const auto values = json("field list a.qdraw --defs site")["B"];
    EXPECT_EQ(values["a"], "01");
    EXPECT_EQ(values["b"], "no");
    EXPECT_EQ(values["c"], "1.10");
}

TEST_F(DefinitionText, TheSameTextGivesTheSameFiles)
{
    ASSERT_EQ(build("      a: {cell: [0, 0, 60, 20], label: A}\n").status, 0);
    const std::string first = read("site/format_defs/d.prt");
    ASSERT_EQ(qelfmt("defs build d.yaml -o other --quiet").status, 0);
    EXPECT_EQ(read("other/format_defs/d.prt"), first);
    EXPECT_EQ(shell("diff -r site/patterns other/patterns").status, 0);
}

TEST_F(DefinitionText, ChangedArtIsAnotherPattern)
{
    ASSERT_EQ(build("      a: {cell: [0, 0, 60, 20], label: A}\n").status, 0);
    const auto before = shell("ls site/patterns").out;
    ASSERT_EQ(build("      a: {cell: [0, 0, 60, 20], label: B}\n").status, 0);
    EXPECT_NE(shell("ls site/patterns").out, before);
}

TEST_F(DefinitionText, ALabelIsTakenInTheLanguageAskedFor)
{
    ASSERT_EQ(build("      a: {cell: [0, 0, 60, 20], label: {en: Title, de: Titel}}\n").status, 0);
    ASSERT_EQ(qelfmt("stamp F/A3 --defs site -o en.pdf").status, 0);
    EXPECT_NE(shell("pdftotext en.pdf -").out.find("Title"), std::string::npos);
    ASSERT_EQ(qelfmt("defs build d.yaml -o german --language de --quiet").status, 0);
    ASSERT_EQ(qelfmt("stamp F/A3 --defs german -o de.pdf").status, 0);
    EXPECT_NE(shell("pdftotext de.pdf -").out.find("Titel"), std::string::npos);
}

} // namespace
