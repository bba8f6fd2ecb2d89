// From a definition text and a data file to a drawing and a picture.
#include "shell.h"

namespace {

class Stamp : public Shell {
protected:
    void SetUp() override
    {
        Shell::SetUp();
        buildIso();
    }
};

TEST_F(Stamp, EveryTypedValueIsReadBackInANewProcess)
{
    write("values.json",
          R"({"title": "Pump shaft", "number": 4711, "supplement": ["42CrMo4", "± 0.01"]})");
    ASSERT_EQ(qelfmt("stamp ISO/A3 --defs site --data values.json -o a.qdraw").status, 0);
    const auto values = json("field list a.qdraw --defs site")["TITLE"];
    EXPECT_EQ(values["title"], "Pump shaft");
    EXPECT_EQ(values["number"], "4711");
    EXPECT_EQ(values["supplement"], nlohmann::json({"42CrMo4", "± 0.01"}));
    EXPECT_EQ(values["owner"], "Nordhaven Pumps"); // the site's
    EXPECT_EQ(values["language"], "en");           // the definition's
    EXPECT_EQ(values.size(), 15u);
}

TEST_F(Stamp, TheTitleBlockStandsInTheFramesLowerRightCorner)
{
    // Frame 10 from the right and lower edges, block 180 wide: x = W - 190, y = 10.
    const struct {
        const char *size;
        double x;
        double width;
        double height;
    } rows[] = {{"A0", 999, 1189, 841}, {"A1", 651, 841, 594}, {"A2", 404, 594, 420},
                {"A3", 230, 420, 297},  {"A4", 107, 297, 210}, {"A4P", 20, 210, 297}};
    for (const auto &row : rows) {
        SCOPED_TRACE(row.size);
        const std::string file = std::string(row.size) + ".qdraw";
        ASSERT_EQ(qelfmt("stamp ISO/" + std::string(row.size) + " --defs site -o " + file).status,
                  0);
        const auto sheet = json("info --defs site " + file)["sheets"][0];
        EXPECT_EQ(sheet["width"], row.width);
        EXPECT_EQ(sheet["height"], row.height);
        EXPECT_EQ(sheet["blocks"][0]["x"], row.x);
        EXPECT_EQ(sheet["blocks"][0]["y"], 10.0);
    }
}

TEST_F(Stamp, APdfHoldsTheTypedTextOnAPageOfTheSheetsSize)
{
    write("values.json", R"({"title": "Pump shaft"})");
    ASSERT_EQ(qelfmt("stamp ISO/A4P --defs site --data values.json -o a.pdf").status, 0);
    EXPECT_NE(shell("pdftotext a.pdf -").out.find("Pump shaft"), std::string::npos);
    // 210 x 297 mm are 595.276 x 841.89 points.
    EXPECT_NE(shell("pdfinfo a.pdf").out.find("595.276 x 841.89"), std::string::npos);
}

TEST_F(Stamp, AnExistingDrawingIsOnlyAddedToWhenAsked)
{
    ASSERT_EQ(qelfmt("stamp ISO/A3 --defs site -o a.qdraw").status, 0);
    const std::string before = read("a.qdraw");
    const Outcome refused = qelfmt("stamp ISO/A3 --defs site -o a.qdraw");
    EXPECT_EQ(refused.status, 3);
    EXPECT_NE(refused.err.find("--add"), std::string::npos);
    EXPECT_EQ(read("a.qdraw"), before);
    EXPECT_EQ(qelfmt("stamp ISO/A4 --defs site --add -o a.qdraw").status, 0);
    EXPECT_EQ(json("sheet list a.qdraw --defs site"), nlohmann::json({"SHEET1", "SHEET2"}));
}

TEST_F(Stamp, UnknownNamesAreAllReportedAndNothingIsSaved)
{
    write("values.json", R"({"title": "x", "titel": "y", "nummer": "z"})");
    const Outcome refused = qelfmt("stamp ISO/A3 --defs site --data values.json -o a.qdraw");
    EXPECT_EQ(refused.status, 3);
    EXPECT_NE(refused.err.find("no fields titel, nummer on "), std::string::npos) << refused.err;
    EXPECT_NE(refused.err.find("TITLE.title"), std::string::npos); // what there is
    EXPECT_FALSE(exists("a.qdraw"));
}

TEST_F(Stamp, UnknownFormatsAndSizesAreNamed)
{
    EXPECT_NE(qelfmt("stamp DIN/A3 --defs site -o a.pdf").err.find("no format DIN"),
              std::string::npos);
    const Outcome size = qelfmt("stamp ISO/A7 --defs site -o a.pdf");
    EXPECT_EQ(size.status, 3);
    EXPECT_NE(size.err.find("A0, A1, A2, A3, A4, A4P"), std::string::npos);
    EXPECT_EQ(qelfmt("stamp ISO --defs site -o a.pdf").status, 2);
}

TEST_F(Stamp, BlocksThatOnlyTheSiteRequiresAreAdded)
{
    write("site/config/tr_format", "[ISO Required Blocks]\nTITLE = 1\nTITLE2 = 1\n");
    const Outcome missing = qelfmt("stamp ISO/A3 --defs site -o a.qdraw");
    EXPECT_EQ(missing.status, 3);
    EXPECT_NE(missing.err.find("No block with ID TITLE2"), std::string::npos);
}

} // namespace
