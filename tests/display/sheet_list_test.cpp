// Which objects a sheet shows, and where.
#include "paper.h"

#include "model/text_metrics.h"
#include "uf_attr.h"
#include "uf_trns.h"
#include "uf_view.h"

#include <cmath>

using namespace host::display;

namespace {

class SheetList : public Paper {};

void expectPlace(const Place &place, double x, double y, double tolerance = 1e-9)
{
    EXPECT_NEAR(place.x, x, tolerance);
    EXPECT_NEAR(place.y, y, tolerance);
}

} // namespace

TEST_F(SheetList, OnlyTheSheetsOwnObjectsAreSeenInTheOrderOfTheirCreation)
{
    newPart("part");
    UF_CURVE_line_t ends{{0, 0, 0}, {9, 9, 0}};
    tag_t modelLine = NULL_TAG;
    ASSERT_EQ(UF_CURVE_create_line(&ends, &modelLine), 0); // no sheet is current
    const tag_t a = newSheet("A", 100, 100);
    line(1, 0, 2, 0);
    note({"on A"}, 5, 5);
    const tag_t b = newSheet("B", 200, 50);
    line(3, 0, 4, 0);
    ASSERT_EQ(UF_DRAW_open_drawing(a), 0);
    line(5, 0, 6, 0);

    const DisplayList listA = displayList(a), listB = displayList(b);
    EXPECT_EQ(listA.sheet, "A");
    EXPECT_EQ(listB.width, 200);
    EXPECT_EQ(listB.height, 50);
    ASSERT_EQ(listA.items.size(), 3u);
    expectPlace(std::get<LineItem>(listA.items[0]).start, 1, 0);
    EXPECT_EQ(std::get<TextItem>(listA.items[1]).text, "on A");
    expectPlace(std::get<LineItem>(listA.items[2]).start, 5, 0);
    ASSERT_EQ(listB.items.size(), 1u);
    expectPlace(std::get<LineItem>(listB.items[0]).start, 3, 0);
}

TEST_F(SheetList, AnObjectMovedToAnotherViewIsSeenThere)
{
    newPart("part");
    const tag_t a = newSheet("A", 100, 100), b = newSheet("B", 100, 100);
    const tag_t moved = line(1, 1, 2, 2);
    tag_t view = NULL_TAG;
    ASSERT_EQ(UF_DRAW_ask_view_of_drawing(a, &view), 0);
    ASSERT_EQ(UF_VIEW_convert_to_view(view, moved), 0);
    EXPECT_EQ(displayList(a).items.size(), 1u);
    EXPECT_EQ(displayList(b).items.size(), 0u);
}

TEST_F(SheetList, HiddenBlankedAndDeletedObjectsAreNotSeen)
{
    newPart("part");
    const tag_t sheet = newSheet("A", 100, 100);
    const tag_t hidden = line(1, 1, 2, 2), blanked = line(1, 1, 3, 3), deleted = line(1, 1, 4, 4);
    const tag_t reference = line(1, 1, 5, 5);
    ASSERT_EQ(UF_OBJ_set_layer(hidden, 50), 0);
    ASSERT_EQ(UF_LAYER_set_status(50, UF_LAYER_INACTIVE_LAYER), 0);
    ASSERT_EQ(UF_OBJ_set_layer(reference, 60), 0);
    ASSERT_EQ(UF_LAYER_set_status(60, UF_LAYER_REFERENCE_LAYER), 0); // visible, not selectable
    ASSERT_EQ(UF_OBJ_set_blank_status(blanked, UF_OBJ_BLANKED), 0);
    ASSERT_EQ(UF_OBJ_delete_object(deleted), 0);

    const DisplayList list = displayList(sheet);
    ASSERT_EQ(list.items.size(), 1u);
    expectPlace(std::get<LineItem>(list.items[0]).end, 5, 5);
}

TEST_F(SheetList, PointsAndEmptyNotesDrawNothing)
{
    newPart("part");
    const tag_t sheet = newSheet("A", 100, 100);
    double at[3] = {5, 5, 0};
    tag_t point = NULL_TAG;
    ASSERT_EQ(UF_CURVE_create_point(at, &point), 0);
    const tag_t empty = note({"x"}, 5, 5);
    ASSERT_EQ(uc5566(empty, 1, 0, nullptr), 0);
    note({""}, 5, 5);
    EXPECT_TRUE(displayList(sheet).items.empty());
}

