// Links and owned objects of user defined objects.
#include "udobj_probe.h"

using namespace host_test;

namespace {

class UdobjLinks : public UdobjTest {};

} // namespace

// --- links ----------------------------------------------------------------------------------------

TEST_F(UdobjLinks, LinksKeepTheirOrderOverAllTypes)
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

TEST_F(UdobjLinks, AddingLinksIsAllOrNone)
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

TEST_F(UdobjLinks, ANullLinkKeepsItsPlaceAndIsSkippedByDeletion)
{
    const tag_t udo = newUdo();
    const tag_t a = newPoint();
    ASSERT_EQ(addLink(udo, 2, NULL_TAG), 0);
    ASSERT_EQ(addLink(udo, 2, a), 0);
    EXPECT_EQ(linksOf(udo), (LinkEnds{{2, NULL_TAG}, {2, a}}));
    ASSERT_EQ(UF_OBJ_delete_object(udo), 0);
    EXPECT_EQ(statusOf(a), UF_OBJ_DELETED);
}

TEST_F(UdobjLinks, LinksOfUdosMustNotCloseACycle)
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

TEST_F(UdobjLinks, LinksStayWithinAPart)
{
    const tag_t here = newUdo();
    tag_t other = NULL_TAG;
    ASSERT_EQ(UF_PART_new(folder.file("second").c_str(), UF_PART_METRIC, &other), 0);
    const tag_t there = newPoint();
    EXPECT_EQ(addLink(here, 4, there), UF_err_other_part);
    EXPECT_EQ(own(here, {there}), UF_err_other_part);
}

TEST_F(UdobjLinks, TheLinksToAnObjectAreAnsweredInTheOrderTheyWereMade)
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

TEST_F(UdobjLinks, NoLinksAreZeroAndNull)
{
    int count = -1;
    UF_UDOBJ_link_t *links = reinterpret_cast<UF_UDOBJ_link_t *>(&count);
    ASSERT_EQ(UF_UDOBJ_ask_udo_links_to_obj(newPoint(), &count, &links), 0);
    EXPECT_EQ(count, 0);
    EXPECT_EQ(links, nullptr);
    EXPECT_EQ(UF_UDOBJ_ask_udo_links_to_obj(NULL_TAG, &count, &links), UF_err_unknown_tag);
}

TEST_F(UdobjLinks, OwningIsNoLink)
{
    const tag_t udo = newUdo();
    const tag_t point = newPoint();
    ASSERT_EQ(own(udo, {point}), 0);
    EXPECT_EQ(linksTo(point), LinkEnds{});
    EXPECT_EQ(linksOf(udo), LinkEnds{});
}

TEST_F(UdobjLinks, ALinkRewrittenInPlaceKeepsItsPlaceOnBothSides)
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

TEST_F(UdobjLinks, EditingLinksRewritesTheStatedRange)
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

TEST_F(UdobjLinks, EditingALinkReplacesEveryOneOfItsTypeAndTarget)
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

TEST_F(UdobjLinks, DeletingALinkTakesTheFirstOfItsKindAndLeavesTheTargetAlive)
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

TEST_F(UdobjLinks, OwnedObjectsKeepTheirOrderAndKnowTheirOwner)
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

TEST_F(UdobjLinks, OwningIsAllOrNone)
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

TEST_F(UdobjLinks, UdosOwnUdosButNeverInACircle)
{
    const tag_t outer = newUdo();
    const tag_t inner = newUdo();
    ASSERT_EQ(own(outer, {inner}), 0);
    EXPECT_EQ(own(inner, {outer}), UF_err_link_cycle);
}

TEST_F(UdobjLinks, AnOwnedObjectCannotBeDeletedUntilItIsReleased)
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

TEST_F(UdobjLinks, OwnedObjectsDieWithTheirOwnerWithoutCallbacks)
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
