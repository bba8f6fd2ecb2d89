#include "paper.h"
#include "picture.h"

#include "display/font_book.h"
#include "display/sign.h"
#include "display/truetype_subset.h"

#include <cmath>
#include <fstream>
#include <sstream>

#include <ft2build.h>
#include FT_FREETYPE_H

using namespace host::display;

namespace {

class Pdf : public Paper {
protected:
    void SetUp() override
    {
        Paper::SetUp();
        newPart("part");
    }
    std::string info(const std::string &path) const { return output("pdfinfo -box " + path); }
    static bool has(const std::string &text, const std::string &wanted)
    {
        return text.find(wanted) != std::string::npos;
    }
};

// The numbers behind a label of pdfinfo.
std::vector<double> numbersOf(const std::string &text, const std::string &label)
{
    std::vector<double> numbers;
    const auto at = text.find(label);
    if (at == std::string::npos) return numbers;
    std::istringstream line(
        text.substr(at + label.size(), text.find('\n', at) - at - label.size()));
    for (double number; line >> number;) numbers.push_back(number);
    return numbers;
}

} // namespace

TEST_F(Pdf, EveryPageIsExactlyItsSheetInAllBoxes)
{
    const tag_t a4 = newSheet("A4", 210, 297), a0 = newSheet("A0", 1189, 841),
                inch = newSheet("Inch", 17, 11, 2);
    writePdf({a4, a0, inch}, file("boxes.pdf"));
    struct Row {
        int page;
        double width, height; // points: millimetres x 72 / 25.4
    };
    for (const Row &row : {Row{1, 595.2756, 841.8898}, {2, 3370.3937, 2383.937}, {3, 1224, 792}}) {
        const std::string n = std::to_string(row.page);
        const std::string text =
            output("pdfinfo -box -f " + n + " -l " + n + " " + file("boxes.pdf"));
        EXPECT_TRUE(has(text, "Pages:           3")) << text;
        for (const char *box : {"MediaBox:", "CropBox:", "BleedBox:", "TrimBox:", "ArtBox:"}) {
            const auto numbers = numbersOf(text, box);
            ASSERT_EQ(numbers.size(), 4u) << text;
            EXPECT_EQ(numbers[0], 0);
            EXPECT_EQ(numbers[1], 0);
            EXPECT_NEAR(numbers[2], row.width, 0.006) << box; // printed with two decimals
            EXPECT_NEAR(numbers[3], row.height, 0.006) << box;
        }
    }
}

TEST_F(Pdf, ASheetLongerThanFiveMetresGetsBiggerUnits)
{
    const tag_t sheet = newSheet("Roll", 12000, 841);
    line(0, 0, 12000, 841);
    writePdf({sheet}, file("roll.pdf"));
    const auto media = numbersOf(info(file("roll.pdf")), "MediaBox:");
    // 12000 mm are 34015.7 points: three times 14400 hold them.
    EXPECT_NEAR(media.at(2), 34015.748 / 3, 0.01);
    EXPECT_TRUE(has(contentOf(file("roll.pdf")), "/UserUnit 3"));
}

TEST_F(Pdf, TextIsFoundWholeWhateverItsScript)
{
    const tag_t sheet = newSheet("A", 210, 297);
    const std::vector<std::string> texts{"Drawing no. DRG-12345 (A)", "Чертёж Ελληνικά",
                                         "\xe2\x8c\x80 12 \xc2\xb1 0.1 45\xc2\xb0 \\ (x)",
                                         "\xe6\x8a\x80\xe6\x9c\xaf\xe8\xa6\x81\xe6\xb1\x82",
                                         "To AVATAR, Ty."};
    double y = 280;
    for (const std::string &text : texts) note({text}, 20, y -= 12);
    TextLook wide;
    wide.charSpace = 1.5;
    wide.aspect = 0.7;
    note({"narrow and spaced"}, 20, y -= 12, wide);
    writePdf({sheet}, file("text.pdf"));
    const std::string found = output("pdftotext -raw " + file("text.pdf") + " -");
    for (const std::string &text : texts) EXPECT_TRUE(has(found, text)) << text << "\n" << found;
    EXPECT_TRUE(has(found, "narrow and spaced")) << found;
}

