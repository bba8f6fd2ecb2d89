// Pictures for callers that speak no C++.
#include "paper.h"
#include "picture.h"

#include "nxhost/picture.h"

#include <fstream>

namespace {

class PicturesFromC : public Paper {
protected:
    void SetUp() override
    {
        Paper::SetUp();
        newPart("part");
        m_sheet = newSheet("A", 100, 100);
        line(0, 0, 100, 100);
    }
    static std::string bytesOf(const std::string &path)
    {
        std::ifstream in(path, std::ios::binary);
        return {std::istreambuf_iterator<char>(in), {}};
    }

    tag_t m_sheet = NULL_TAG;
};

TEST_F(PicturesFromC, AreTheSameAsFromCpp)
{
    const tag_t sheets[] = {m_sheet, newSheet("B", 200, 100)};
    ASSERT_EQ(nxhost_write_pdf(sheets, 2, file("c.pdf").c_str()), 0) << nxhost_ask_picture_error();
    host::display::writePdf({sheets[0], sheets[1]}, file("cpp.pdf"));
    EXPECT_EQ(bytesOf(file("c.pdf")), bytesOf(file("cpp.pdf")));
    EXPECT_EQ(bytesOf(file("c.pdf")).substr(0, 5), "%PDF-");
}

TEST_F(PicturesFromC, AFailureIsAStatusWithTheReason)
{
    const tag_t none = NULL_TAG;
    EXPECT_EQ(nxhost_write_pdf(&m_sheet, 1, file("no/such/a.pdf").c_str()), 1);
    EXPECT_NE(std::string(nxhost_ask_picture_error()).find("no/such/a.pdf"), std::string::npos);
    EXPECT_EQ(nxhost_write_pdf(nullptr, 1, file("a.pdf").c_str()), 1);
    EXPECT_STREQ(nxhost_ask_picture_error(),
                 "There is no sheet to render; a PDF needs at least one page.");
    EXPECT_EQ(nxhost_write_pdf(&m_sheet, 1, nullptr), 1);
    EXPECT_STREQ(nxhost_ask_picture_error(),
                 "There is no file name to write the picture to; give one.");
    EXPECT_EQ(nxhost_write_pdf(&none, 1, file("a.pdf").c_str()), 1);
    EXPECT_FALSE(std::filesystem::exists(file("a.pdf")));
}

} // namespace