TEST_F(SheetList, PensLineFontsAndColoursAreTheObjectsOwn)
{
    newPart("part");
    const tag_t sheet = newSheet("A", 100, 100);
    struct Row {
        int width;
        double millimetres;
    };
    const std::vector<Row> rows{{0, 0.35}, {1, 0.5}, {2, 0.25}, {5, 0.13}, {6, 0.18}, {7, 0.25},
                                {8, 0.35}, {9, 0.5}, {10, 0.7}, {11, 1.0}, {12, 1.4}, {13, 2.0}};
    for (const Row &row : rows) line(0, 0, 10, 0, row.width, 4);
    const auto lines = itemsOf<LineItem>(displayList(sheet));
    ASSERT_EQ(lines.size(), rows.size());
    for (std::size_t i = 0; i < rows.size(); ++i) {
        EXPECT_EQ(lines[i].pen.width, rows[i].millimetres) << rows[i].width;
        EXPECT_EQ(lines[i].pen.lineFont, 4);
        EXPECT_EQ(lines[i].pen.color, 7);
    }
}

TEST_F(SheetList, EachSitePutsItsPointOfTheBoxAtTheOrigin)
{
    newPart("part");
    const tag_t sheet = newSheet("A", 200, 200);
    for (int site = 1; site <= 9; ++site) {
        TextLook look;
        look.site = site;
        look.size = 10;
        note({"HHHH", "HH"}, 100, 100, look);
    }
    const auto texts = textsOf(displayList(sheet));
    ASSERT_EQ(texts.size(), 18u);
    host::Lettering ten;
    ten.size = 10;
    const double width = host::lineWidth("HHHH", ten);
    // Two lines of size 10 at factor 1: 2 x 10 + 10 x 0.5 = 25 high, baselines 15 apart. The first
    // baseline is 10 below the top of the box, the second at its bottom.
    for (int site = 1; site <= 9; ++site) {
        SCOPED_TRACE(site);
        const double left = 100 - width * ((site - 1) % 3) / 2.0;
        const double bottom = 100 - 25.0 * (2 - (site - 1) / 3) / 2.0;
        const auto i = static_cast<std::size_t>(2 * (site - 1));
        expectPlace(texts[i].origin, left, bottom + 15);
        expectPlace(texts[i + 1].origin, left, bottom);
        EXPECT_EQ(texts[i].group, texts[i + 1].group);
    }
}

TEST_F(SheetList, ShorterLinesAreJustifiedWithinTheBox)
{
    newPart("part");
    const tag_t sheet = newSheet("A", 200, 200);
    for (const int justification : {1, 2, 3}) {
        TextLook look;
        look.justification = justification;
        look.size = 10;
        note({"HHHH", "HH"}, 0, 0, look);
    }
    host::Lettering ten;
    ten.size = 10;
    const double rest = host::lineWidth("HHHH", ten) - host::lineWidth("HH", ten);
    const auto texts = textsOf(displayList(sheet));
    ASSERT_EQ(texts.size(), 6u);
    EXPECT_NEAR(texts[1].origin.x, 0.0, 1e-9);
    EXPECT_NEAR(texts[3].origin.x, rest / 2, 1e-9);
    EXPECT_NEAR(texts[5].origin.x, rest, 1e-9);
}

TEST_F(SheetList, AnglesTurnTheBoxAboutTheOriginAndVerticalIsAQuarterMore)
{
    newPart("part");
    const tag_t sheet = newSheet("A", 200, 200);
    TextLook look;
    look.size = 10;
    look.angle = 90;
    note({"A", "B"}, 50, 60, look); // the upper line is 15 to the left
    look.angle = 30;
    look.orientation = 1;
    note({"A", "B"}, 50, 60, look);
    const auto texts = textsOf(displayList(sheet));
    ASSERT_EQ(texts.size(), 4u);
    EXPECT_EQ(texts[0].angle, 90);
    expectPlace(texts[0].origin, 35, 60);
    expectPlace(texts[1].origin, 50, 60);
    EXPECT_EQ(texts[2].angle, 120);
    // 15 along the direction 120 + 90 = 210 degrees: (-12.990381, -7.5).
    expectPlace(texts[2].origin, 50 - 12.990381, 60 - 7.5, 1e-6);
}

