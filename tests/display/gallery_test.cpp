// One sheet with everything that can be drawn. The pictures stay in the build folder to be looked at.
#include "paper.h"
#include "picture.h"

#include "model/text_metrics.h"
#include "uf_layer.h"
#include "uf_trns.h"

#include <cmath>
#include <fstream>

using namespace host::display;

namespace {

class Gallery : public Paper {
protected:
    tag_t draw()
    {
        makeMaster();
        m_part = newPart("gallery");
        const tag_t sheet = newSheet("Gallery", 420, 297);
        frame();
        sites();
        angles();
        shapes();
        symbols();
        pens();
        scripts();
        patterns();
        flips();
        nothing(sheet);
        return sheet;
    }

    static std::string outputFolder()
    {
        const std::string folder = std::string(QELFMT_BINARY_DIR) + "/gallery";
        std::filesystem::create_directories(folder);
        return folder;
    }

private:
    void makeMaster()
    {
        const tag_t master = newPart("master");
        line(0, 0, 20, 0, 9), line(20, 0, 20, 10, 9), line(20, 10, 0, 10, 9), line(0, 10, 0, 0, 9);
        nxhost::createArc(5, 5, 3, 0, 360);
        nxhost::createArc(5, 5, 4, 90, 180);
        nxhost::createFilledArea({{{12, 1}, {18, 1}, {15, 4}}});
        TextLook small;
        small.size = 2.5;
        note({"Master"}, 10.5, 6.5, small);
        saveAsPattern(master);
    }

    static void title(const char *text, double x, double y)
    {
        TextLook look;
        look.size = 2.5;
        look.color = 1;
        note({text}, x, y, look);
    }

    static void cross(double x, double y, double reach = 3)
    {
        for (const tag_t made :
             {line(x - reach, y, x + reach, y, 5), line(x, y - reach, x, y + reach, 5)})
            EXPECT_EQ(UF_OBJ_set_color(made, 4), 0);
    }

    // Where the metrics put the box of a text that is not turned: thin, in blue.
    static void box(const std::vector<std::string> &lines, const TextLook &look, double x, double y)
    {
        host::Lettering metrics;
        metrics.size = look.size;
        metrics.aspect = look.aspect;
        metrics.charSpace = look.charSpace;
        metrics.lineSpace = look.lineSpace;
        const double width = host::textWidth(lines, metrics);
        const double height = host::textHeight(lines.size(), metrics);
        const host::Vec3 corner = host::boxOffset(look.site, width, height);
        const double left = x + corner.x, bottom = y + corner.y;
        const double right = left + width, top = bottom + height;
        for (const tag_t made :
             {line(left, bottom, right, bottom, 5), line(right, bottom, right, top, 5),
              line(right, top, left, top, 5), line(left, top, left, bottom, 5)})
            EXPECT_EQ(UF_OBJ_set_color(made, 3), 0);
    }

    static void boxed(const std::vector<std::string> &lines, const TextLook &look, double x,
                      double y)
    {
        note(lines, x, y, look);
        box(lines, look, x, y);
        cross(x, y, 2);
    }

    static void frame()
    {
        line(5, 5, 415, 5, 10), line(415, 5, 415, 292, 10);
        line(415, 292, 5, 292, 10), line(5, 292, 5, 5, 10);
    }

    static void sites()
    {
        title("Sites 1 to 9, two lines, justified left, centre, right by column", 12, 284);
        for (int site = 1; site <= 9; ++site) {
            const double x = 40 + (site - 1) % 3 * 45, y = 270 - (site - 1) / 3 * 20;
            TextLook look;
            look.site = site;
            look.justification = (site - 1) % 3 + 1;
            boxed({"Site H" + std::to_string(site), "HgH"}, look, x, y);
        }
    }

    static void angles()
    {
        title("Angles every 30 degrees about one origin; vertical", 160, 284);
        for (int i = 0; i < 12; ++i) {
            TextLook look;
            look.site = 4;
            look.angle = 30.0 * i;
            look.size = 2.5;
            note({"     angle " + std::to_string(30 * i)}, 205, 250, look);
        }
        cross(205, 250);
        TextLook upright;
        upright.orientation = 1;
        note({"vertical", "two lines"}, 250, 235, upright);
        cross(250, 235);
    }

