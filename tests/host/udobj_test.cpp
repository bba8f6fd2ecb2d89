// User defined objects: classes and data arrays.
#include "udobj_probe.h"

#include <cmath>
#include <limits>

using namespace host_test;

namespace {

class Udobj : public UdobjTest {};

} // namespace

// --- classes --------------------------------------------------------------------------------------

TEST_F(Udobj, AClassIsKnownByItsNames)
{
    char *name = nullptr;
    char *friendly = nullptr;
    ASSERT_EQ(UF_UDOBJ_ask_class_data(classId("HOST_PROBE"), &name, &friendly), 0);
    EXPECT_STREQ(name, "HOST_PROBE");
    EXPECT_STREQ(friendly, "The HOST_PROBE");
    UF_free(name);
    UF_free(friendly);
    EXPECT_EQ(UF_UDOBJ_ask_class_data(999999, &name, &friendly), UF_err_unknown_class_id);
}

TEST_F(Udobj, AClassNameIsRegisteredOnce)
{
    classId("HOST_PROBE");
    UF_UDOBJ_class_t id = 0;
    EXPECT_EQ(UF_UDOBJ_create_class("HOST_PROBE", "again", &id), UF_err_class_exists);
    EXPECT_EQ(UF_UDOBJ_create_class("", "none", &id), UF_err_bad_parameter_number_1);
}

TEST_F(Udobj, ClassIdsRiseInTheOrderOfRegistration)
{
    const UF_UDOBJ_class_t first = classId("HOST_ORDER_FIRST");
    EXPECT_LT(first, classId("HOST_ORDER_SECOND"));
}

TEST_F(Udobj, AClassIsOnlyFoundByNameWhenItAllowsThat)
{
    const UF_UDOBJ_class_t asked = classId("HOST_QUERY");
    UF_UDOBJ_class_t id = 77;
    EXPECT_EQ(UF_UDOBJ_ask_class_id_of_name("HOST_QUERY", &id), UF_err_class_query_refused);
    EXPECT_EQ(id, 0u);
    ASSERT_EQ(UF_UDOBJ_set_query_class_id(asked, UF_UDOBJ_ALLOW_QUERY_CLASS_ID), 0);
    EXPECT_EQ(UF_UDOBJ_ask_class_id_of_name("HOST_QUERY", &id), 0);
    EXPECT_EQ(id, asked);
    ASSERT_EQ(UF_UDOBJ_set_query_class_id(asked, UF_UDOBJ_DONT_ALLOW_QUERY_CLASS_ID), 0);
    EXPECT_EQ(UF_UDOBJ_ask_class_id_of_name("NOBODY", &id), UF_err_unknown_class_id);
}

TEST_F(Udobj, TheSelectionOfOwnedObjectsIsKeptPerClass)
{
    const UF_UDOBJ_class_t id = classId("HOST_SELECTION");
    EXPECT_EQ(nxhost::ownedObjectSelection("HOST_SELECTION"), UF_UDOBJ_DONT_ALLOW_SELECTION);
    ASSERT_EQ(UF_UDOBJ_set_owned_object_selection(id, UF_UDOBJ_ALLOW_SELECTION), 0);
    EXPECT_EQ(nxhost::ownedObjectSelection("HOST_SELECTION"), 2);
    EXPECT_EQ(nxhost::ownedObjectSelection("NOBODY"), 0);
    EXPECT_EQ(UF_UDOBJ_set_owned_object_selection(999999, UF_UDOBJ_ALLOW_SELECTION),
              UF_err_unknown_class_id);
}

TEST_F(Udobj, AnObjectIsMadeEmptyInTheWorkPart)
{
    const tag_t udo = newUdo();
    tag_t inside = NULL_TAG;
    ASSERT_EQ(UF_OBJ_ask_owning_part(udo, &inside), 0);
    EXPECT_EQ(inside, part);
    UF_UDOBJ_all_data_t data{};
    ASSERT_EQ(UF_UDOBJ_ask_udo_data(udo, &data), 0);
    EXPECT_EQ(data.class_id, classId("HOST_PROBE"));
    EXPECT_EQ(data.udo_status, 0u);
    EXPECT_EQ(data.num_ints + data.num_doubles + data.num_strings + data.num_links +
                  data.num_lengths + data.num_areas + data.num_volumes,
              0u);
    EXPECT_EQ(data.ints, nullptr);
    EXPECT_EQ(data.strings, nullptr);
    EXPECT_EQ(data.link_defs, nullptr);
    EXPECT_EQ(UF_UDOBJ_free_udo_data(&data), 0);
    char *name = nullptr;
    ASSERT_EQ(UF_UDOBJ_ask_udo_class_name(udo, &name), 0);
    EXPECT_STREQ(name, "HOST_PROBE");
    UF_free(name);
}

