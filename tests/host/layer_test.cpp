#include "host_fixture.h"

#include "ug_exception.hxx"
#include "ug_session.hxx"

using namespace host_test;

namespace {

class Layer : public HostTest {};

int statusOfLayer(int layer)
{
    int status = 0;
    EXPECT_EQ(UF_LAYER_ask_status(layer, &status), 0);
    return status;
}

int workLayer()
{
    int layer = 0;
    EXPECT_EQ(UF_LAYER_ask_work_layer(&layer), 0);
    return layer;
}

} // namespace

TEST_F(Layer, ANewPartWorksOnLayer1AndAllOthersAreActive)
{
    EXPECT_EQ(workLayer(), 1);
    EXPECT_EQ(statusOfLayer(1), UF_LAYER_WORK_LAYER);
    for (int layer = 2; layer <= 256; ++layer)
        ASSERT_EQ(statusOfLayer(layer), UF_LAYER_ACTIVE_LAYER) << layer;
}

TEST_F(Layer, TheNumbersAreThoseOfTheCInterface)
{
    EXPECT_EQ(UF_LAYER_WORK_LAYER, 1);
    EXPECT_EQ(UF_LAYER_ACTIVE_LAYER, 2);
    EXPECT_EQ(UF_LAYER_REFERENCE_LAYER, 3);
    EXPECT_EQ(UF_LAYER_INACTIVE_LAYER, 4);
    EXPECT_EQ(UF_LAYER_MIN_LAYER, 1);
    EXPECT_EQ(UF_LAYER_MAX_LAYER, 256);
}

TEST_F(Layer, TheWorkLayerKeepsItsStatusWithoutAnError)
{
    EXPECT_EQ(UF_LAYER_set_status(1, UF_LAYER_INACTIVE_LAYER), 0);
    EXPECT_EQ(statusOfLayer(1), UF_LAYER_WORK_LAYER);
    UgSession::setLayerStatus(1, UF_LAYER_ACTIVE_LAYER);
    EXPECT_EQ(workLayer(), 1);
}

TEST_F(Layer, AnotherWorkLayerLeavesTheOldOneActive)
{
    ASSERT_EQ(UF_LAYER_set_status(200, UF_LAYER_WORK_LAYER), 0);
    EXPECT_EQ(workLayer(), 200);
    EXPECT_EQ(statusOfLayer(200), UF_LAYER_WORK_LAYER);
    EXPECT_EQ(statusOfLayer(1), UF_LAYER_ACTIVE_LAYER);
    EXPECT_EQ(UF_LAYER_set_status(1, UF_LAYER_REFERENCE_LAYER), 0);
    EXPECT_EQ(statusOfLayer(1), UF_LAYER_REFERENCE_LAYER);
}

TEST_F(Layer, LayersAndStatusesOutsideTheirRangesAreRefused)
{
    int status = 0;
    EXPECT_EQ(UF_LAYER_set_status(0, 2), UF_err_layer_range);
    EXPECT_EQ(UF_LAYER_set_status(257, 2), UF_err_layer_range);
    EXPECT_EQ(UF_LAYER_ask_status(-1, &status), UF_err_layer_range);
    EXPECT_EQ(UF_LAYER_set_status(5, 0), UF_err_bad_parameter_number_2);
    EXPECT_EQ(UF_LAYER_set_status(5, 5), UF_err_bad_parameter_number_2);
    EXPECT_THROW(UgSession::setLayerStatus(257, 2), UgException);
}

TEST_F(Layer, AllButTheWorkLayerChangeAtOnce)
{
    ASSERT_EQ(UF_LAYER_set_status(7, UF_LAYER_WORK_LAYER), 0);
    ASSERT_EQ(UF_LAYER_set_all_but_work(UF_LAYER_INACTIVE_LAYER), 0);
    EXPECT_EQ(statusOfLayer(7), UF_LAYER_WORK_LAYER);
    EXPECT_EQ(statusOfLayer(1), UF_LAYER_INACTIVE_LAYER);
    EXPECT_EQ(statusOfLayer(256), UF_LAYER_INACTIVE_LAYER);
    EXPECT_NE(UF_LAYER_set_all_but_work(UF_LAYER_WORK_LAYER), 0);
}

TEST_F(Layer, ObjectsOfALayerAreCycledInOrderOfCreation)
{
    const tag_t a = newPoint();
    const tag_t elsewhere = newPoint();
    const tag_t b = newPoint();
    ASSERT_EQ(UF_OBJ_set_layer(elsewhere, 9), 0);
    Tags found;
    tag_t object = NULL_TAG;
    while (UF_LAYER_cycle_by_layer(1, &object) == 0 && object) found.push_back(object);
    EXPECT_EQ(found, (Tags{a, b}));
}

TEST_F(Layer, WithoutAWorkPartThereAreNone)
{
    ASSERT_EQ(UF_PART_close(part, 0, 1), 0);
    EXPECT_EQ(UF_LAYER_set_status(5, 2), UF_err_no_work_part);
}
