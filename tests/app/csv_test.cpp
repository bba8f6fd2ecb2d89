// Rows of tables as CSV files: what other programs write, and what is refused.
#include "shell.h"

namespace {

class Csv : public Shell {
protected:
    void SetUp() override
    {
        Shell::SetUp();
        write("d.yaml", "units: mm\n"
                        "formats:\n"
                        "  F: {required: [B], sheets: iso, sizes: [A3]}\n"
                        "blocks:\n"
                        "  B:\n"
                        "    size: [100, 60]\n"
                        "    place: {at: [30, 20]}\n"
                        "    cells:\n"
                        "      name: {cell: [0, 0, 100, 10]}\n"
                        "    tables:\n"
                        "      T:\n"
                        "        at: [0, 60]\n"
                        "        direction: down\n"
                        "        row: 5\n"
                        "        columns:\n"
                        "          a: {width: 50, several-lines: yes}\n");
        const Outcome built = qelfmt("defs build d.yaml -o site --quiet");
        ASSERT_EQ(built.status, 0) << built.err;
        ASSERT_EQ(qelfmt("stamp F/A3 --defs site -o a.qdraw").status, 0);
    }
    // What a table of one column holds after reading the file.
    std::string throughTable(const std::string &bytes) const
    {
        write("in.csv", bytes);
        const Outcome read = qelfmt("--defs site table import a.qdraw T in.csv --replace");
        if (read.status != 0) return read.err;
        return qelfmt("--defs site table export a.qdraw T").out;
    }
};

TEST_F(Csv, BothLineEndsABlankLineAndAMissingLastLineEndAreTaken)
{
    EXPECT_EQ(throughTable("a\n1\n2"), "a\r\n1\r\n2\r\n");
    EXPECT_EQ(throughTable("a\r\n1\r\n\r\n2\r\n"), "a\r\n1\r\n2\r\n");
}

TEST_F(Csv, AByteOrderMarkIsNoPartOfTheFirstName)
{
    EXPECT_EQ(throughTable("\xEF\xBB\xBF"
                           "a\nx\n"),
              "a\r\nx\r\n");
}

TEST_F(Csv, QuotesCommasAndLineBreaksAreText)
{
    EXPECT_EQ(throughTable("a\n\"x, \"\"y\"\"\"\n"), "a\r\n\"x, \"\"y\"\"\"\r\n");
    EXPECT_EQ(throughTable("a\n\"one\r\ntwo\"\n"), "a\r\n\"one\ntwo\"\r\n");
    EXPECT_EQ(throughTable("a\n\"\"\n"), "a\r\n\"\"\r\n"); // a row with an empty cell
}

TEST_F(Csv, EveryScriptIsKeptAndWhatIsNoUtf8IsRefused)
{
    EXPECT_EQ(throughTable("a\nВал 泵 é ⌀\n"), "a\r\nВал 泵 é ⌀\r\n");
    for (const char *broken : {"\xE9", "\xC0\x80", "\xED\xA0\x80", "\xF5\x80\x80\x80", "\xE2\x82"})
        EXPECT_NE(throughTable(std::string("a\n") + broken + "\n").find("in.csv, line 2: a byte"),
                  std::string::npos);
}

TEST_F(Csv, MistakesNameTheLine)
{
    EXPECT_NE(throughTable("a\nx\n\"y\n").find("in.csv, line 3: a quote is opened"),
              std::string::npos);
    EXPECT_NE(throughTable("a\nx,y\n").find("in.csv, line 2: 2 cells, but the first line has 1"),
              std::string::npos);
    EXPECT_NE(throughTable("a\n\"x\"y\n").find("in.csv, line 2: text after a closing quote"),
              std::string::npos);
    EXPECT_NE(throughTable("").find("in.csv: is empty"), std::string::npos);
}

} // namespace
