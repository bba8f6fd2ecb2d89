// What pictures say of themselves.
#include "shell.h"

namespace {

class DocumentInfo : public Shell {
protected:
    void SetUp() override
    {
        Shell::SetUp();
        buildIso();
        write("values.json", R"json({"title": ["Gehäuse", "技术 (left)"], "number": "D-100",
              "creator": "Ł. Ökonom", "revision": "C"})json");
    }
    std::string info(const std::string &file) const
    {
        return shell("env TZ=UTC pdfinfo " + file).out;
    }
    static void expectTitleBlock(const std::string &text)
    {
        for (const char *line :
             {"Title:           Gehäuse 技术 (left)\n", "Subject:         D-100\n",
              "Keywords:        revision C\n", "Author:          Ł. Ökonom\n"})
            EXPECT_NE(text.find(line), std::string::npos) << line << "in\n" << text;
    }
};

} // namespace

TEST_F(DocumentInfo, AStampedPdfNamesTitleNumberRevisionAndCreator)
{
    ASSERT_EQ(qelfmt("stamp ISO/A3 --defs site --data values.json -o a.pdf").status, 0);
    expectTitleBlock(info("a.pdf"));
    EXPECT_EQ(info("a.pdf").find("CreationDate"), std::string::npos);
}

TEST_F(DocumentInfo, ARenderedDrawingDoesTooAndTheSameSheetGivesTheSameBytes)
{
    ASSERT_EQ(qelfmt("stamp ISO/A3 --defs site --data values.json -o a.qdraw").status, 0);
    ASSERT_EQ(qelfmt("render a.qdraw -o one.pdf").status, 0);
    ASSERT_EQ(qelfmt("render a.qdraw -o two.pdf").status, 0);
    expectTitleBlock(info("one.pdf"));
    EXPECT_EQ(read("one.pdf"), read("two.pdf"));
    ASSERT_EQ(qelfmt("render a.qdraw -o one.svg").status, 0);
    EXPECT_NE(read("one.svg").find("<title>Gehäuse 技术 (left)</title>"), std::string::npos);
}

TEST_F(DocumentInfo, ADateIsThereWhenItIsAskedFor)
{
    ASSERT_EQ(qelfmt("stamp ISO/A3 --defs site -o a.pdf --date 2024-05-01T12:30:00+02:00").status,
              0);
    EXPECT_NE(info("a.pdf").find("CreationDate:    Wed May  1 10:30:00 2024 UTC"),
              std::string::npos)
        << info("a.pdf");
    ASSERT_EQ(qelfmt("stamp ISO/A3 --defs site -o b.pdf --date now").status, 0);
    EXPECT_NE(info("b.pdf").find("CreationDate:"), std::string::npos);
    const Outcome wrong = qelfmt("stamp ISO/A3 --defs site -o c.pdf --date yesterday");
    EXPECT_EQ(wrong.status, 2);
    EXPECT_NE(wrong.err.find("write it as 2024-05-01"), std::string::npos) << wrong.err;
    EXPECT_FALSE(exists("c.pdf"));
}

TEST_F(DocumentInfo, AnEmptyTitleBlockSaysNothing)
{
    ASSERT_EQ(qelfmt("stamp ISO/A3 --defs site -o a.pdf").status, 0);
    const std::string text = info("a.pdf");
    for (const char *entry : {"Title:", "Subject:", "Keywords:", "Author:"})
        EXPECT_EQ(text.find(entry), std::string::npos) << text;
}
