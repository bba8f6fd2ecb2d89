#include "paper.h"
#include "picture.h"

using namespace host::display;

namespace {

class Svg : public Paper {
protected:
    void SetUp() override
    {
        Paper::SetUp();
        newPart("part");
        m_sheet = newSheet("A <1> & more", 210, 297);
    }
    std::string svg(const RenderOptions &options = {})
    {
        writeSvg(m_sheet, file("a.svg"), options);
        return contentOf(file("a.svg"));
    }
    static bool has(const std::string &text, const std::string &wanted)
    {
        return text.find(wanted) != std::string::npos;
    }

    tag_t m_sheet = NULL_TAG;
};

} // namespace

TEST_F(Svg, IsTheSheetInMillimetres)
{
    EXPECT_TRUE(has(svg(), "width=\"210mm\" height=\"297mm\" viewBox=\"0 0 210 297\""));
}

TEST_F(Svg, IsWellFormedWhateverTheTexts)
{
    note({"a < b & \"c\" $<O$>", "tab\there", "\x01\xff"}, 20, 20);
    RenderOptions options;
    options.title = "<&\">";
    options.subject = "]]>&";
    svg(options);
    output("python3 -c 'import sys, xml.dom.minidom as m; m.parse(sys.argv[1])' " + file("a.svg"));
}

TEST_F(Svg, TextIsTextInTheDraftingFontWithItsOriginAndSize)
{
    TextLook look;
    look.size = 5;
    note({"DRG-7"}, 20, 30, look);
    const std::string text = svg();
    // A capital of osifont is 1510 of 2048 units high: 5 x 2048 / 1510 = 6.781.
    EXPECT_TRUE(has(text, "<text x=\"20\" y=\"267\" font-size=\"6.781\">DRG-7</text>")) << text;
    EXPECT_TRUE(has(text, "font-family:osifont"));
}

TEST_F(Svg, SameSheetSameBytes)
{
    note({"Text \xe2\x9c\x93"}, 20, 30);
    line(0, 0, 9, 9, 3, 4);
    const std::string first = svg();
    EXPECT_EQ(svg(), first);
}