    static void shapes()
    {
        title("Sizes, aspects, spacing, pitch", 12, 212);
        double x = 15;
        for (const double size : {1.8, 2.5, 3.5, 5.0, 7.0, 10.0}) {
            TextLook look;
            look.size = size;
            note({"Hxg"}, x, 195, look);
            line(x - 2, 195, x + 2.5 * size, 195, 5),
                line(x - 2, 195 + size, x + 2.5 * size, 195 + size, 5);
            x += 4 + 2.6 * size;
        }
        double y = 187;
        for (const double aspect : {0.5, 0.75, 1.0, 1.5}) {
            TextLook look;
            look.aspect = aspect;
            boxed({"aspect " + std::to_string(aspect).substr(0, 4)}, look, 15, y);
            y -= 6;
        }
        y = 187;
        for (const double space : {0.5, 1.0, 2.0, 4.0}) {
            TextLook look;
            look.charSpace = space;
            boxed({"spacing " + std::to_string(space).substr(0, 3)}, look, 60, y);
            y -= 6;
        }
        int column = 0;
        for (const double pitch : {0.5, 1.0, 2.0}) {
            TextLook look;
            look.lineSpace = pitch;
            look.site = 1;
            boxed({"pitch", std::to_string(pitch).substr(0, 3), "H"}, look, 126 + column++ * 14,
                  190);
        }
    }

    static void symbols()
    {
        title("ID symbols 1 to 12; long texts; tall texts", 180, 212);
        for (int type = 1; type <= 12; ++type) {
            const double x = type < 10 ? 164 + type * 18 : 108 + type * 24.5;
            symbol(type, "A1", "23", x, 198);
            symbol(type, "WIDE-12", "Qjy-98", x, 180);
            symbol(type, "H", "H", x, 162, 13, 9);
        }
    }

    static void pens()
    {
        title("Pens 0, 1, 2, 5 to 13", 12, 152);
        double y = 148;
        for (const int width : {0, 1, 2, 5, 6, 7, 8, 9, 10, 11, 12, 13}) {
            TextLook look;
            look.size = 2;
            note({std::to_string(width)}, 12, y - 1, look);
            line(20, y, 60, y, width), line(60, y, 66, y - 3, width);
            y -= 4;
        }
        title("Line fonts 0 to 7 in pens 5, 0, 10", 75, 152);
        for (int font = 0; font <= 7; ++font) {
            TextLook look;
            look.size = 2;
            note({std::to_string(font)}, 75, 147 - 6 * font - 1, look);
            line(80, 148 - 6 * font, 150, 148 - 6 * font, 5, font);
            line(80, 146 - 6 * font, 150, 146 - 6 * font, 0, font);
            line(80, 144 - 6 * font, 150, 144 - 6 * font, 10, font);
        }
        title("Arcs, areas, colours", 160, 152);
        nxhost::createArc(175, 138, 10, 0, 360);
        nxhost::createArc(175, 138, 7, 30, 300);
        EXPECT_EQ(UF_OBJ_set_font(nxhost::createArc(175, 138, 4, 0, 360), 2), 0);
        nxhost::createFilledArea({{{190, 128}, {210, 128}, {210, 148}, {190, 148}},
                                  {{195, 133}, {205, 133}, {205, 143}, {195, 143}}});
        for (int color = 1; color <= 15; ++color) {
            const double x = 160 + 4 * color;
            const tag_t area =
                nxhost::createFilledArea({{{x, 115}, {x + 3, 115}, {x + 3, 122}, {x, 122}}});
            EXPECT_EQ(UF_OBJ_set_color(area, color), 0);
            EXPECT_EQ(UF_OBJ_set_color(line(x, 113, x + 3, 113, 9), color), 0);
        }
    }

