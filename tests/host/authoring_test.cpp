#include "nxhost/authoring.h"

#include "tests/host/drawing_host.h"

#include "uf_layer.h"
#include "uf_view.h"

#include <cmath>

namespace {

using Authoring = DrawingHost;

TEST_F(Authoring, ArcsAndAreasLieOnTheWorkLayerInTheCurrentView)
{
    const tag_t sheet = openNewSheet("A");
    ASSERT_EQ(UF_LAYER_set_status(33, UF_LAYER_WORK_LAYER), 0);
    const tag_t arc = nxhost::createArc(1, 2, 3, 0, 360);
    const tag_t area =
        nxhost::createFilledArea({{{0, 0}, {4, 0}, {4, 3}}, {{1, 1}, {2, 1}, {2, 2}}});
    for (const tag_t tag : {arc, area}) {
        EXPECT_EQ(displayOf(tag).layer, 33);
        int dependent = 0;
        EXPECT_EQ(uc6409(tag, &dependent, nullptr), 0);
        EXPECT_EQ(dependent, 1);
    }
    int type = 0, subtype = 0;
    ASSERT_EQ(UF_OBJ_ask_type_and_subtype(arc, &type, &subtype), 0);
    EXPECT_EQ(type, UF_circle_type);
    EXPECT_NE(nxhost::listSheet(sheet), "");
}

TEST_F(Authoring, AnArcMayCrossTheXAxis)
{
    const tag_t sheet = openNewSheet("A");
    const tag_t crossing = nxhost::createArc(0, 0, 1, 270, 90);
    const std::string listed = nxhost::listSheet(sheet);
    ASSERT_EQ(UF_OBJ_delete_object(crossing), 0);
    nxhost::createArc(0, 0, 1, 270, 450);
    EXPECT_EQ(nxhost::listSheet(sheet), listed);
}

TEST_F(Authoring, WhatWasDrawnCanBeReadBack)
{
    const nxhost::AuthoredArc arc = nxhost::askArc(nxhost::createArc(1, 2, 3, 270, 90));
    EXPECT_EQ(arc.centre.x, 1);
    EXPECT_EQ(arc.centre.y, 2);
    EXPECT_EQ(arc.radius, 3);
    EXPECT_EQ(arc.startAngle, 270);
    EXPECT_EQ(arc.endAngle, 450); // 90 lies one turn further on

    const tag_t area =
        nxhost::createFilledArea({{{0, 0}, {4, 0}, {4, 3}}, {{1, 1}, {2, 1}, {2, 2}}});
    const auto outlines = nxhost::askFilledArea(area);
    ASSERT_EQ(outlines.size(), 2u);
    ASSERT_EQ(outlines[1].size(), 3u);
    EXPECT_EQ(outlines[1][2].x, 2);
    EXPECT_EQ(outlines[1][2].y, 2);
    EXPECT_THROW(nxhost::askArc(area), UgException);
}

TEST_F(Authoring, WhatHasNoShapeIsRefused)
{
    EXPECT_THROW(nxhost::createArc(0, 0, 0, 0, 90), UgException);
    EXPECT_THROW(nxhost::createArc(0, 0, -1, 0, 90), UgException);
    EXPECT_THROW(nxhost::createArc(0, 0, 1, 45, 45), UgException);
    EXPECT_THROW(nxhost::createArc(0, 0, 1, 0, 361), UgException);
    EXPECT_THROW(nxhost::createArc(std::nan(""), 0, 1, 0, 90), UgException);
    EXPECT_THROW(nxhost::createFilledArea({}), UgException);
    EXPECT_THROW(nxhost::createFilledArea({{{0, 0}, {1, 0}}}), UgException);
    EXPECT_EQ(nxhost::countObjects(part()), 0u);
}

TEST_F(Authoring, PatternDataIsAnOptionOfThePart)
{
    EXPECT_FALSE(nxhost::isPatternDataSaved(part()));
    nxhost::setPatternDataSaved(part(), true);
    EXPECT_TRUE(nxhost::isPatternDataSaved(part()));
    EXPECT_TRUE(changesDuring([&] { nxhost::setPatternDataSaved(part(), true); }).empty());
    EXPECT_THROW(nxhost::setPatternDataSaved(NULL_TAG, true), UgException);
}

TEST_F(Authoring, WithoutAWorkPartNothingIsDrawn)
{
    ASSERT_EQ(UF_PART_close(part(), 0, 1), 0);
    EXPECT_THROW(nxhost::createArc(0, 0, 1, 0, 90), UgException);
}

} // namespace
