// The lines round fields. The block is placed at (100, 50).
#include "tests/content/block_on_sheet.h"

#include "uf_obj.h"
#include "ug_line.hxx"

class FieldBorder : public BlockOnSheet {
protected:
    // A box 40 wide and 8 high at (10, 20): corners (110, 70) and (150, 78).
    static void box(TrFieldDefV1 &def)
    {
        def.SetLocationX(10.0);
        def.SetLocationY(20.0);
        def.SetWidth(40.0);
        def.SetHeight(8.0);
    }
    void boxWith(const std::vector<int> &policies, const EditField &more = {})
    {
        has("A", [&](TrFieldDefV1 &def) {
            box(def);
            def.SetBottomBorderPolicy(policies[0]);
            def.SetLeftBorderPolicy(policies[1]);
            def.SetMiddleBorderPolicy(policies[2]);
            def.SetRightBorderPolicy(policies[3]);
            def.SetTopBorderPolicy(policies[4]);
            if (more) more(def);
        });
        place();
    }
    std::vector<Stroke> drawn() const { return strokes(*field("A")); }
};

TEST_F(FieldBorder, FiveSegmentsOfABoxAboveItsPoint)
{
    boxWith({1, 1, 1, 1, 1});
    // p0 (110, 70), p1 (150, 70), p2 (150, 78), p3 (110, 78)
    EXPECT_EQ(drawn(), (std::vector<Stroke>{
                           {{110, 78}, {150, 78}}, // bottom: p3 to p2
                           {{110, 70}, {110, 78}}, // left: p0 to p3
                           {{110, 74}, {150, 74}}, // middle
                           {{150, 70}, {150, 78}}, // right: p1 to p2
                           {{110, 70}, {150, 70}}, // top: p0 to p1
                       }));
    saveAndReopen();
    EXPECT_EQ(drawn().size(), 5u);
}

TEST_F(FieldBorder, BoxOfATextThatHangsBelowItsPointIsBelowToo)
{
    boxWith({1, 0, 1, 0, 0}, [](TrFieldDefV1 &def) { def.SetTextSite(2); });
    // h is -8: p2 and p3 at 62, the middle at 66.
    EXPECT_EQ(drawn(), (std::vector<Stroke>{{{110, 62}, {150, 62}}, {{110, 66}, {150, 66}}}));
}

TEST_F(FieldBorder, BoxWithoutAHeightIsAsHighAsItsText)
{
    boxWith({1, 0, 0, 0, 1}, [](TrFieldDefV1 &def) {
        def.SetHeight(0.0);
        def.SetMarginHeight(1.0);
        def.SetDefaultString({"A3"});
    });
    // 2 x 1 + 3.5
    EXPECT_EQ(drawn(), (std::vector<Stroke>{{{110, 75.5}, {150, 75.5}}, {{110, 70}, {150, 70}}}));
}

TEST_F(FieldBorder, PoliciesOneAndFourSwitchABorderOn)
{
    boxWith({1, 2, 4, 3, 0});
    const auto one = field("A");
    EXPECT_EQ(one->GetHasBottomBorder(), 1);
    EXPECT_EQ(one->GetHasLeftBorder(), 0);
    EXPECT_EQ(one->GetHasMiddleBorder(), 1);
    EXPECT_EQ(one->GetHasRightBorder(), 0);
    EXPECT_EQ(one->GetHasTopBorder(), 0);
}

TEST_F(FieldBorder, LinesAreCountedAmongTheBordersThatAreOn)
{
    boxWith({1, 0, 0, 0, 1});
    EXPECT_EQ(drawn(), (std::vector<Stroke>{{{110, 78}, {150, 78}}, {{110, 70}, {150, 70}}}));
}

TEST_F(FieldBorder, LinesStandOnThePatternLayerInTheirColour)
{
    boxWith({1, 0, 0, 0, 0}, [](TrFieldDefV1 &def) { def.SetDefaultString({"A3"}); });
    const UF_OBJ_disp_props_t line = shown(borderTags(*field("A")).at(0));
    EXPECT_EQ(line.layer, 20);
    EXPECT_EQ(line.color, Green);
    EXPECT_EQ(line.font, 0);
    EXPECT_EQ(line.line_width, 1);
    EXPECT_EQ(shown(noteTag(*field("A"))).layer, 21);
}