TEST_F(Udobj, NoObjectIsMadeOfAnUnknownClassOrWithoutAWorkPart)
{
    tag_t udo = NULL_TAG;
    EXPECT_EQ(UF_UDOBJ_create_udo(999999, &udo), UF_err_unknown_class_id);
    ASSERT_EQ(UF_PART_close(part, 0, 1), 0);
    EXPECT_EQ(UF_UDOBJ_create_udo(classId("HOST_PROBE"), &udo), UF_err_no_work_part);
    EXPECT_EQ(udo, NULL_TAG);
}

TEST_F(Udobj, ObjectsOfAClassAreCycledInOrderOfCreation)
{
    const tag_t a = newUdo("HOST_ORDER_A");
    const tag_t b = newUdo("HOST_ORDER_B");
    const tag_t a2 = newUdo("HOST_ORDER_A");
    EXPECT_EQ(cycle(part, classId("HOST_ORDER_A")), (Tags{a, a2}));
    EXPECT_EQ(cycle(part, classId("HOST_ORDER_B")), (Tags{b}));
    EXPECT_EQ(cycle(part, classId("HOST_QUERY")), Tags{});
    ASSERT_EQ(UF_OBJ_delete_object(a), 0);
    EXPECT_EQ(cycle(part, classId("HOST_ORDER_A")), (Tags{a2}));
    tag_t dead = a;
    EXPECT_EQ(UF_UDOBJ_cycle_udos_by_class(part, classId("HOST_ORDER_A"), &dead),
              UF_err_unknown_tag);
}

// --- data arrays ----------------------------------------------------------------------------------

TEST_F(Udobj, AddingIsCumulativeAndKeepsEveryBit)
{
    const tag_t udo = newUdo();
    const double nan = std::numeric_limits<double>::quiet_NaN();
    int ints[] = {1, -2};
    double doubles[] = {0.1, nan};
    double lengths[] = {25.4};
    double areas[] = {-0.0};
    double volumes[] = {1e308, 5e-324};
    char first[] = "a";
    char second[] = "caf\xe9";
    char empty[] = "";
    char *strings[] = {first, empty, second};
    ASSERT_EQ(UF_UDOBJ_add_integers(udo, 2, ints), 0);
    ASSERT_EQ(UF_UDOBJ_add_integers(udo, 1, ints), 0);
    ASSERT_EQ(UF_UDOBJ_add_doubles(udo, 2, doubles), 0);
    ASSERT_EQ(UF_UDOBJ_add_lengths(udo, 1, lengths), 0);
    ASSERT_EQ(UF_UDOBJ_add_areas(udo, 1, areas), 0);
    ASSERT_EQ(UF_UDOBJ_add_volumes(udo, 2, volumes), 0);
    ASSERT_EQ(UF_UDOBJ_add_strings(udo, 3, strings), 0);

    UF_UDOBJ_all_data_t data{};
    ASSERT_EQ(UF_UDOBJ_ask_udo_data(udo, &data), 0);
    ASSERT_EQ(data.num_ints, 3u);
    EXPECT_EQ(data.ints[0], 1);
    EXPECT_EQ(data.ints[1], -2);
    EXPECT_EQ(data.ints[2], 1);
    ASSERT_EQ(data.num_doubles, 2u);
    EXPECT_EQ(data.doubles[0], 0.1);
    EXPECT_TRUE(std::isnan(data.doubles[1]));
    ASSERT_EQ(data.num_lengths, 1u);
    EXPECT_EQ(data.lengths[0], 25.4);
    ASSERT_EQ(data.num_areas, 1u);
    EXPECT_TRUE(std::signbit(data.areas[0]));
    ASSERT_EQ(data.num_volumes, 2u);
    EXPECT_EQ(data.volumes[1], 5e-324);
    ASSERT_EQ(data.num_strings, 3u);
    EXPECT_STREQ(data.strings[0], "a");
    EXPECT_STREQ(data.strings[1], "");
    EXPECT_STREQ(data.strings[2], "caf\xe9");
    EXPECT_EQ(UF_UDOBJ_free_udo_data(&data), 0);
}

