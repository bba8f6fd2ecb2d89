// SVG files as art of a block.
#include "app/authoring/library_reader.h"
#include "app/authoring/pattern_writer.h"
#include "app/authoring/svg_reader.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <fstream>

#include <unistd.h>

using namespace app::authoring;

namespace {

constexpr int kPen07 = 10, kPen035 = 8, kPen018 = 6;

class Svg : public testing::Test {
protected:
    void SetUp() override
    {
        char name[] = "/tmp/qelfmt-svg-XXXXXX";
        folder = mkdtemp(name);
    }
    void TearDown() override { std::filesystem::remove_all(folder); }

    std::string write(const std::string &name, const std::string &text) const
    {
        std::ofstream(folder / name, std::ios::binary) << text;
        return (folder / name).string();
    }

    // Elements of a picture of 100 x 50 user units, in a box of 40 x 20 millimetres with its lower left
    // corner at (10, 5): the scale is 0.4, y runs from 25 down to 5.
    Art read(const std::string &elements)
    {
        complaints.clear();
        const std::string path =
            write("a.svg", "<svg xmlns=\"http://www.w3.org/2000/svg\" viewBox=\"0 0 100 50\">\n" +
                               elements + "\n</svg>\n");
        return readSvg(path, {10, 5, 40, 20}, 1, {}, complaints);
    }

    std::string said() const
    {
        std::string text;
        for (const Complaint &complaint : complaints)
            text += toText(complaint).substr(folder.string().size() + 1) + "\n";
        return text;
    }