TEST_F(SheetList, AFlippedNoteStandsOnItsHeadAtItsOrigin)
{
    newPart("part");
    const tag_t sheet = newSheet("A", 200, 200);
    TextLook look;
    look.size = 10;
    const tag_t flipped = note({"A", "B"}, 50, 60, look);
    double origin[3] = {50, 60, 0}, direction[3] = {0, 0, 1}, degrees = 180, matrix[12];
    int status = -1;
    uf5945(origin, direction, &degrees, matrix, &status);
    ASSERT_EQ(status, 0);
    const int count = 1, move = 1, sameLayer = 0, noTrace = 2;
    uf5947(matrix, &flipped, &count, &move, &sameLayer, &noTrace, nullptr, nullptr, &status);
    ASSERT_EQ(status, 0);
    const auto texts = textsOf(displayList(sheet));
    ASSERT_EQ(texts.size(), 2u);
    EXPECT_NEAR(texts[0].angle, 180, 1e-9);
    expectPlace(texts[0].origin, 50, 45); // the upper line is now 15 below
    expectPlace(texts[1].origin, 50, 60);
}

TEST_F(SheetList, ATextWithoutAColourOfItsOwnHasItsObjects)
{
    newPart("part");
    const tag_t sheet = newSheet("A", 100, 100);
    TextLook green;
    green.color = 2;
    note({"own"}, 5, 5, green);
    ASSERT_EQ(UF_OBJ_set_color(note({"object's"}, 5, 15), 4), 0);
    ASSERT_EQ(UF_OBJ_set_color(symbol(UF_DRF_sym_circle, "A", "", 50, 50), 3), 0);
    const auto texts = textsOf(displayList(sheet));
    ASSERT_EQ(texts.size(), 3u);
    EXPECT_EQ(texts[0].color, 2);
    EXPECT_EQ(texts[1].color, 4);
    EXPECT_EQ(texts[2].color, 3);
    EXPECT_EQ(itemsOf<ArcItem>(displayList(sheet)).at(0).pen.color, 3);
}

TEST_F(SheetList, ReferencesAreShownResolved)
{
    const tag_t part = newPart("part");
    const tag_t sheet = newSheet("A", 100, 100);
    std::string value = "P-100", title = "PART_NO";
    UF_ATTR_value_t attribute{};
    attribute.type = UF_ATTR_string;
    attribute.value.string = value.data();
    ASSERT_EQ(UF_ATTR_assign(part, title.data(), attribute), 0);
    note({"No. <W@PART_NO> of <W@NOBODY>!", "$<5$>"}, 5, 5);
    const auto texts = textsOf(displayList(sheet));
    ASSERT_EQ(texts.size(), 2u);
    EXPECT_EQ(texts[0].text, "No. P-100 of !");
    EXPECT_EQ(texts[1].text, "<5>");
}

// A pattern does not look into its master any more: that part may be closed, changed or gone.
TEST_F(SheetList, APatternSaysWhatItsMasterSaidOfItsOwnObjects)
{
    const auto assign = [](tag_t object, std::string title, std::string text) {
        UF_ATTR_value_t value{};
        value.type = UF_ATTR_string;
        value.value.string = text.data();
        ASSERT_EQ(UF_ATTR_assign(object, title.data(), value), 0);
    };
    const tag_t master = newPart("master");
    const tag_t edge = line(0, 0, 10, 0);
    assign(edge, "REV", "C");
    assign(master, "NUMBER", "of the master");
    const std::string ofEdge = "<W!" + std::to_string(edge) + "@";
    note({"Rev " + ofEdge + "REV> " + ofEdge + "NONE>." + ofEdge + "?REV>",
          "No. <W!" + std::to_string(master) + "@NUMBER>, <W@NUMBER>"},
         0, 0);
    saveAsPattern(master);
    const tag_t part = newPart("part");
    assign(part, "NUMBER", "P-100");
    const tag_t sheet = newSheet("A", 100, 100);
    pattern("master", 10, 10);
    const std::vector<std::string> expected{"Rev C .C", "No. of the master, P-100"};
    const auto shown = [&](tag_t onSheet) {
        std::vector<std::string> lines;
        for (const TextItem &text : textsOf(displayList(onSheet))) lines.push_back(text.text);
        return lines;
    };
    EXPECT_EQ(shown(sheet), expected);

    ASSERT_EQ(UF_PART_save(), 0);
    ASSERT_EQ(UF_PART_close_all(), 0);
    std::filesystem::remove(file("master.prt"));
    tag_t again = NULL_TAG, reopened = NULL_TAG;
    ASSERT_EQ(UF_PART_open(file("part.prt").c_str(), &again, nullptr), 0);
    int count = 0;
    tag_t *sheets = nullptr;
    ASSERT_EQ(UF_DRAW_ask_drawings(&count, &sheets), 0);
    ASSERT_EQ(count, 1);
    reopened = sheets[0];
    UF_free(sheets);
    EXPECT_EQ(shown(reopened), expected);
}

