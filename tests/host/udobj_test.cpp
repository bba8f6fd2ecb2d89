// User defined objects: classes, data arrays, links, owned objects, deletion, update.
#include "host_fixture.h"

#include <cmath>
#include <limits>

using namespace host_test;

namespace {

// What callbacks of the probing classes saw, in order.
struct Event {
    std::string what;
    tag_t udo;
    int type;
    tag_t object;
    bool operator==(const Event &) const = default;
};
void PrintTo(const Event &event, std::ostream *out)
{
    *out << event.what << " " << event.udo << " " << event.type << "->" << event.object;
}
std::vector<Event> events;
void (*duringDelete)(tag_t udo, const UF_UDOBJ_link_t &link) = nullptr;

void onDelete(tag_t udo, UF_UDOBJ_link_p_t link)
{
    events.push_back({"delete", udo, link->link_type, link->assoc_ug_tag});
    if (duringDelete) duringDelete(udo, *link);
}

void onUpdate(tag_t udo, UF_UDOBJ_link_p_t link)
{
    events.push_back({"update", udo, link->link_type, link->assoc_ug_tag});
}

class Udobj : public HostTest {
protected:
    void SetUp() override
    {
        HostTest::SetUp();
        events.clear();
        duringDelete = nullptr;
        ASSERT_EQ(UF_UDOBJ_register_delete_cb(classId("HOST_PROBE"), onDelete), 0);
        ASSERT_EQ(UF_UDOBJ_register_update_cb(classId("HOST_PROBE"), onUpdate), 0);
    }
};

std::vector<int> intsOf(tag_t udo)
{
    UF_UDOBJ_all_data_t data{};
    EXPECT_EQ(UF_UDOBJ_ask_udo_data(udo, &data), 0);
    std::vector<int> values(data.ints, data.ints + data.num_ints);
    EXPECT_EQ(UF_UDOBJ_free_udo_data(&data), 0);
    return values;
}

Tags cycle(tag_t part, UF_UDOBJ_class_t id)
{
    Tags found;
    tag_t udo = NULL_TAG;
    while (UF_UDOBJ_cycle_udos_by_class(part, id, &udo) == 0 && udo != NULL_TAG)
        found.push_back(udo);
    return found;
}

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

// --- links ----------------------------------------------------------------------------------------

TEST_F(Udobj, LinksKeepTheirOrderOverAllTypes)
{
    const tag_t udo = newUdo();
    const tag_t a = newPoint();
    const tag_t b = newPoint();
    ASSERT_EQ(addLink(udo, 4, a), 0);
    ASSERT_EQ(addLink(udo, 2, b), 0);
    UF_UDOBJ_link_t more[] = {{4, b, 0}, {1, a, 0}};
    ASSERT_EQ(UF_UDOBJ_add_links(udo, 2, more), 0);
    EXPECT_EQ(linksOf(udo), (LinkEnds{{4, a}, {2, b}, {4, b}, {1, a}}));
    ASSERT_EQ(deleteLink(udo, 2, b), 0);
    EXPECT_EQ(linksOf(udo), (LinkEnds{{4, a}, {4, b}, {1, a}}));
}

TEST_F(Udobj, AddingLinksIsAllOrNone)
{
    const tag_t udo = newUdo();
    const tag_t a = newPoint();
    UF_UDOBJ_link_t good_and_bad[] = {{4, a, 0}, {5, a, 0}};
    EXPECT_EQ(UF_UDOBJ_add_links(udo, 2, good_and_bad), UF_err_bad_parameter_number_3);
    UF_UDOBJ_link_t good_and_dead[] = {{4, a, 0}, {4, 1, 0}};
    EXPECT_EQ(UF_UDOBJ_add_links(udo, 2, good_and_dead), UF_err_unknown_tag);
    EXPECT_EQ(linksOf(udo), LinkEnds{});
    EXPECT_EQ(linksTo(a), LinkEnds{});
}

TEST_F(Udobj, ANullLinkKeepsItsPlaceAndIsSkippedByDeletion)
{
    const tag_t udo = newUdo();
    const tag_t a = newPoint();
    ASSERT_EQ(addLink(udo, 2, NULL_TAG), 0);
    ASSERT_EQ(addLink(udo, 2, a), 0);
    EXPECT_EQ(linksOf(udo), (LinkEnds{{2, NULL_TAG}, {2, a}}));
    ASSERT_EQ(UF_OBJ_delete_object(udo), 0);
    EXPECT_EQ(statusOf(a), UF_OBJ_DELETED);
}

TEST_F(Udobj, LinksOfUdosMustNotCloseACycle)
{
    const tag_t a = newUdo();
    const tag_t b = newUdo();
    const tag_t c = newUdo();
    EXPECT_EQ(addLink(a, 4, a), UF_err_link_cycle);
    ASSERT_EQ(addLink(a, 2, b), 0);
    ASSERT_EQ(addLink(b, 4, c), 0);
    EXPECT_EQ(addLink(c, 1, a), UF_err_link_cycle);
    EXPECT_EQ(addLink(b, 2, a), UF_err_link_cycle);
    EXPECT_EQ(linksOf(c), LinkEnds{});
    ASSERT_EQ(deleteLink(b, 4, c), 0);
    EXPECT_EQ(addLink(c, 1, a), 0);
}

TEST_F(Udobj, LinksStayWithinAPart)
{
    const tag_t here = newUdo();
    tag_t other = NULL_TAG;
    ASSERT_EQ(UF_PART_new(folder.file("second").c_str(), UF_PART_METRIC, &other), 0);
    const tag_t there = newPoint();
    EXPECT_EQ(addLink(here, 4, there), UF_err_other_part);
    EXPECT_EQ(own(here, {there}), UF_err_other_part);
}

TEST_F(Udobj, TheLinksToAnObjectAreAnsweredInTheOrderTheyWereMade)
{
    const tag_t object = newPoint();
    const tag_t first = newUdo();
    const tag_t second = newUdo();
    EXPECT_EQ(linksTo(object), LinkEnds{});
    ASSERT_EQ(addLink(second, 4, object), 0);
    ASSERT_EQ(addLink(first, 1, object), 0);
    ASSERT_EQ(addLink(second, 2, object), 0);
    EXPECT_EQ(linksTo(object), (LinkEnds{{4, second}, {1, first}, {2, second}}));
    logical linked = FALSE;
    ASSERT_EQ(UF_UDOBJ_is_obj_linked_to_udo(object, &linked), 0);
    EXPECT_TRUE(linked);
    ASSERT_EQ(UF_UDOBJ_is_obj_linked_to_udo(first, &linked), 0);
    EXPECT_FALSE(linked);
}

TEST_F(Udobj, NoLinksAreZeroAndNull)
{
    int count = -1;
    UF_UDOBJ_link_t *links = reinterpret_cast<UF_UDOBJ_link_t *>(&count);
    ASSERT_EQ(UF_UDOBJ_ask_udo_links_to_obj(newPoint(), &count, &links), 0);
    EXPECT_EQ(count, 0);
    EXPECT_EQ(links, nullptr);
    EXPECT_EQ(UF_UDOBJ_ask_udo_links_to_obj(NULL_TAG, &count, &links), UF_err_unknown_tag);
}

TEST_F(Udobj, OwningIsNoLink)
{
    const tag_t udo = newUdo();
    const tag_t point = newPoint();
    ASSERT_EQ(own(udo, {point}), 0);
    EXPECT_EQ(linksTo(point), LinkEnds{});
    EXPECT_EQ(linksOf(udo), LinkEnds{});
}

TEST_F(Udobj, ALinkRewrittenInPlaceKeepsItsPlaceOnBothSides)
{
    const tag_t first = newUdo();
    const tag_t second = newUdo();
    const tag_t a = newPoint();
    const tag_t b = newPoint();
    const tag_t replacement = newPoint();
    ASSERT_EQ(addLink(first, 4, a), 0);
    ASSERT_EQ(addLink(first, 4, b), 0);
    ASSERT_EQ(addLink(second, 4, replacement), 0);
    UF_UDOBJ_link_t links[] = {{4, replacement, 0}, {4, b, 0}};
    ASSERT_EQ(UF_UDOBJ_edit_links(first, links, 0, 2), 0);
    EXPECT_EQ(linksOf(first), (LinkEnds{{4, replacement}, {4, b}}));
    EXPECT_EQ(linksTo(replacement), (LinkEnds{{4, first}, {4, second}}));
    EXPECT_EQ(linksTo(a), LinkEnds{});
}

TEST_F(Udobj, EditingLinksRewritesTheStatedRange)
{
    const tag_t udo = newUdo();
    const tag_t a = newPoint();
    const tag_t b = newPoint();
    const tag_t c = newPoint();
    for (const tag_t target : {a, b, c}) ASSERT_EQ(addLink(udo, 4, target), 0);
    UF_UDOBJ_link_t links[] = {{1, c, 0}, {3, a, 0}, {4, b, 0}};
    ASSERT_EQ(UF_UDOBJ_edit_links(udo, links, 1, 1), 0);
    EXPECT_EQ(linksOf(udo), (LinkEnds{{4, a}, {3, a}, {4, c}}));
    EXPECT_EQ(UF_UDOBJ_edit_links(udo, links, 1, 3), UF_err_count_mismatch);
    EXPECT_EQ(UF_UDOBJ_edit_links(udo, links, 0, 3), 0);
    EXPECT_EQ(linksOf(udo), (LinkEnds{{1, c}, {3, a}, {4, b}}));
}

TEST_F(Udobj, EditingALinkReplacesEveryOneOfItsTypeAndTarget)
{
    const tag_t udo = newUdo();
    const tag_t a = newPoint();
    const tag_t b = newPoint();
    for (const int type : {4, 2, 4}) ASSERT_EQ(addLink(udo, type, a), 0);
    UF_UDOBJ_link_t old{4, a, 0};
    ASSERT_EQ(UF_UDOBJ_edit_link(udo, &old, b), 0);
    EXPECT_EQ(linksOf(udo), (LinkEnds{{4, b}, {2, a}, {4, b}}));
    EXPECT_EQ(UF_UDOBJ_edit_link(udo, &old, b), UF_err_no_such_link);
}

TEST_F(Udobj, DeletingALinkTakesTheFirstOfItsKindAndLeavesTheTargetAlive)
{
    const tag_t udo = newUdo();
    const tag_t child = newPoint();
    const tag_t other = newPoint();
    for (const tag_t target : {child, other, child}) ASSERT_EQ(addLink(udo, 2, target), 0);
    ASSERT_EQ(deleteLink(udo, 2, child), 0);
    EXPECT_EQ(linksOf(udo), (LinkEnds{{2, other}, {2, child}}));
    ASSERT_EQ(deleteLink(udo, 2, child), 0);
    EXPECT_EQ(statusOf(child), UF_OBJ_ALIVE);
    EXPECT_EQ(deleteLink(udo, 2, child), UF_err_no_such_link);
    EXPECT_EQ(deleteLink(udo, 1, other), UF_err_no_such_link);
}

// --- owned objects --------------------------------------------------------------------------------

TEST_F(Udobj, OwnedObjectsKeepTheirOrderAndKnowTheirOwner)
{
    const tag_t udo = newUdo();
    const tag_t a = newPoint();
    const tag_t b = newPoint();
    const tag_t c = newPoint();
    ASSERT_EQ(own(udo, {b, a}), 0);
    ASSERT_EQ(own(udo, {c}), 0);
    EXPECT_EQ(ownedBy(udo), (Tags{b, a, c}));
    EXPECT_EQ(ownerOf(a), udo);
    logical owned = FALSE;
    ASSERT_EQ(UF_UDOBJ_is_owned(a, &owned), 0);
    EXPECT_TRUE(owned);
    ASSERT_EQ(UF_UDOBJ_delete_owning_link(udo, a), 0);
    EXPECT_EQ(ownedBy(udo), (Tags{b, c}));
    EXPECT_EQ(ownerOf(a), NULL_TAG);
    EXPECT_EQ(statusOf(a), UF_OBJ_ALIVE);
    EXPECT_EQ(UF_UDOBJ_delete_owning_link(udo, a), UF_err_no_such_link);
}

TEST_F(Udobj, OwningIsAllOrNone)
{
    const tag_t udo = newUdo();
    const tag_t other = newUdo();
    const tag_t a = newPoint();
    const tag_t b = newPoint();
    ASSERT_EQ(own(other, {b}), 0);
    EXPECT_EQ(own(udo, {a, NULL_TAG}), UF_err_bad_parameter_number_3);
    EXPECT_EQ(own(udo, {a, b}), UF_err_already_owned);
    EXPECT_EQ(own(udo, {a, a}), UF_err_already_owned);
    EXPECT_EQ(own(udo, {a, 1}), UF_err_unknown_tag);
    EXPECT_EQ(own(udo, {udo}), UF_err_link_cycle);
    EXPECT_EQ(ownedBy(udo), Tags{});
    EXPECT_EQ(ownerOf(a), NULL_TAG);
}

TEST_F(Udobj, UdosOwnUdosButNeverInACircle)
{
    const tag_t outer = newUdo();
    const tag_t inner = newUdo();
    ASSERT_EQ(own(outer, {inner}), 0);
    EXPECT_EQ(own(inner, {outer}), UF_err_link_cycle);
}

TEST_F(Udobj, AnOwnedObjectCannotBeDeletedUntilItIsReleased)
{
    const tag_t udo = newUdo();
    const tag_t point = newPoint();
    ASSERT_EQ(own(udo, {point}), 0);
    EXPECT_EQ(UF_OBJ_delete_object(point), UF_OBJ_err_cannot_delete);
    EXPECT_EQ(UF_OBJ_err_cannot_delete, 1155000);
    EXPECT_EQ(statusOf(point), UF_OBJ_ALIVE);
    EXPECT_EQ(ownedBy(udo), Tags{point});
    ASSERT_EQ(UF_UDOBJ_delete_owning_link(udo, point), 0);
    EXPECT_EQ(UF_OBJ_delete_object(point), 0);
    EXPECT_EQ(statusOf(point), UF_OBJ_DELETED);
}

TEST_F(Udobj, OwnedObjectsDieWithTheirOwnerWithoutCallbacks)
{
    const tag_t outer = newUdo();
    const tag_t inner = newUdo();
    const tag_t point = newPoint();
    ASSERT_EQ(own(outer, {inner}), 0);
    ASSERT_EQ(own(inner, {point}), 0);
    ASSERT_EQ(UF_OBJ_delete_object(outer), 0);
    EXPECT_EQ(statusOf(inner), UF_OBJ_DELETED);
    EXPECT_EQ(statusOf(point), UF_OBJ_DELETED);
    EXPECT_TRUE(events.empty());
}

// --- deletion -------------------------------------------------------------------------------------

TEST_F(Udobj, Type1TheUdoDiesWithTheObjectWithoutCallback)
{
    const tag_t udo = newUdo();
    const tag_t object = newPoint();
    ASSERT_EQ(addLink(udo, 1, object), 0);
    ASSERT_EQ(UF_OBJ_delete_object(object), 0);
    EXPECT_EQ(statusOf(udo), UF_OBJ_DELETED);
    EXPECT_TRUE(events.empty());
}

TEST_F(Udobj, Type1TheObjectOutlivesTheUdo)
{
    const tag_t udo = newUdo();
    const tag_t object = newPoint();
    ASSERT_EQ(addLink(udo, 1, object), 0);
    ASSERT_EQ(UF_OBJ_delete_object(udo), 0);
    EXPECT_EQ(statusOf(object), UF_OBJ_ALIVE);
    EXPECT_EQ(linksTo(object), LinkEnds{});
}

TEST_F(Udobj, Type2TheObjectDiesWithTheUdo)
{
    const tag_t udo = newUdo();
    const tag_t child = newUdo();
    const tag_t grandchild = newPoint();
    ASSERT_EQ(addLink(udo, 2, child), 0);
    ASSERT_EQ(addLink(child, 2, grandchild), 0);
    ASSERT_EQ(UF_OBJ_delete_object(udo), 0);
    EXPECT_EQ(statusOf(child), UF_OBJ_DELETED);
    EXPECT_EQ(statusOf(grandchild), UF_OBJ_DELETED);
    EXPECT_TRUE(events.empty()) << "a going UDO hears nothing of its own links";
}

TEST_F(Udobj, Type2ADeletedObjectStaysCondemnedAndReadable)
{
    const tag_t udo = newUdo();
    const tag_t child = newUdo();
    int ints[] = {42};
    ASSERT_EQ(UF_UDOBJ_add_integers(child, 1, ints), 0);
    ASSERT_EQ(addLink(udo, 2, child), 0);
    ASSERT_EQ(UF_OBJ_delete_object(child), 0);
    EXPECT_EQ(events, (std::vector<Event>{{"delete", udo, 2, child}}));
    EXPECT_EQ(statusOf(child), UF_OBJ_CONDEMNED);
    EXPECT_EQ(linksOf(udo), (LinkEnds{{2, child}}));
    EXPECT_EQ(intsOf(child), std::vector<int>{42});
    EXPECT_EQ(cycle(part, classId("HOST_PROBE")), Tags{udo});
    EXPECT_EQ(UF_OBJ_cycle_all(part, udo), NULL_TAG);
}

TEST_F(Udobj, ACondemnedObjectDiesWithItsHolderOrWithTheLink)
{
    const tag_t first = newUdo();
    const tag_t a = newPoint();
    ASSERT_EQ(addLink(first, 2, a), 0);
    ASSERT_EQ(UF_OBJ_delete_object(a), 0);
    ASSERT_EQ(UF_OBJ_delete_object(first), 0);
    EXPECT_EQ(statusOf(a), UF_OBJ_DELETED);

    const tag_t second = newUdo();
    const tag_t third = newUdo();
    const tag_t b = newPoint();
    ASSERT_EQ(addLink(second, 2, b), 0);
    ASSERT_EQ(addLink(third, 2, b), 0);
    ASSERT_EQ(UF_OBJ_delete_object(b), 0);
    ASSERT_EQ(deleteLink(second, 2, b), 0);
    EXPECT_EQ(statusOf(b), UF_OBJ_CONDEMNED) << "the third still holds it";
    ASSERT_EQ(deleteLink(third, 2, b), 0);
    EXPECT_EQ(statusOf(b), UF_OBJ_DELETED);
}

TEST_F(Udobj, ReorderingLinksKeepsACondemnedObjectHeld)
{
    const tag_t udo = newUdo();
    const tag_t a = newPoint();
    const tag_t b = newPoint();
    ASSERT_EQ(addLink(udo, 2, a), 0);
    ASSERT_EQ(addLink(udo, 2, b), 0);
    ASSERT_EQ(UF_OBJ_delete_object(a), 0);
    UF_UDOBJ_link_t links[] = {{2, b, 0}, {2, a, 0}};
    ASSERT_EQ(UF_UDOBJ_edit_links(udo, links, 0, 2), 0);
    EXPECT_EQ(statusOf(a), UF_OBJ_CONDEMNED);
    EXPECT_EQ(linksOf(udo), (LinkEnds{{2, b}, {2, a}}));
}

TEST_F(Udobj, AnUnlinkedChildIsReallyDeleted)
{
    const tag_t udo = newUdo();
    const tag_t child = newUdo();
    ASSERT_EQ(addLink(udo, 2, child), 0);
    ASSERT_EQ(deleteLink(udo, 2, child), 0);
    ASSERT_EQ(UF_OBJ_delete_object(child), 0);
    EXPECT_EQ(statusOf(child), UF_OBJ_DELETED);
    EXPECT_TRUE(events.empty());
}

TEST_F(Udobj, Type3TheLinkGoesWithDeleteAndThenUpdateCallback)
{
    const tag_t udo = newUdo();
    const tag_t object = newPoint();
    ASSERT_EQ(addLink(udo, 3, object), 0);
    ASSERT_EQ(UF_OBJ_delete_object(object), 0);
    EXPECT_EQ(events, (std::vector<Event>{{"delete", udo, 3, object}, {"update", udo, 3, object}}));
    EXPECT_EQ(statusOf(object), UF_OBJ_DELETED);
    EXPECT_EQ(statusOf(udo), UF_OBJ_ALIVE);
    EXPECT_EQ(linksOf(udo), LinkEnds{});
}

TEST_F(Udobj, Type4TheLinkGoesSilently)
{
    const tag_t udo = newUdo();
    const tag_t object = newPoint();
    ASSERT_EQ(addLink(udo, 4, object), 0);
    ASSERT_EQ(UF_OBJ_delete_object(object), 0);
    EXPECT_TRUE(events.empty());
    EXPECT_EQ(statusOf(udo), UF_OBJ_ALIVE);
    EXPECT_EQ(linksOf(udo), LinkEnds{});
}

TEST_F(Udobj, HoldersAreAskedInTheOrderTheLinksWereMadeAndTheFirstType2Decides)
{
    const tag_t object = newPoint();
    const tag_t third = newUdo();
    const tag_t holder = newUdo();
    const tag_t dying = newUdo();
    ASSERT_EQ(addLink(dying, 1, object), 0);
    ASSERT_EQ(addLink(third, 3, object), 0);
    ASSERT_EQ(addLink(holder, 2, object), 0);
    ASSERT_EQ(UF_OBJ_delete_object(object), 0);
    EXPECT_EQ(events,
              (std::vector<Event>{{"delete", third, 3, object}, {"delete", holder, 2, object}}));
    EXPECT_EQ(statusOf(object), UF_OBJ_CONDEMNED);
    EXPECT_EQ(statusOf(dying), UF_OBJ_ALIVE);
    EXPECT_EQ(linksOf(third), (LinkEnds{{3, object}}));
}

TEST_F(Udobj, AChildOfTwoParentsIsCondemnedWhenOneDies)
{
    const tag_t first = newUdo();
    const tag_t second = newUdo();
    const tag_t child = newUdo();
    ASSERT_EQ(addLink(first, 2, child), 0);
    ASSERT_EQ(addLink(second, 2, child), 0);
    ASSERT_EQ(UF_OBJ_delete_object(first), 0);
    EXPECT_EQ(events, (std::vector<Event>{{"delete", second, 2, child}}));
    EXPECT_EQ(statusOf(child), UF_OBJ_CONDEMNED);
    EXPECT_EQ(linksTo(child), (LinkEnds{{2, second}}));
}

TEST_F(Udobj, ACascadeTakesAnOwnedUdoOutOfItsOwnersList)
{
    const tag_t sheet = newPoint();
    const tag_t owner = newUdo();
    const tag_t owned = newUdo();
    ASSERT_EQ(own(owner, {owned}), 0);
    ASSERT_EQ(addLink(owned, 1, sheet), 0);
    ASSERT_EQ(UF_OBJ_delete_object(sheet), 0);
    EXPECT_EQ(statusOf(owned), UF_OBJ_DELETED);
    EXPECT_EQ(ownedBy(owner), Tags{});
}

TEST_F(Udobj, AHolderThatStaysCondemnedNamesNoDeadObject)
{
    const tag_t object = newPoint();
    const tag_t parent = newUdo();
    const tag_t child = newUdo(); // should die with the object, but its parent holds it
    ASSERT_EQ(addLink(child, 1, object), 0);
    ASSERT_EQ(addLink(parent, 2, child), 0);
    ASSERT_EQ(UF_OBJ_delete_object(object), 0);
    EXPECT_EQ(statusOf(object), UF_OBJ_DELETED);
    EXPECT_EQ(statusOf(child), UF_OBJ_CONDEMNED);
    EXPECT_EQ(linksOf(child), LinkEnds{});
}

TEST_F(Udobj, AnUnknownOrDeadTagCannotBeDeleted)
{
    const tag_t point = newPoint();
    ASSERT_EQ(UF_OBJ_delete_object(point), 0);
    EXPECT_EQ(UF_OBJ_delete_object(point), UF_err_unknown_tag);
    EXPECT_EQ(UF_OBJ_delete_object(NULL_TAG), UF_err_unknown_tag);
    EXPECT_EQ(UF_OBJ_delete_object(4000000000u), UF_err_unknown_tag);
}

TEST_F(Udobj, ACallbackMayReadDeleteAndUnlinkInsideACascade)
{
    const tag_t holder = newUdo();
    const tag_t child = newUdo();
    const tag_t bystander = newPoint();
    ASSERT_EQ(addLink(holder, 2, child), 0);
    ASSERT_EQ(addLink(holder, 4, bystander), 0);
    duringDelete = [](tag_t udo, const UF_UDOBJ_link_t &link) {
        const LinkEnds ends = linksOf(udo);
        EXPECT_EQ(ends.size(), 2u);
        EXPECT_EQ(deleteLink(udo, 2, link.assoc_ug_tag), 0); // lets the object go
        EXPECT_EQ(UF_OBJ_delete_object(ends[1].tag), 0);
        EXPECT_EQ(UF_OBJ_delete_object(link.assoc_ug_tag), 0) << "it is going already";
    };
    ASSERT_EQ(UF_OBJ_delete_object(child), 0);
    EXPECT_EQ(statusOf(child), UF_OBJ_DELETED);
    EXPECT_EQ(statusOf(bystander), UF_OBJ_DELETED);
    EXPECT_EQ(linksOf(holder), LinkEnds{});
}

TEST_F(Udobj, ACallbackMayDeleteTheHolder)
{
    const tag_t holder = newUdo();
    const tag_t child = newUdo();
    ASSERT_EQ(addLink(holder, 2, child), 0);
    duringDelete = [](tag_t udo, const UF_UDOBJ_link_t &) {
        EXPECT_EQ(UF_OBJ_delete_object(udo), 0);
    };
    ASSERT_EQ(UF_OBJ_delete_object(child), 0);
    EXPECT_EQ(statusOf(holder), UF_OBJ_DELETED);
    EXPECT_EQ(statusOf(child), UF_OBJ_DELETED);
}

TEST_F(Udobj, DeletingASheetTakesTheTreeThatHangsOnItAndWhatIsLeftInItsView)
{
    const tag_t sheet = newSheet("SH1");
    const tag_t format = newUdo();
    const tag_t block = newUdo();
    const tag_t owned = newPoint();
    const tag_t carrier = newPoint(0.0, -3000.0);
    ASSERT_EQ(addLink(format, 1, sheet), 0);
    ASSERT_EQ(addLink(format, 2, block), 0);
    ASSERT_EQ(own(block, {owned}), 0);
    const tag_t elsewhere = newSheet("SH2");
    const tag_t stays = newPoint();
    EXPECT_EQ(UF_OBJ_delete_object(sheet), UF_OBJ_err_cannot_delete)
        << "sheets have their own call";
    ASSERT_EQ(UF_DRAW_delete_drawing(sheet), 0);
    for (const tag_t gone : {sheet, format, block, owned, carrier})
        EXPECT_EQ(statusOf(gone), UF_OBJ_DELETED);
    EXPECT_TRUE(events.empty());
    EXPECT_EQ(statusOf(stays), UF_OBJ_ALIVE);
    EXPECT_EQ(nxhost::countObjects(part), 2u); // the other sheet and its point
    EXPECT_EQ(statusOf(elsewhere), UF_OBJ_ALIVE);
}

TEST_F(Udobj, AnArrayOfObjectsIsDeletedAsFarAsPossible)
{
    const tag_t udo = newUdo();
    const tag_t owned = newPoint();
    const tag_t loose = newPoint();
    ASSERT_EQ(own(udo, {owned}), 0);
    tag_t both[] = {owned, loose};
    int *statuses = nullptr;
    EXPECT_EQ(UF_OBJ_delete_array_of_objects(2, both, &statuses), UF_OBJ_err_cannot_delete);
    ASSERT_NE(statuses, nullptr);
    EXPECT_EQ(statuses[0], UF_OBJ_err_cannot_delete);
    EXPECT_EQ(statuses[1], 0);
    UF_free(statuses);
    EXPECT_EQ(statusOf(loose), UF_OBJ_DELETED);
    tag_t fine[] = {udo};
    EXPECT_EQ(UF_OBJ_delete_array_of_objects(1, fine, &statuses), 0);
    EXPECT_EQ(statuses, nullptr);
}

// --- update ---------------------------------------------------------------------------------------

TEST_F(Udobj, EditedObjectsPutLinksOfTypes1And3OutOfDateUntilTheUpdate)
{
    const tag_t object = newPoint();
    std::vector<tag_t> udos;
    for (const int type : {1, 2, 3, 4}) {
        udos.push_back(newUdo());
        ASSERT_EQ(addLink(udos.back(), type, object), 0);
        EXPECT_EQ(linkStatuses(udos.back()), std::vector<unsigned>{0});
    }
    ASSERT_EQ(UF_OBJ_set_color(object, 3), 0);
    EXPECT_EQ(linkStatuses(udos[0]), std::vector<unsigned>{1});
    EXPECT_EQ(linkStatuses(udos[1]), std::vector<unsigned>{0});
    EXPECT_EQ(linkStatuses(udos[2]), std::vector<unsigned>{1});
    EXPECT_EQ(linkStatuses(udos[3]), std::vector<unsigned>{0});
    EXPECT_TRUE(events.empty()) << "nothing runs before the update";
    nxhost::updatePart(part);
    EXPECT_EQ(events,
              (std::vector<Event>{{"update", udos[0], 1, object}, {"update", udos[2], 3, object}}));
    EXPECT_EQ(linkStatuses(udos[0]), std::vector<unsigned>{0});
    nxhost::updatePart(part);
    EXPECT_EQ(events.size(), 2u) << "up to date links stay quiet";
}

TEST_F(Udobj, TouchingPutsLinksOutOfDateWithoutAnEdit)
{
    const tag_t object = newPoint();
    const tag_t udo = newUdo();
    ASSERT_EQ(addLink(udo, 3, object), 0);
    nxhost::touch(object);
    UF_UDOBJ_all_data_t data{};
    ASSERT_EQ(UF_UDOBJ_ask_udo_data(udo, &data), 0);
    EXPECT_EQ(data.udo_status, 2u); // "link changed"
    EXPECT_EQ(UF_UDOBJ_free_udo_data(&data), 0);
    nxhost::updatePart(part);
    EXPECT_EQ(events.size(), 1u);
}

TEST_F(Udobj, LinksOutOfDateAreStillSoInAReopenedPart)
{
    const tag_t object = newPoint();
    const tag_t udo = newUdo();
    ASSERT_EQ(addLink(udo, 3, object), 0);
    nxhost::touch(object);
    ASSERT_EQ(UF_PART_save(), 0);
    ASSERT_EQ(UF_PART_close(part, 0, 1), 0);
    UF_PART_load_status_t status{};
    ASSERT_EQ(UF_PART_open(folder.file("work.prt").c_str(), &part, &status), 0);
    nxhost::updatePart(part);
    ASSERT_EQ(events.size(), 1u);
    EXPECT_EQ(linkStatuses(events[0].udo), std::vector<unsigned>{0});
}

// --- size -----------------------------------------------------------------------------------------

TEST_F(Udobj, ATreeOfAHundredThousandIsBuiltAskedAndDeletedQuickly)
{
    constexpr int kCount = 100000;
    const tag_t root = newUdo();
    Tags children;
    children.reserve(kCount);
    for (int i = 0; i < kCount; ++i) {
        children.push_back(newUdo("HOST_LEAF"));
        ASSERT_EQ(addLink(root, 2, children.back()), 0);
    }
    for (int i = 0; i < kCount; i += 10) ASSERT_EQ(linksTo(children[i]).size(), 1u);
    EXPECT_EQ(cycle(part, classId("HOST_LEAF")).size(), static_cast<std::size_t>(kCount));
    ASSERT_EQ(UF_OBJ_delete_object(root), 0);
    EXPECT_EQ(nxhost::countObjects(part), 0u);
}
