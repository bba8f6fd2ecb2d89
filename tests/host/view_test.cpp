#include "uf_view.h"

#include "tests/host/drawing_host.h"

#include "uf_curve.h"
#include "uf_layer.h"
#include "uf_udobj.h"

#include <ctime>

namespace {

using Views = DrawingHost;

std::vector<tag_t> objectsIn(tag_t view, UF_VIEW_cycle_objects_t type = UF_VIEW_VISIBLE_OBJECTS)
{
    std::vector<tag_t> objects;
    for (tag_t tag = NULL_TAG; objects.size() < 1000;) {
        EXPECT_EQ(UF_VIEW_cycle_objects(view, type, &tag), 0);
        if (tag == NULL_TAG) break;
        objects.push_back(tag);
    }
    return objects;
}

tag_t addPoint(double x, double y)
{
    double at[3] = {x, y, 0};
    tag_t point = NULL_TAG;
    EXPECT_EQ(UF_CURVE_create_point(at, &point), 0);
    return point;
}

TEST_F(Views, AnObjectMadeOnASheetIsSeenOnThatSheetOnly)
{
    const tag_t a = openNewSheet("A");
    const tag_t inA = addPoint(1, 1);
    const tag_t b = openNewSheet("B");
    const tag_t inB = addPoint(2, 2);
    EXPECT_EQ(objectsIn(viewOf(a)), std::vector{inA});
    EXPECT_EQ(objectsIn(viewOf(b)), std::vector{inB});
}

TEST_F(Views, AModelObjectIsVisibleInEveryViewButDependsOnNone)
{
    const tag_t model = addPoint(0, 0);
    const tag_t a = openNewSheet("A");
    const tag_t inA = addPoint(1, 1);
    const tag_t b = addSheet("B");
    EXPECT_EQ(objectsIn(viewOf(a)), (std::vector{model, inA}));
    EXPECT_EQ(objectsIn(viewOf(b)), std::vector{model});
    EXPECT_EQ(objectsIn(viewOf(a), UF_VIEW_DEPENDENT_OBJECTS), std::vector{inA});
    EXPECT_TRUE(objectsIn(viewOf(b), UF_VIEW_DEPENDENT_OBJECTS).empty());
}

TEST_F(Views, CyclingGoesByCreationWhateverWasConvertedLater)
{
    const tag_t first = addPoint(0, 0);
    const tag_t a = openNewSheet("A");
    const tag_t second = addPoint(1, 1);
    ASSERT_EQ(UF_VIEW_convert_to_view(viewOf(a), first), 0);
    EXPECT_EQ(objectsIn(viewOf(a)), (std::vector{first, second}));
}

TEST_F(Views, APointFarOutsideTheSheetOnAHiddenLayerIsFound)
{
    const tag_t a = openNewSheet("A");
    const tag_t carrier = addPoint(0, -3000);
    ASSERT_EQ(UF_OBJ_set_layer(carrier, 254), 0);
    ASSERT_EQ(UF_LAYER_set_status(254, UF_LAYER_INACTIVE_LAYER), 0);
    EXPECT_EQ(objectsIn(viewOf(a)), std::vector{carrier});
}

TEST_F(Views, ABlankedObjectIsNotVisibleThoughDependent)
{
    const tag_t a = openNewSheet("A");
    const tag_t blanked = addPoint(0, 0);
    const tag_t shown = addPoint(1, 1);
    ASSERT_EQ(UF_OBJ_set_blank_status(blanked, UF_OBJ_BLANKED), 0);
    EXPECT_EQ(objectsIn(viewOf(a)), std::vector{shown});
    EXPECT_EQ(objectsIn(viewOf(a), UF_VIEW_DEPENDENT_OBJECTS), (std::vector{blanked, shown}));
}

TEST_F(Views, NeitherRecordsNorSheetsStandInAView)
{
    const tag_t a = openNewSheet("A");
    const tag_t udo = addRecord();
    EXPECT_TRUE(objectsIn(viewOf(a)).empty());
    EXPECT_EQ(UF_VIEW_convert_to_view(viewOf(a), udo), UF_err_wrong_class);
    EXPECT_EQ(UF_VIEW_convert_to_view(viewOf(a), a), UF_err_wrong_class);
}

TEST_F(Views, NothingIsErasedOrModified)
{
    const tag_t a = openNewSheet("A");
    addPoint(0, 0);
    EXPECT_TRUE(objectsIn(viewOf(a), UF_VIEW_ERASED_OBJECTS).empty());
    EXPECT_TRUE(objectsIn(viewOf(a), UF_VIEW_MODIFIED_OBJECTS).empty());
}

TEST_F(Views, ConvertingMovesAnObjectAlsoFromAnotherView)
{
    const tag_t a = openNewSheet("A"), b = addSheet("B");
    const tag_t point = addPoint(0, 0);
    EXPECT_EQ(UF_VIEW_convert_to_view(viewOf(b), point), 0);
    EXPECT_TRUE(objectsIn(viewOf(a)).empty());
    EXPECT_EQ(objectsIn(viewOf(b)), std::vector{point});
    EXPECT_TRUE(
        changesDuring([&] { EXPECT_EQ(UF_VIEW_convert_to_view(viewOf(b), point), 0); }).empty());
}

TEST_F(Views, ConvertingToTheModelShowsAnObjectEverywhere)
{
    const tag_t a = openNewSheet("A"), b = addSheet("B");
    const tag_t point = addPoint(0, 0);
    EXPECT_EQ(UF_VIEW_convert_to_model(viewOf(b), point), UF_err_bad_parameter_number_1);
    EXPECT_EQ(UF_VIEW_convert_to_model(viewOf(a), point), 0);
    EXPECT_EQ(objectsIn(viewOf(b)), std::vector{point});
    int status = 7;
    char name[31] = "x";
    EXPECT_EQ(uc6409(point, &status, name), 0);
    EXPECT_EQ(status, 0);
    EXPECT_STREQ(name, "");
}

TEST_F(Views, AViewIsFoundByItsName)
{
    const tag_t a = openNewSheet("A");
    const tag_t point = addPoint(0, 0);
    int status = 0;
    char name[64] = "";
    EXPECT_EQ(uc6409(point, &status, name), 0);
    EXPECT_NE(status, 0);
    tag_t view = NULL_TAG;
    EXPECT_EQ(UF_VIEW_ask_tag_of_view_name(name, &view), 0);
    EXPECT_EQ(view, viewOf(a));
    EXPECT_EQ(UF_VIEW_ask_tag_of_view_name("NO SUCH VIEW", &view), UF_err_bad_parameter_number_1);
    EXPECT_EQ(view, NULL_TAG);
}

TEST_F(Views, NullIsTheWorkView)
{
    const tag_t model = addPoint(0, 0);
    EXPECT_EQ(objectsIn(NULL_TAG), std::vector{model});
    const tag_t a = openNewSheet("A");
    const tag_t onSheet = addPoint(1, 1);
    EXPECT_EQ(objectsIn(NULL_TAG), (std::vector{model, onSheet}));
    tag_t work = NULL_TAG;
    EXPECT_EQ(UF_VIEW_ask_work_view(&work), 0);
    EXPECT_EQ(work, viewOf(a));
}

TEST_F(Views, AWrongViewOrTypeIsAnError)
{
    const tag_t a = openNewSheet("A");
    const tag_t point = addPoint(0, 0);
    tag_t at = NULL_TAG;
    EXPECT_EQ(UF_VIEW_cycle_objects(a, UF_VIEW_VISIBLE_OBJECTS, &at), UF_err_wrong_class);
    EXPECT_EQ(UF_VIEW_cycle_objects(viewOf(a), static_cast<UF_VIEW_cycle_objects_t>(0), &at),
              UF_err_bad_parameter_number_2);
    EXPECT_EQ(UF_VIEW_convert_to_view(point, point), UF_err_wrong_class);
    newPart("other", UF_PART_METRIC);
    EXPECT_EQ(UF_VIEW_convert_to_view(viewOf(a), addPoint(0, 0)), UF_err_other_part);
}

// A view of a part with many records and other sheets must not pay for them.
TEST_F(Views, CyclingCostsWhatItReturns)
{
    const tag_t a = openNewSheet("A");
    const tag_t point = addPoint(0, 0);
    openNewSheet("B");
    for (int i = 0; i < 20000; ++i) addPoint(i, 0);
    const double before = clock();
    for (int i = 0; i < 20000; ++i) ASSERT_EQ(objectsIn(viewOf(a)), std::vector{point});
    // Walking over the other sheet each time would be 4e8 steps: more than a second.
    EXPECT_LT((clock() - before) / CLOCKS_PER_SEC, 1.0);
}

} // namespace