// The font that stands in is named, embedded like the other, and has the characters: no box is drawn.
TEST_F(Pdf, ChineseComesFromAFontThatHasItAndIsNamed)
{
    const std::string chinese =
        "\xe6\x8a\x80\xe6\x9c\xaf\xe8\xa6\x81\xe6\xb1\x82"; // four characters
    const tag_t sheet = newSheet("A", 210, 297);
    note({"M " + chinese + " 6H"}, 20, 100);
    const RenderResult result = writePdf({sheet}, file("cjk.pdf"));
    ASSERT_EQ(result.substitutions.size(), 1u);
    EXPECT_EQ(result.substitutions[0].characters, chinese);
    ASSERT_FALSE(result.substitutions[0].font.empty())
        << "no font has them: install what scripts/bootstrap names";
    EXPECT_TRUE(std::filesystem::exists(result.substitutions[0].file));
    for (const char32_t character : U"技术要求")
        if (character) {
            EXPECT_NE(signOf({character}).glyph, 0u);
        }
    const std::string fonts = output("pdffonts " + file("cjk.pdf"));
    EXPECT_EQ(std::count(fonts.begin(), fonts.end(), '\n'), 4) << fonts; // a head of two, two fonts
    EXPECT_EQ(output("pdftotext -raw " + file("cjk.pdf") + " -"), "M " + chinese + " 6H\n\f");
    // Ink of many strokes in the place of each character, in all three kinds of file.
    writePng(sheet, file("cjk.png"));
    writeSvg(sheet, file("cjk.svg"));
    for (const Picture &picture :
         {Picture::ofPng(file("cjk.png"), 210), Picture::ofPdf(file("cjk.pdf"), 210, 150),
          Picture::ofSvg(file("cjk.svg"), 210, 150)}) {
        const auto box = picture.inked(15, 95, 60, 110);
        EXPECT_GT(picture.inkShare(box.left, box.bottom, box.right, box.top), 0.15);
    }
}

TEST_F(Pdf, CombiningMarksStayWithTheirLetterWhenCopied)
{
    const tag_t sheet = newSheet("A", 210, 297);
    note({"cafe\xcc\x81 q\xcc\x8c"}, 20, 100); // the font has the first pair as one, not the second
    writePdf({sheet}, file("marks.pdf"));
    const std::string found = output("pdftotext -raw " + file("marks.pdf") + " -");
    EXPECT_TRUE(has(found, "cafe\xcc\x81") || has(found, "caf\xc3\xa9")) << found;
    EXPECT_TRUE(has(found, "q\xcc\x8c")) << found;
}

TEST_F(Pdf, TextReadsFromTheTopDownWithTheLinesOfANoteTogether)
{
    const tag_t sheet = newSheet("A", 210, 297);
    TextLook top;
    top.site = 1;
    note({"fourth"}, 20, 50, top); // made first, read last
    note({"second", "second too"}, 20, 200, top);
    note({"third", "third too"}, 120, 200.3, top);
    note({"first"}, 120, 280, top);
    writePdf({sheet}, file("order.pdf"));
    const std::string found = output("pdftotext -raw " + file("order.pdf") + " -");
    EXPECT_EQ(found, "first\nsecond\nsecond too\nthird\nthird too\nfourth\n\f");
}

TEST_F(Pdf, OneSubsetAFontServesAllPages)
{
    std::vector<tag_t> sheets;
    for (const char *text : {"ABC", "DEF", "GHI \xe2\x9c\x93"}) {
        sheets.push_back(newSheet(text == std::string("ABC")   ? "A"
                                  : text == std::string("DEF") ? "B"
                                                               : "C",
                                  210, 297));
        note({text}, 20, 20);
    }
    const RenderResult result = writePdf(sheets, file("fonts.pdf"));
    const std::string fonts = output("pdffonts " + file("fonts.pdf"));
    ASSERT_EQ(result.substitutions.size(), 1u);
    std::istringstream rows(fonts);
    std::string row;
    std::getline(rows, row), std::getline(rows, row); // the head
    std::size_t drafting = 0, count = 0;
    for (; std::getline(rows, row); ++count) {
        EXPECT_TRUE(has(row, "CID TrueType      Identity-H       yes yes yes")) << row;
        EXPECT_EQ(row.find('+'), 6u) << row; // six letters tell subsets apart
        drafting += has(row, "+osifont ");
    }
    EXPECT_EQ(drafting, 1u) << fonts;
    EXPECT_EQ(count, result.substitutions[0].font.empty() ? 1u : 2u) << fonts;
    EXPECT_EQ(result.substitutions[0].characters, "\xe2\x9c\x93");
}

TEST_F(Pdf, TheSameSheetGivesTheSameBytesWhateverWasRenderedBefore)
{
    const auto draw = [](const char *name) {
        const tag_t sheet = newSheet(name, 210, 297);
        note({"DRG-1 \xe2\x9c\x93"}, 20, 20);
        line(0, 0, 100, 100);
        return sheet;
    };
    const tag_t sheet = draw("A");
    writePdf({sheet}, file("one.pdf"));
    const tag_t other = newSheet("B", 210, 297);
    for (char c = '0'; c < 'Z'; ++c) { // more subsets than are kept
        note({std::string(1, c) + "\xe2\x86\x92"}, 5, 5);
        writePdf({other}, file("other.pdf"));
    }
    writePdf({sheet}, file("two.pdf"));
    newPart("again");
    writePdf({draw("C")}, file("three.pdf"));
    EXPECT_EQ(contentOf(file("one.pdf")), contentOf(file("two.pdf")));
    EXPECT_EQ(contentOf(file("one.pdf")), contentOf(file("three.pdf")));
    EXPECT_FALSE(has(info(file("one.pdf")), "CreationDate"));
}

