// Lengths measured on the rendered pixels of all three kinds of file.
#include "paper.h"
#include "picture.h"

#include "display/pens.h"
#include "display/shaping.h"
#include "model/text_metrics.h"
#include "uf_trns.h"

#include <cmath>
#include <fstream>

using namespace host::display;

namespace {

class Pixels : public Paper {
protected:
    struct Rendered {
        const char *kind;
        Picture picture;
    };
    std::vector<Rendered> render(tag_t sheet, double width, int dpi)
    {
        RenderOptions options;
        options.pngDpi = dpi;
        writePng(sheet, file("p.png"), options);
        writePdf({sheet}, file("p.pdf"), options);
        writeSvg(sheet, file("p.svg"), options);
        return {{"png", Picture::ofPng(file("p.png"), width)},
                {"pdf", Picture::ofPdf(file("p.pdf"), width, dpi)},
                {"svg", Picture::ofSvg(file("p.svg"), width, dpi)}};
    }
};

} // namespace

TEST_F(Pixels, CapitalsAreAsHighAsTheCharacterSize)
{
    newPart("part");
    const tag_t sheet = newSheet("A", 100, 60);
    struct Row {
        double x, size;
    };
    const std::vector<Row> rows{{5, 1.8}, {15, 2.5}, {25, 3.5}, {35, 5}, {48, 7}, {65, 14}};
    for (const Row &row : rows) {
        TextLook look;
        look.size = row.size;
        note({"H"}, row.x, 20, look);
    }
    for (const auto &[kind, picture] : render(sheet, 100, 600)) {
        for (const Row &row : rows) {
            SCOPED_TRACE(std::string(kind) + " " + std::to_string(row.size));
            const auto box = picture.inked(row.x, 5, row.x + row.size, 40);
            EXPECT_NEAR(box.height(), row.size, 0.02 * row.size);
            EXPECT_NEAR(box.bottom, 20, 0.07); // poppler puts glyphs on whole pixels
        }
    }
}

TEST_F(Pixels, TheInkOfEverySiteLiesWhereTheMetricsSay)
{
    newPart("part");
    const tag_t sheet = newSheet("A", 210, 150);
    host::Lettering seven;
    seven.size = 7;
    const double width = host::lineWidth("HHH", seven);
    for (int site = 1; site <= 9; ++site) {
        TextLook look;
        look.site = site;
        look.size = 7;
        note({"HHH", "HHH"}, 40 + (site - 1) % 3 * 60, 120 - (site - 1) / 3 * 45, look);
    }
    const double height = 17.5; // 2 x 7 + 7 x 0.5
    for (const auto &[kind, picture] : render(sheet, 210, 300)) {
        for (int site = 1; site <= 9; ++site) {
            SCOPED_TRACE(std::string(kind) + " site " + std::to_string(site));
            const double x = 40 + (site - 1) % 3 * 60 - width * ((site - 1) % 3) / 2.0;
            const double y = 120 - (site - 1) / 3 * 45 - height * (2 - (site - 1) / 3) / 2.0;
            const auto box = picture.inked(x - 5, y - 5, x + width + 5, y + height + 5);
            EXPECT_NEAR(box.bottom, y, 0.1);
            EXPECT_NEAR(box.top, y + height, 0.1);
            // The ink begins and ends within the first and last letters' own room.
            EXPECT_GE(box.left, x - 0.05);
            EXPECT_LE(box.right, x + width + 0.05);
            EXPECT_LT(box.left, x + 0.3 * 7);
            EXPECT_GT(box.right, x + width - 0.3 * 7);
        }
    }
}

TEST_F(Pixels, AspectAndSpacingWidenALineAsTheMetricsSay)
{
    newPart("part");
    const tag_t sheet = newSheet("A", 200, 60);
    struct Row {
        double y, aspect, space;
    };
    const std::vector<Row> rows{{5, 1, 1}, {15, 0.5, 1}, {25, 1.5, 1}, {35, 1, 3}, {45, 0.7, 2}};
    for (const Row &row : rows) {
        TextLook look;
        look.size = 5;
        look.aspect = row.aspect;
        look.charSpace = row.space;
        note({"HAVTOH"}, 10, row.y, look);
    }
    host::Lettering one;
    one.size = 1;
    const Face &face = FontBook::get().drafting();
    const GlyphShape &h = face.shape(face.glyphOf(U'H'));
    const double before = static_cast<double>(h.left) / face.capitalHeight();
    const double after = static_cast<double>(h.advance - h.right) / face.capitalHeight();
    for (const auto &[kind, picture] : render(sheet, 200, 300)) {
        for (const Row &row : rows) {
            SCOPED_TRACE(std::string(kind) + " " + std::to_string(row.y));
            host::Lettering look;
            look.size = 5;
            look.aspect = row.aspect;
            look.charSpace = row.space;
            const double width = host::lineWidth("HAVTOH", look);
            const auto box = picture.inked(1, row.y - 1, 190, row.y + 6);
            EXPECT_NEAR(box.left, 10 + before * 5 * row.aspect, 0.1);
            EXPECT_NEAR(box.right, 10 + width - after * 5 * row.aspect, 0.1);
        }
    }
}