    static void scripts()
    {
        title("Scripts, signs, marks, references", 12, 96);
        double y = 89;
        for (const char *text :
             {"Кириллица, Ελληνικά, Ünïcödé, 技术要求",
              "\xe2\x8c\x80 42 \xc2\xb1 0.1  45\xc2\xb0  \xc3\x98 \xe2\x89\xa4 \xe2\x88\x9e "
              "\xce\xbcm",
              "e\xcc\x81 o\xcc\x88 q\xcc\x8c x\xcc\xb2 a\xcc\x82\xcc\x81",
              "\xd7\x90 \xe1\x83\x90 \xe2\x84\xb5 \xe2\x9c\x93 \xe2\x86\x92 \xef\xac\x81",
              "AVATAR To Ty P. F, L- 'kerned' pairs",
              "$<brackets$> a < b > c <B2>cut<O> <W@NONE>half: <T1!2>",
              "  two  leading,  double  blanks"}) {
            note({text}, 12, y);
            y -= 7;
        }
    }

    void patterns()
    {
        title("Patterns: as is, x 2, turned 30 degrees, turned 90 and x 1.5", 180, 96);
        pattern("master", 180, 80), pattern("master", 210, 70, 0, 2);
        pattern("master", 270, 65, 30), pattern("master", 330, 60, 90, 1.5);
        for (const auto &[x, y] :
             {std::pair{180.0, 80.0}, {210.0, 70.0}, {270.0, 65.0}, {330.0, 60.0}})
            cross(x, y);
    }

    // A flip turns a text by half about its origin: the cross stays where it was.
    static void flips()
    {
        title("Flipped: sites 1, 3, 5, 7, 9, each with its cross", 180, 52);
        double x = 190;
        for (const int site : {1, 3, 5, 7, 9}) {
            TextLook look;
            look.site = site;
            const tag_t flipped = note({"site " + std::to_string(site), "HgH"}, x, 32, look);
            double origin[3] = {x, 32, 0}, axis[3] = {0, 0, 1}, degrees = 180, matrix[12];
            int status = -1;
            uf5945(origin, axis, &degrees, matrix, &status);
            const int count = 1, move = 1, sameLayer = 0, noTrace = 2;
            uf5947(matrix, &flipped, &count, &move, &sameLayer, &noTrace, nullptr, nullptr,
                   &status);
            EXPECT_EQ(status, 0);
            cross(x, 32);
            x += 24;
        }
    }

    // What a sheet must not show: blanked objects, hidden layers, other sheets, the model.
    void nothing(tag_t sheet)
    {
        title("Nothing stands in this box", 322, 52);
        line(320, 15, 405, 15, 5), line(405, 15, 405, 48, 5);
        line(405, 48, 320, 48, 5), line(320, 48, 320, 15, 5);
        EXPECT_EQ(UF_OBJ_set_blank_status(line(322, 17, 403, 46, 13), UF_OBJ_BLANKED), 0);
        EXPECT_EQ(UF_LAYER_set_status(50, UF_LAYER_INACTIVE_LAYER), 0);
        for (const tag_t hidden : {line(322, 46, 403, 17, 13), note({"hidden"}, 330, 20),
                                   pattern("master", 330, 20, 0, 2), symbol(1, "A", "B", 390, 30)})
            EXPECT_EQ(UF_OBJ_set_layer(hidden, 50), 0);
        newSheet("Other", 420, 297);
        line(322, 30, 403, 30, 13);
        EXPECT_EQ(UF_DRAW_open_drawing(sheet), 0);
    }

    tag_t m_part = NULL_TAG;
};

} // namespace

TEST_F(Gallery, TheThreeKindsOfFileAgreePixelByPixel)
{
    const tag_t sheet = draw();
    const std::string base = outputFolder() + "/gallery";
    RenderOptions options;
    options.pngDpi = 150;
    writePng(sheet, base + ".png", options);
    writePdf({sheet}, base + ".pdf", options);
    writeSvg(sheet, base + ".svg", options);

    const Picture png = Picture::ofPng(base + ".png", 420);
    const Picture pdf = Picture::ofPdf(base + ".pdf", 420, 150);
    const Picture svg = Picture::ofSvg(base + ".svg", 420, 150);
    EXPECT_EQ(png.inkShare(321, 16, 404, 47), 0); // the box in which nothing stands
    // A twentieth of the sheet is ink; edges that fall between pixels explain what is left.
    EXPECT_GT(png.inkShare(0, 0, 420, 297), 0.03);
    EXPECT_LT(disagreement(png, pdf), 0.0005);
    EXPECT_LT(disagreement(png, svg), 0.0005);
    EXPECT_LT(disagreement(pdf, svg), 0.001);
}