TEST_F(Pdf, DocumentInformationIsWhatWasGiven)
{
    const tag_t sheet = newSheet("A", 210, 297);
    RenderOptions options;
    options.title = "Bracket (left) \\ Halter \xc3\x9c";
    options.author = "A. Draughtsman";
    options.subject = "DRG-1";
    options.keywords = "A, 1:2";
    options.creationDate = "2024-05-01T12:30:00+02:00";
    writePdf({sheet}, file("info.pdf"), options);
    const std::string text = output("TZ=UTC pdfinfo " + file("info.pdf"));
    EXPECT_TRUE(has(text, "Title:           Bracket (left) \\ Halter \xc3\x9c\n")) << text;
    EXPECT_TRUE(has(text, "Author:          A. Draughtsman\n")) << text;
    EXPECT_TRUE(has(text, "Subject:         DRG-1\n")) << text;
    EXPECT_TRUE(has(text, "Keywords:        A, 1:2\n")) << text;
    EXPECT_TRUE(has(text, "CreationDate:    Wed May  1 10:30:00 2024 UTC\n")) << text;

    options.creationDate = "2024-05-01";
    writePdf({sheet}, file("day.pdf"), options);
    EXPECT_TRUE(has(contentOf(file("day.pdf")), "/CreationDate(D:20240501)"));
    for (const char *wrong : {"yesterday", "2024-13-01", "2024-05-01T25:00:00",
                              "2024-05-01 12:00:00", "2024-05-01T12:00:00+2"}) {
        options.creationDate = wrong;
        EXPECT_THROW(writePdf({sheet}, file("wrong.pdf"), options), RenderError) << wrong;
    }
    EXPECT_FALSE(std::filesystem::exists(file("wrong.pdf")));
}

TEST_F(Pdf, MonochromeHasNoColourAndColourIsTheObjects)
{
    const tag_t sheet = newSheet("A", 100, 100);
    ASSERT_EQ(UF_OBJ_set_color(line(0, 50, 100, 50, 13), 4), 0); // red
    TextLook blue;
    blue.color = 1;
    note({"H"}, 10, 10, blue);
    RenderOptions options;
    writePdf({sheet}, file("colour.pdf"), options);
    options.monochrome = true;
    writePdf({sheet}, file("black.pdf"), options);
    output("pdftoppm -r 50 -singlefile " + file("colour.pdf") + " " + file("colour"));
    output("pdftoppm -r 50 -singlefile " + file("black.pdf") + " " + file("black"));
    const auto colourful = [](const std::string &ppm) {
        std::size_t count = 0;
        for (std::size_t i = 15; i + 2 < ppm.size(); i += 3)
            count += ppm[i] != ppm[i + 1] || ppm[i] != ppm[i + 2];
        return count;
    };
    EXPECT_GT(colourful(contentOf(file("colour.ppm"))), 100u);
    EXPECT_EQ(colourful(contentOf(file("black.ppm"))), 0u);
}

TEST_F(Pdf, SeveralSheetsAreListedByName)
{
    const tag_t a = newSheet("Cover", 210, 297), b = newSheet("Details", 210, 297);
    writePdf({a, b}, file("two.pdf"));
    const std::string bytes = contentOf(file("two.pdf"));
    EXPECT_TRUE(has(bytes, "/Title(COVER)") || has(bytes, "/Title(Cover)"));
    EXPECT_TRUE(has(bytes, "/PageMode/UseOutlines"));
    EXPECT_THROW(writePdf({}, file("none.pdf")), RenderError);
}

TEST_F(Pdf, TheEmbeddedFontHoldsTheSameOutlinesAsTheFontItself)
{
    const Face &face = FontBook::get().drafting();
    std::vector<unsigned> glyphs;
    std::vector<const GlyphShape *> shapes;
    for (const char32_t c : std::u32string(U"HgÄ8 ∅я")) {
        glyphs.push_back(face.glyphOf(c));
        shapes.push_back(&face.shape(glyphs.back()));
    }
    const std::string bytes = trueTypeSubset(face, shapes);
    {
        std::ofstream out(file("subset.ttf"), std::ios::binary);
        out << bytes;
    }
    const Face subset(file("subset.ttf"), 0);
    EXPECT_EQ(subset.unitsPerEm(), face.unitsPerEm());
    for (std::size_t i = 0; i < glyphs.size(); ++i) {
        const GlyphShape &is = subset.shape(static_cast<unsigned>(i + 1)),
                         &should = face.shape(glyphs[i]);
        EXPECT_EQ(is.advance, should.advance) << i;
        ASSERT_EQ(is.contours.size(), should.contours.size()) << i;
        for (std::size_t c = 0; c < is.contours.size(); ++c) {
            ASSERT_EQ(is.contours[c].size(), should.contours[c].size());
            for (std::size_t p = 0; p < is.contours[c].size(); ++p) {
                EXPECT_EQ(is.contours[c][p].x, should.contours[c][p].x);
                EXPECT_EQ(is.contours[c][p].y, should.contours[c][p].y);
                EXPECT_EQ(is.contours[c][p].onCurve, should.contours[c][p].onCurve);
            }
        }
    }
}