    std::filesystem::path folder;
    std::vector<Complaint> complaints;
};

template <class Kind> const Kind &only(const Art &art)
{
    EXPECT_EQ(art.size(), 1u);
    return std::get<Kind>(art.at(0));
}

std::string strokes(const Art &art)
{
    std::string text;
    for (const Shape &shape : art) {
        char line[100];
        const auto &one = std::get<ArtLine>(shape);
        std::snprintf(line, sizeof line, "%g,%g %g,%g;", one.from.x, one.from.y, one.to.x,
                      one.to.y);
        text += line;
    }
    return text;
}

// (x, y) in the picture is (10 + 0.4 x, 25 - 0.4 y) in the block.
TEST_F(Svg, ShapesAreFittedIntoTheirCell)
{
    EXPECT_EQ(strokes(read("<line x1=\"0\" y1=\"0\" x2=\"100\" y2=\"50\" stroke=\"black\"/>")),
              "10,25 50,5;");
    EXPECT_EQ(strokes(read("<polyline points=\"0,0 50,0 50,50\" fill=\"none\" stroke=\"black\"/>")),
              "10,25 30,25;30,25 30,5;");
    EXPECT_EQ(strokes(read("<rect x=\"10\" y=\"10\" width=\"20\" height=\"10\" fill=\"none\" "
                           "stroke=\"black\"/>")),
              "14,21 22,21;22,21 22,17;22,17 14,17;14,17 14,21;");
    EXPECT_EQ(said(), "");
}

// A picture of 100 x 50 in a square cell of 20: 20 wide, 10 high, in the middle.
TEST_F(Svg, TheAspectIsKept)
{
    const std::string path =
        write("a.svg", "<svg width=\"100mm\" height=\"50mm\"><rect width=\"100mm\" height=\"50mm\" "
                       "fill=\"none\" stroke=\"black\"/></svg>");
    EXPECT_EQ(strokes(readSvg(path, {0, 0, 20, 20}, 1, {}, complaints)),
              "0,15 20,15;20,15 20,5;20,5 0,5;0,5 0,15;");
}

// A translation by (10, 0), then twice as large: (1, 1) comes to (12, 2), which is (14.8, 24.2).
TEST_F(Svg, TransformsOfGroupsAndShapesAddUp)
{
    EXPECT_EQ(strokes(read("<g transform=\"translate(10)\" fill=\"none\" stroke=\"black\">\n"
                           "<path transform=\"scale(2)\" d=\"M1 1 h4\"/></g>")),
              "14.8,24.2 18,24.2;");
}

// Radius 10 x 0.4 around (10 + 0.4 x 50, 25 - 0.4 x 25).
TEST_F(Svg, CirclesBecomeArcs)
{
    const auto arc =
        only<ArtArc>(read("<circle cx=\"50\" cy=\"25\" r=\"10\" fill=\"none\" stroke=\"black\"/>"));
    EXPECT_NEAR(arc.centre.x, 30, 1e-3);
    EXPECT_NEAR(arc.centre.y, 15, 1e-3);
    EXPECT_NEAR(arc.radius, 4, 1e-2);
    EXPECT_EQ(arc.start, 0);
    EXPECT_EQ(arc.end, 360);
}

// From (60, 25) over the top to (40, 25): on the sheet from 0 to 180 degrees.
TEST_F(Svg, CircularArcsOfPathsBecomeArcs)
{
    const auto arc = only<ArtArc>(
        read("<path d=\"M 60 25 A 10 10 0 0 0 40 25\" fill=\"none\" stroke=\"red\"/>"));
    EXPECT_NEAR(arc.centre.x, 30, 1e-2);
    EXPECT_NEAR(arc.centre.y, 15, 1e-2);
    EXPECT_NEAR(arc.start, 0, 0.1);
    EXPECT_NEAR(arc.end, 180, 0.1);
}

// The ellipse x = 30 + 16 cos t, y = 15 + 8 sin t.
TEST_F(Svg, OtherCurvesAreFollowedWithinTheTolerance)
{
    const Art art = read("<ellipse cx=\"50\" cy=\"25\" rx=\"40\" ry=\"20\" fill=\"none\" "
                         "stroke=\"black\"/>");
    ASSERT_GT(art.size(), 12u);
    for (const Shape &shape : art) {
        const auto &line = std::get<ArtLine>(shape);
        const double x = ((line.from.x + line.to.x) / 2 - 30) / 16;
        const double y = ((line.from.y + line.to.y) / 2 - 15) / 8;
        EXPECT_NEAR(std::hypot(x, y), 1.0, 0.02 / 8 + 1e-3);
    }
    EXPECT_EQ(std::get<ArtLine>(art.front()).from, std::get<ArtLine>(art.back()).to);
}

TEST_F(Svg, FilledShapesBecomeAreas)
{
    const auto area = only<ArtArea>(read("<polygon points=\"0,0 50,0 50,50\"/>"));
    ASSERT_EQ(area.outlines.size(), 1u);
    EXPECT_EQ(area.outlines[0], (std::vector<ArtPoint>{{10, 25}, {30, 25}, {30, 5}}));
}

// Two squares in each other, both drawn clockwise: without holes unless the rule is evenodd, or the inner
// one is drawn the other way round.
TEST_F(Svg, HolesFollowTheFillRule)
{
    const std::string outer = "M0 0 H40 V40 H0 Z ", same = "M10 10 H30 V30 H10 Z",
                      opposite = "M10 10 V30 H30 V10 Z";
    const auto outlines = [&](const std::string &path, const std::string &rule) {
        return only<ArtArea>(read("<path d=\"" + path + "\" fill-rule=\"" + rule + "\"/>"))
            .outlines.size();
    };
    EXPECT_EQ(outlines(outer + same, "nonzero"), 1u);
    EXPECT_EQ(outlines(outer + opposite, "nonzero"), 2u);
    EXPECT_EQ(outlines(outer + same, "evenodd"), 2u);
    EXPECT_EQ(read("<path d=\"M0 0 H9 V9 Z M20 20 H40 V40 Z\"/>").size(), 2u); // side by side
}

// 1 and 2 user units are 0.4 and 0.8 mm; a style wins over an attribute.
TEST_F(Svg, StrokesGetTheNearestPen)
{
    const auto pen = [&](const std::string &attributes) {
        return only<ArtLine>(
                   read("<path d=\"M0 0 H9\" fill=\"none\" stroke=\"black\" " + attributes + "/>"))
            .pen;
    };
    EXPECT_EQ(pen(""), kPen035);
    EXPECT_EQ(pen("stroke-width=\"2\""), kPen07);
    EXPECT_EQ(pen("stroke-width=\"2\" style=\"stroke-width:0.4px\""), kPen018);
}

TEST_F(Svg, WhatIsNotShownIsNotDrawn)
{
    only<ArtLine>(read("<path d=\"M0 0 H9\" stroke=\"black\" fill=\"none\"/>"
                       "<title>x</title><defs><path d=\"M0 0 H9\"/></defs>"
                       "<sodipodi:namedview/><path d=\"M0 0 H9 V9\" fill=\"none\"/>"
                       "<g display=\"none\"><rect width=\"9\" height=\"9\"/></g>"
                       "<rect width=\"9\" height=\"9\" visibility=\"hidden\"/>"));
    EXPECT_EQ(said(), "");
}

TEST_F(Svg, UnsupportedElementsAreReportedByName)
{
    read("<text x=\"1\" y=\"1\">Acme</text>\n"
         "<g><use href=\"#a\"/></g>\n"
         "<style>.a{fill:none}</style>\n"
         "<rect width=\"9\" height=\"9\" fill=\"url(#g)\" clip-path=\"url(#c)\"/>\n"
         "<rect width=\"9\" height=\"9\" style=\"fill:#FFFFFF\"/>\n"
         "<foreignObject/>");
    EXPECT_EQ(said(),
              "a.svg:2:2: text: is not supported: convert it to paths in the drawing program\n"
              "a.svg:3:5: use: is not supported: unlink clones in the drawing program\n"
              "a.svg:4:2: style: is not supported: write fill and stroke as attributes "
              "(\"presentation attributes\")\n"
              "a.svg:5:2: clip-path: is not supported: remove it, or convert it to paths\n"
              "a.svg:5:2: fill: gradients and patterns are not supported: use a plain colour\n"
              "a.svg:6:2: fill: white ink is not supported: cut the shape out of the one below it, "
              "or leave it out\n"
              "a.svg:7:2: foreignObject: is not supported: use paths and basic shapes, or leave it "
              "out\n");
}

TEST_F(Svg, BrokenFilesAreReported)
{
    const auto complaintOf = [&](const std::string &text) {
        complaints.clear();
        readSvg(write("a.svg", text), {0, 0, 9, 9}, 1, {}, complaints);
        return said();
    };
    EXPECT_EQ(complaintOf("<svg viewBox=\"0 0 9 9\">\n<path d=\"M0 0 H9\"\n</svg>"),
              "a.svg:3:1: is no XML: Error parsing start element tag\n");
    EXPECT_EQ(complaintOf("<html/>"), "a.svg:1:1: is no SVG: its first element must be svg\n");
    EXPECT_EQ(complaintOf("<svg/>"),
              "a.svg:1:2: viewBox: is missing, and so are width and height: what is to be fitted "
              "into the cell?\n");
    EXPECT_EQ(complaintOf("<svg viewBox=\"0 0 9 9\"><path d=\"M0 0 L x\"/></svg>"),
              "a.svg:1:25: path: its path data or points cannot be read\n");
    EXPECT_EQ(complaintOf("<svg viewBox=\"0 0 9 9\"><rect width=\"50%\" height=\"1\"/></svg>"),
              "a.svg:1:25: width: \"50%\" is no length in px, mm, cm, in or pt\n");
}

// The file's folder counts, not the one of the process; a changed picture is another pattern.
TEST_F(Svg, ABlockTakesItsArtFromTheFileBesideItsText)
{
    const std::string text =
        write("d.yaml", "blocks:\n"
                        "  B:\n"
                        "    size: [40, 20]\n"
                        "    lines: none\n"
                        "    place: {formats: F, at: [0, 0]}\n"
                        "    cells: {}\n"
                        "    art: [{svg: logo.svg, cell: [0, 0, 40, 20], width: 0.7}]\n");
    write("logo.svg", "<svg viewBox=\"0 0 40 20\"><path d=\"M0 0 H9\" stroke=\"black\"/></svg>");
    const Art art = readLibrary(text).blocks[0].art;
    EXPECT_EQ(only<ArtLine>(art).pen, kPen07);
    write("logo.svg", "<svg viewBox=\"0 0 40 20\"><path d=\"M0 0 H8\" stroke=\"black\"/></svg>");
    EXPECT_NE(patternName("B", readLibrary(text).blocks[0].art, 1), patternName("B", art, 1));
    std::filesystem::remove(folder / "logo.svg");
    try {
        readLibrary(text);
        ADD_FAILURE() << "a missing file was read";
    } catch (const Complaints &missing) {
        complaints = missing.all();
        EXPECT_EQ(said(),
                  "d.yaml:7:17: block B, art: svg: logo.svg: cannot be opened: check the path, "
                  "which counts from the text's folder\n");
    }
    write("logo.svg", "<svg viewBox=\"0 0 40 20\">\n<text>A</text></svg>");
    try {
        readLibrary(text);
        ADD_FAILURE() << "a text was read";
    } catch (const Complaints &wrong) {
        complaints = wrong.all();
        EXPECT_EQ(said(), "d.yaml:7:17: block B, art: svg: logo.svg:2:2: text: is not supported: "
                          "convert it to paths in the drawing program\n");
    }
}

TEST_F(Svg, AStyleSheetIsNotDroppedInSilence)
{
    read("<defs><g/><style>.a{fill:none}</style></defs><rect class=\"a\" width=\"9\" "
         "height=\"9\"/>");
    EXPECT_EQ(said(), "a.svg:2:12: style: is not supported: write fill and stroke as attributes "
                      "(\"presentation attributes\")\n");
    read("<defs><style></style></defs><rect width=\"9\" height=\"9\"/>");
    EXPECT_EQ(said(), "");
}

TEST_F(Svg, TransparencyIsReported)
{
    read("<rect width=\"9\" height=\"9\" opacity=\"0.5\"/>\n"
         "<rect width=\"9\" height=\"9\" style=\"fill-opacity:20%\"/>\n"
         "<rect width=\"9\" height=\"9\" opacity=\"1\" stroke-opacity=\"100%\"/>");
    const std::string remedy = ": transparency is not supported: use a plain colour, or leave the "
                               "shape out\n";
    EXPECT_EQ(said(), "a.svg:2:2: opacity" + remedy + "a.svg:3:2: fill-opacity" + remedy);
}

TEST_F(Svg, APictureThatDrawsNothingIsReported)
{
    read("<rect width=\"9\" height=\"9\" fill=\"none\"/>");
    EXPECT_EQ(said(), "a.svg:1:2: draws nothing: its shapes need a fill or a stroke, and must be "
                      "visible\n");
}

} // namespace