TEST_F(FieldBorder, ExistingLinesMoveWithoutEverHavingNoLength)
{
    boxWith({1, 1, 1, 1, 1});
    const std::vector<tag_t> lines = borderTags(*field("A"));
    // By its own width and height, up, down, left and right, where one end meets the other; and a
    // little.
    for (const At &to : {At{100, 58}, At{100, 50}, At{140, 50}, At{100, 50}, At{140, 58},
                         At{100, 50}, At{100, 42}, At{101, 42.5}, At{60, 34}}) {
        const double point[2] = {to.x, to.y};
        block()->locateBlock(point);
        const double x = to.x + 10, y = to.y + 20;
        EXPECT_EQ(drawn(), (std::vector<Stroke>{{{x, y + 8}, {x + 40, y + 8}},
                                                {{x, y}, {x, y + 8}},
                                                {{x, y + 4}, {x + 40, y + 4}},
                                                {{x + 40, y}, {x + 40, y + 8}},
                                                {{x, y}, {x + 40, y}}}))
            << to;
    }
    EXPECT_EQ(borderTags(*field("A")), lines);
    EXPECT_EQ(nxhost::zeroLengthRefusals(), 0u);
}

TEST_F(FieldBorder, BoxTurnedOverKeepsItsLines)
{
    boxWith({1, 1, 0, 1, 1});
    const std::vector<tag_t> lines = borderTags(*field("A"));
    field("A")->UpdateBorders(8.0);
    field("A")->UpdateBorders(-8.0);
    EXPECT_EQ(drawn().at(1), (Stroke{{110, 70}, {110, 62}}));
    // A side that only changes its direction: both ends meet the other one.
    field("A")->ModifyBorder(Rect{{110, 62, 0}, {150, 62, 0}, {150, 70, 0}, {110, 70, 0}}, 1);
    EXPECT_EQ(drawn().at(1), (Stroke{{110, 62}, {110, 70}}));
    EXPECT_EQ(borderTags(*field("A")), lines);
    EXPECT_EQ(nxhost::zeroLengthRefusals(), 0u);
}

TEST_F(FieldBorder, LineThatStaysOnItsHeightMovesItsEndFirst)
{
    boxWith({0, 0, 0, 0, 1});
    const auto orderOfMove = [&](double height, double y) {
        nxhost::recordCalls(true);
        field("A")->ModifyBorder(
            Rect{{115, y, 0}, {155, y, 0}, {155, y + height, 0}, {115, y + height, 0}}, 4);
        std::string order;
        for (const std::string &call : nxhost::recordedCalls()) {
            if (call == "UgLine::setStartPoint") order += "start ";
            if (call == "UgLine::setEndPoint") order += "end ";
        }
        nxhost::recordCalls(false);
        return order;
    };
    EXPECT_EQ(orderOfMove(8, 70), "end start ");
    EXPECT_EQ(orderOfMove(8, 71), "start end ");
}

TEST_F(FieldBorder, BorderSwitchedOffLosesItsLine)
{
    boxWith({1, 1, 0, 0, 1});
    const std::vector<tag_t> lines = borderTags(*field("A"));
    field("A")->SetHasLeftBorder(0);
    field("A")->fitBorders();
    EXPECT_EQ(drawn(), (std::vector<Stroke>{{{110, 78}, {150, 78}}, {{110, 70}, {150, 70}}}));
    EXPECT_EQ(UF_OBJ_ask_status(lines.at(2)), UF_OBJ_DELETED); // the last one is too many
    field("A")->SetHasBottomBorder(0);
    field("A")->SetHasTopBorder(0);
    field("A")->fitBorders();
    EXPECT_EQ(drawn(), std::vector<Stroke>{});
}

TEST_F(FieldBorder, BoxWithoutWidthOrHeightIsNotDrawn)
{
    has("A", [](TrFieldDefV1 &def) {
        box(def);
        def.SetWidth(0.0);
        def.SetLeftBorderPolicy(1);
    });
    has("B", [](TrFieldDefV1 &def) {
        box(def);
        def.SetHeight(0.0);
        def.SetLeftBorderPolicy(1);
    });
    place();
    EXPECT_EQ(drawn(), std::vector<Stroke>{});
    EXPECT_EQ(strokes(*field("B")), std::vector<Stroke>{});
    EXPECT_EQ(nxhost::zeroLengthRefusals(), 0u);

    field("B")->ModifyValue({"A3"});
    block()->move(nullptr); // now there is a text
    EXPECT_EQ(strokes(*field("B")).size(), 1u);
    field("B")->ModifyValue({""});
    block()->move(nullptr); // what is drawn stays
    EXPECT_EQ(strokes(*field("B")).size(), 1u);
}

TEST_F(FieldBorder, RefusedLineLeavesNothingThatNobodyOwns)
{
    boxWith({0, 0, 0, 0, 0});
    field("A")->SetHasTopBorder(1);
    for (const char *call : {"UgDisplayableObject::setLayer", "UgDisplayableObject::setColor",
                             "UF_UDOBJ_add_owning_links"}) {
        nxhost::failCall(call, 1175001);
        EXPECT_EQ(codeThrownBy([&] { field("A")->fitBorders(); }), 1175001) << call;
        EXPECT_EQ(looseObjects(story.part()), 0u) << call;
    }
    field("A")->fitBorders();
    EXPECT_EQ(drawn().size(), 1u);
}