TEST_F(SheetList, PatternsArePlacedTurnedAndScaledWithTheirPensAsTheyAre)
{
    newPart("master");
    line(0, 0, 10, 0, 9);
    nxhost::createArc(5, 0, 2, 0, 90);
    nxhost::createFilledArea({{{1, 0}, {2, 0}, {1, 1}}});
    TextLook look;
    look.size = 2;
    note({"M"}, 3, 1, look);
    ASSERT_EQ(UF_OBJ_set_blank_status(line(0, 0, 99, 99), UF_OBJ_BLANKED), 0);
    saveAsPattern(UF_PART_ask_nth_part(0));
    newPart("part");
    const tag_t sheet = newSheet("A", 100, 100);
    pattern("master", 50, 20, 90, 3); // (x, y) -> (50 - 3 y, 20 + 3 x)

    const DisplayList list = displayList(sheet);
    ASSERT_EQ(list.items.size(), 4u);
    const auto &edge = std::get<LineItem>(list.items[0]);
    expectPlace(edge.start, 50, 20);
    expectPlace(edge.end, 50, 50);
    EXPECT_EQ(edge.pen.width, 0.5);
    const auto &arc = std::get<ArcItem>(list.items[1]);
    expectPlace(arc.centre, 50, 35);
    EXPECT_DOUBLE_EQ(arc.radius, 6);
    EXPECT_NEAR(arc.startAngle, 90, 1e-9);
    EXPECT_NEAR(arc.endAngle, 180, 1e-9);
    const auto &area = std::get<FillItem>(list.items[2]);
    expectPlace(area.outlines.at(0).at(2), 47, 23);
    const auto &text = std::get<TextItem>(list.items[3]);
    expectPlace(text.origin, 47, 29);
    EXPECT_DOUBLE_EQ(text.size, 6);
    EXPECT_NEAR(text.angle, 90, 1e-9);
}

TEST_F(SheetList, TheLayerOfAPatternDecidesForAllItShows)
{
    newPart("master");
    ASSERT_EQ(UF_OBJ_set_layer(line(0, 0, 1, 0), 70), 0);
    saveAsPattern(UF_PART_ask_nth_part(0));
    newPart("part");
    const tag_t sheet = newSheet("A", 100, 100);
    const tag_t placed = pattern("master", 10, 10);
    ASSERT_EQ(UF_LAYER_set_status(70, UF_LAYER_INACTIVE_LAYER), 0);
    EXPECT_EQ(displayList(sheet).items.size(), 1u); // the master's layers mean nothing here
    ASSERT_EQ(UF_OBJ_set_layer(placed, 71), 0);
    ASSERT_EQ(UF_LAYER_set_status(71, UF_LAYER_INACTIVE_LAYER), 0);
    EXPECT_TRUE(displayList(sheet).items.empty());
}

TEST_F(SheetList, SheetsInInchesAreListedInMillimetres)
{
    newPart("part", 2);
    const tag_t sheet = newSheet("A", 11, 8.5, 2);
    line(1, 2, 3, 2, 9);
    TextLook look;
    look.size = 0.125;
    note({"H"}, 1, 1, look);
    const DisplayList list = displayList(sheet);
    EXPECT_DOUBLE_EQ(list.width, 279.4);
    EXPECT_DOUBLE_EQ(list.height, 215.9);
    expectPlace(std::get<LineItem>(list.items[0]).end, 76.2, 50.8);
    EXPECT_EQ(std::get<LineItem>(list.items[0]).pen.width, 0.5);
    EXPECT_DOUBLE_EQ(std::get<TextItem>(list.items[1]).size, 3.175);
}

TEST_F(SheetList, ATagThatIsNoSheetIsRefused)
{
    newPart("part");
    newSheet("A", 100, 100);
    const tag_t edge = line(0, 0, 1, 1);
    for (const tag_t tag : {NULL_TAG, edge, tag_t{4'000'000}}) {
        try {
            displayList(tag);
            FAIL() << tag;
        } catch (const RenderError &error) {
            EXPECT_NE(std::string(error.what()).find("is no drawing sheet"), std::string::npos)
                << error.what();
        }
    }
}
