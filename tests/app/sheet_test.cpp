// The verbs that work on one sheet of a drawing.
#include "shell.h"

namespace {

class Drawing : public Shell {
protected:
    void SetUp() override
    {
        Shell::SetUp();
        buildIso();
        ASSERT_EQ(qelfmt("part new a.qdraw --defs site").status, 0);
        ASSERT_EQ(qelfmt("sheet add a.qdraw A --format ISO/A3 --defs site").status, 0);
        ASSERT_EQ(qelfmt("sheet add a.qdraw B --defs site").status, 0);
        ASSERT_EQ(qelfmt("format add a.qdraw ISO/A4 --sheet B --defs site").status, 0);
    }

    std::string get(const std::string &field, const std::string &sheet) const
    {
        return qelfmt("field get a.qdraw " + field + " -s " + sheet + " --defs site").out;
    }
};

TEST_F(Drawing, SheetBIsFilledThoughTheDrawingWasSavedWithSheetAOpen)
{
    ASSERT_EQ(qelfmt("field set a.qdraw TITLE.title First -s A --defs site").status,
              0); // A is current now
    ASSERT_EQ(qelfmt("field set a.qdraw TITLE.date 2024-05-01 -s B --defs site").status, 0);
    EXPECT_EQ(get("date", "B"), "2024-05-01\n");
    EXPECT_EQ(get("date", "A"), "\n"); // a value shared with its own sheet alone
    // The text stands on the page of B and nowhere else.
    ASSERT_EQ(qelfmt("render a.qdraw -o a.pdf --defs site").status, 0);
    EXPECT_EQ(shell("pdftotext -f 1 -l 1 a.pdf -").out.find("2024-05-01"), std::string::npos);
    EXPECT_NE(shell("pdftotext -f 2 -l 2 a.pdf -").out.find("2024-05-01"), std::string::npos);
}

TEST_F(Drawing, AMovedBlockComesHome)
{
    const auto block = [&] { return json("info a.qdraw --defs site")["sheets"][0]["blocks"][0]; };
    ASSERT_EQ(qelfmt("block move a.qdraw TITLE 30 40 -s A --defs site").status, 0);
    EXPECT_EQ(block()["x"], 30.0);
    EXPECT_EQ(block()["y"], 40.0);
    ASSERT_EQ(qelfmt("block move a.qdraw TITLE --home -s A --defs site").status, 0);
    EXPECT_EQ(block()["x"], 230.0); // 420 - 10 - 180
    EXPECT_EQ(block()["y"], 10.0);
}

TEST_F(Drawing, ValuesSurviveAResizeThereAndBack)
{
    ASSERT_EQ(qelfmt("field set a.qdraw title Casing -s A --defs site").status, 0);
    const auto before = json("field list a.qdraw -s A --defs site");
    for (const std::string size : {"A2", "A0", "A4P", "A3"})
        ASSERT_EQ(qelfmt("format resize a.qdraw " + size + " -s A --defs site").status, 0) << size;
    EXPECT_EQ(json("field list a.qdraw -s A --defs site"), before);
    EXPECT_EQ(qelfmt("format show a.qdraw -s A --defs site").out, "ISO/A3\n");
}

TEST_F(Drawing, AFailingCommandLeavesTheFileAsItWas)
{
    const std::string before = read("a.qdraw");
    EXPECT_EQ(qelfmt("format add a.qdraw ISO/A3 --sheet A --defs site").status, 3); // has one
    EXPECT_EQ(qelfmt("field set a.qdraw nosuch x -s A --defs site").status, 3);
    EXPECT_EQ(qelfmt("block move a.qdraw NOSUCH 1 2 -s A --defs site").status, 3);
    EXPECT_EQ(qelfmt("format resize a.qdraw A9 -s A --defs site").status, 3);
    EXPECT_EQ(qelfmt("sheet add a.qdraw A --defs site").status, 3); // the name is taken
    EXPECT_EQ(read("a.qdraw"), before);
}

TEST_F(Drawing, ADryRunChangesNothing)
{
    const std::string before = read("a.qdraw");
    EXPECT_EQ(qelfmt("--dry-run field set a.qdraw title X -s A --defs site").status, 0);
    EXPECT_EQ(qelfmt("--dry-run format remove a.qdraw -s A --defs site").status, 0);
    EXPECT_EQ(read("a.qdraw"), before);
}

TEST_F(Drawing, AnUnnamedSheetOfSeveralIsAskedFor)
{
    const Outcome asked = qelfmt("field list a.qdraw --defs site");
    EXPECT_EQ(asked.status, 3);
    EXPECT_NE(asked.err.find("A, B"), std::string::npos);
    EXPECT_NE(qelfmt("field list a.qdraw -s C --defs site").err.find("no sheet C"),
              std::string::npos);
}

TEST_F(Drawing, FilesThatAreNoDrawingsAreRefusedByName)
{
    write("text.qdraw", "not a drawing");
    const Outcome foreign = qelfmt("info text.qdraw --defs site");
    EXPECT_EQ(foreign.status, 3);
    EXPECT_NE(foreign.err.find("text.qdraw"), std::string::npos);
    const Outcome missing = qelfmt("info none.qdraw --defs site");
    EXPECT_EQ(missing.status, 3);
    EXPECT_NE(missing.err.find("none.qdraw"), std::string::npos);
}

TEST_F(Drawing, UsageMistakesExitWithTwo)
{
    EXPECT_EQ(qelfmt("").status, 2);
    EXPECT_EQ(qelfmt("frobnicate").status, 2);
    EXPECT_EQ(qelfmt("render a.qdraw -o a.bmp --defs site").status, 2);
    EXPECT_EQ(qelfmt("block move a.qdraw TITLE -s A --defs site").status, 2);
    EXPECT_EQ(qelfmt("--help").status, 0);
}

TEST_F(Drawing, PicturesOfSeveralSheetsAreNamedAfterThem)
{
    ASSERT_EQ(qelfmt("render a.qdraw -o a.png --dpi 40 --defs site").status, 0);
    EXPECT_TRUE(exists("a-A.png"));
    EXPECT_TRUE(exists("a-B.png"));
    ASSERT_EQ(qelfmt("render a.qdraw -o a.svg -s B --defs site").status, 0);
    EXPECT_NE(read("a.svg").find("width=\"297mm\""), std::string::npos);
}

} // namespace