TEST_F(Pixels, PensAreAsWideAsTheirNumberSays)
{
    newPart("part");
    const tag_t sheet = newSheet("A", 100, 80);
    const std::vector<int> widths{0, 1, 2, 5, 6, 7, 8, 9, 10, 11, 12, 13};
    double y = 5;
    for (const int width : widths) line(10, y, 90, y, width), y += 5;
    for (const auto &[kind, picture] : render(sheet, 100, 600)) {
        y = 5;
        for (const int width : widths) {
            // Poppler draws lines in whole pixels, of 0.042 here.
            EXPECT_NEAR(picture.inkAcross(50, y - 2, 50, y + 2), penWidth(width),
                        std::string(kind) == "pdf" ? 0.045 : 0.01)
                << kind << " " << width;
            y += 5;
        }
    }
}

TEST_F(Pixels, DashesAreAsLongAsTheyShouldBe)
{
    newPart("part");
    const tag_t sheet = newSheet("A", 100, 50);
    // In pen 9 (0.5): dash 6, long dash 12, dot 0.25, gap 1.5. Ink of whole patterns over their length:
    struct Row {
        int font;
        double period, ink;
    };
    const std::vector<Row> rows{{0, 20, 20},       {1, 20, 20},     {2, 7.5, 6},   {3, 17, 12.5},
                                {4, 15.25, 12.25}, {5, 1.75, 0.25}, {6, 13.5, 12}, {7, 9.25, 6.25}};
    double y = 5;
    for (const Row &row : rows) line(10, y, 90, y, 9, row.font), y += 5;
    for (const auto &[kind, picture] : render(sheet, 100, 600)) {
        y = 5;
        for (const Row &row : rows) {
            const double length = std::floor(78 / row.period) * row.period;
            EXPECT_NEAR(picture.inkAcross(10, y, 10 + length, y) / length, row.ink / row.period,
                        0.02)
                << kind << " " << row.font;
            y += 5;
        }
    }
}

TEST_F(Pixels, ArcsAndAreasCoverWhatTheyShould)
{
    newPart("part");
    const tag_t sheet = newSheet("A", 100, 50);
    ASSERT_EQ(UF_OBJ_set_line_width(nxhost::createArc(25, 25, 15, 0, 360), 9), 0);
    ASSERT_EQ(UF_OBJ_set_line_width(nxhost::createArc(25, 25, 8, 300, 420), 9), 0); // to the right
    nxhost::createFilledArea(
        {{{60, 10}, {90, 10}, {90, 40}, {60, 40}}, {{70, 20}, {80, 20}, {80, 30}, {70, 30}}});
    for (const auto &[kind, picture] : render(sheet, 100, 300)) {
        SCOPED_TRACE(kind);
        for (int degrees = 0; degrees < 360; degrees += 15) {
            const double c = std::cos(degrees * M_PI / 180), s = std::sin(degrees * M_PI / 180);
            EXPECT_NEAR(picture.inkAcross(25 + 12 * c, 25 + 12 * s, 25 + 18 * c, 25 + 18 * s), 0.5,
                        0.08)
                << degrees;
            const bool inner = degrees < 60 || degrees > 300;
            if (degrees == 60 || degrees == 300) continue;
            EXPECT_NEAR(picture.inkAcross(25 + 6 * c, 25 + 6 * s, 25 + 10 * c, 25 + 10 * s),
                        inner ? 0.5 : 0, 0.08)
                << degrees;
        }
        EXPECT_NEAR(picture.inkShare(60, 10, 90, 40), 800.0 / 900.0, 0.01);
        EXPECT_LT(picture.inkShare(71, 21, 79, 29), 0.01); // the hole
    }
}