TEST_F(Udobj, AReadingIsACopy)
{
    const tag_t udo = newUdo();
    int ints[] = {1};
    ASSERT_EQ(UF_UDOBJ_add_integers(udo, 1, ints), 0);
    UF_UDOBJ_all_data_t before{};
    ASSERT_EQ(UF_UDOBJ_ask_udo_data(udo, &before), 0);
    int edited[] = {9};
    ASSERT_EQ(UF_UDOBJ_edit_integers(udo, edited), 0);
    EXPECT_EQ(before.ints[0], 1);
    before.ints[0] = 5;
    EXPECT_EQ(intsOf(udo), std::vector<int>{9});
    EXPECT_EQ(UF_UDOBJ_free_udo_data(&before), 0);
}

TEST_F(Udobj, EditingReadsAsManyValuesAsAreStored)
{
    const tag_t udo = newUdo();
    int ints[] = {1, 2};
    ASSERT_EQ(UF_UDOBJ_add_integers(udo, 2, ints), 0);
    int edited[] = {7, 8, 9};
    ASSERT_EQ(UF_UDOBJ_edit_integers(udo, edited), 0);
    EXPECT_EQ(intsOf(udo), (std::vector<int>{7, 8}));
    EXPECT_NE(UF_UDOBJ_edit_integers(udo, nullptr), 0);
}

TEST_F(Udobj, EditingAnEmptyFamilyTouchesNoMemory)
{
    const tag_t udo = newUdo();
    EXPECT_EQ(UF_UDOBJ_edit_integers(udo, nullptr), 0);
    EXPECT_EQ(UF_UDOBJ_edit_doubles(udo, nullptr), 0);
    EXPECT_EQ(UF_UDOBJ_edit_strings(udo, nullptr), 0);
    EXPECT_EQ(UF_UDOBJ_edit_lengths(udo, nullptr), 0);
    EXPECT_EQ(UF_UDOBJ_edit_areas(udo, nullptr), 0);
    EXPECT_EQ(UF_UDOBJ_edit_volumes(udo, nullptr), 0);
}

TEST_F(Udobj, DeletingEmptiesOneFamily)
{
    const tag_t udo = newUdo();
    int ints[] = {1};
    double doubles[] = {2.0};
    char text[] = "x";
    char *strings[] = {text};
    ASSERT_EQ(UF_UDOBJ_add_integers(udo, 1, ints), 0);
    ASSERT_EQ(UF_UDOBJ_add_doubles(udo, 1, doubles), 0);
    ASSERT_EQ(UF_UDOBJ_add_strings(udo, 1, strings), 0);
    ASSERT_EQ(UF_UDOBJ_delete_strings(udo), 0);
    ASSERT_EQ(UF_UDOBJ_delete_doubles(udo), 0);
    UF_UDOBJ_all_data_t data{};
    ASSERT_EQ(UF_UDOBJ_ask_udo_data(udo, &data), 0);
    EXPECT_EQ(data.num_ints, 1u);
    EXPECT_EQ(data.num_doubles, 0u);
    EXPECT_EQ(data.doubles, nullptr);
    EXPECT_EQ(data.num_strings, 0u);
    EXPECT_EQ(UF_UDOBJ_free_udo_data(&data), 0);
}

TEST_F(Udobj, ANullAmongStringsIsRefusedAndNothingIsAdded)
{
    const tag_t udo = newUdo();
    char text[] = "x";
    char *strings[] = {text, nullptr};
    EXPECT_EQ(UF_UDOBJ_add_strings(udo, 2, strings), UF_err_bad_parameter_number_3);
    UF_UDOBJ_all_data_t data{};
    ASSERT_EQ(UF_UDOBJ_ask_udo_data(udo, &data), 0);
    EXPECT_EQ(data.num_strings, 0u);
    EXPECT_EQ(UF_UDOBJ_free_udo_data(&data), 0);
}

TEST_F(Udobj, DataCallsRefuseOtherObjectsAndNullTags)
{
    const tag_t point = newPoint();
    UF_UDOBJ_all_data_t data{};
    EXPECT_EQ(UF_UDOBJ_ask_udo_data(point, &data), UF_err_wrong_class);
    EXPECT_EQ(UF_UDOBJ_ask_udo_data(NULL_TAG, &data), UF_err_unknown_tag);
    EXPECT_EQ(UF_UDOBJ_add_integers(point, 0, nullptr), UF_err_wrong_class);
    EXPECT_EQ(nxhost::outstandingDataBlocks(), 0u);
}