// Every angle, and turned by half with a transformation as a flip does it.
TEST_F(Pixels, TheInkOfATurnedTextLiesInItsTurnedBox)
{
    newPart("part");
    const tag_t sheet = newSheet("A", 60, 60);
    host::Lettering five;
    five.size = 5;
    const double width = host::lineWidth("HHH", five);
    for (int degrees = 0; degrees < 360; degrees += 30) {
        SCOPED_TRACE(degrees);
        TextLook look;
        look.size = 5;
        const bool flip = degrees == 180;
        if (!flip) look.angle = degrees;
        const tag_t text = note({"HHH"}, 30, 30, look);
        if (flip) {
            double origin[3] = {30, 30, 0}, axis[3] = {0, 0, 1}, half = 180, matrix[12];
            int status = -1, one = 1, sameLayer = 0, noTrace = 2;
            uf5945(origin, axis, &half, matrix, &status);
            uf5947(matrix, &text, &one, &one, &sameLayer, &noTrace, nullptr, nullptr, &status);
            ASSERT_EQ(status, 0);
        }
        const double c = std::cos(degrees * M_PI / 180), s = std::sin(degrees * M_PI / 180);
        for (const auto &[kind, picture] : render(sheet, 60, 200)) {
            SCOPED_TRACE(kind);
            double left = 99, right = -99, bottom = 99, top = -99; // in the text's own directions
            // The outermost pixels lie half outside the sheet.
            for (int row = 1; row + 1 < picture.height(); ++row)
                for (int column = 1; column + 1 < picture.width(); ++column) {
                    if (picture.inkAt(column, row) < 0.5) continue;
                    const double x = (column + 0.5) / picture.perMillimetre() - 30;
                    const double y = 30 - (row + 0.5) / picture.perMillimetre();
                    left = std::min(left, c * x + s * y), right = std::max(right, c * x + s * y);
                    bottom = std::min(bottom, c * y - s * x), top = std::max(top, c * y - s * x);
                }
            EXPECT_NEAR(bottom, 0, 0.2); // a pixel is 0.13
            EXPECT_NEAR(top, 5, 0.2);
            EXPECT_GE(left, -0.1);
            EXPECT_LE(right, width + 0.1);
            EXPECT_GT(right - left, width - 2.5); // the room before the first and after the last H
        }
        ASSERT_EQ(UF_OBJ_delete_object(text), 0);
    }
}

TEST_F(Pixels, LinesStandAsFarApartAsTheLineSpaceSays)
{
    newPart("part");
    const tag_t sheet = newSheet("A", 120, 60);
    double x = 10;
    const std::vector<double> factors{0.5, 1, 1.5, 3};
    for (const double factor : factors) {
        TextLook look;
        look.size = 5;
        look.lineSpace = factor;
        note({"H", "H", "H"}, x, 10, look);
        x += 25;
    }
    for (const auto &[kind, picture] : render(sheet, 120, 300)) {
        x = 10;
        for (const double factor : factors) {
            SCOPED_TRACE(std::string(kind) + " " + std::to_string(factor));
            const double pitch = 5 + 5 * factor / 2;
            for (int line = 0; line < 3; ++line) { // the last one stands on the origin
                const double base = 10 + line * pitch;
                const auto box = picture.inked(x, base - 0.4 * (pitch - 5), x + 10,
                                               base + 5 + 0.4 * (pitch - 5));
                EXPECT_NEAR(box.bottom, base, 0.15); // poppler puts glyphs on whole pixels
                EXPECT_NEAR(box.top, base + 5, 0.15);
            }
            x += 25;
        }
    }
}

TEST_F(Pixels, TurnedTextTurnsAboutItsOrigin)
{
    newPart("part");
    const tag_t sheet = newSheet("A", 100, 100);
    TextLook look;
    look.size = 10;
    look.angle = 90;
    note({"HHH"}, 50, 20, look);
    host::Lettering ten;
    ten.size = 10;
    const double width = host::lineWidth("HHH", ten);
    for (const auto &[kind, picture] : render(sheet, 100, 300)) {
        SCOPED_TRACE(kind);
        const auto box = picture.inked(20, 5, 80, 95);
        EXPECT_NEAR(box.right, 50, 0.1); // the baseline
        EXPECT_NEAR(box.left, 40, 0.2);
        EXPECT_GE(box.bottom, 20);
        EXPECT_LE(box.top, 20 + width);
    }
}

TEST_F(Pixels, APictureInBandsIsTheSameAsInOne)
{
    newPart("part");
    const tag_t sheet = newSheet("A", 300, 300);
    TextLook big;
    big.size = 120;
    note({"Hg"}, 20, 60, big);
    line(5, 5, 295, 290, 13);
    nxhost::createArc(150, 150, 140, 0, 360);
    RenderOptions options;
    options.pngDpi = 400; // 4724 rows of 4724: three bands
    writePng(sheet, file("bands.png"), options);
    writePdf({sheet}, file("bands.pdf"), options);
    EXPECT_LT(disagreement(Picture::ofPng(file("bands.png"), 300),
                           Picture::ofPdf(file("bands.pdf"), 300, 400)),
              1e-5);
}
