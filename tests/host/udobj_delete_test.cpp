// What goes, stays and is told when objects are deleted or edited.
#include "udobj_probe.h"

#include <chrono>

using namespace host_test;

namespace {

class UdobjDelete : public UdobjTest {};

} // namespace

// --- deletion -------------------------------------------------------------------------------------

TEST_F(UdobjDelete, Type1TheUdoDiesWithTheObjectWithoutCallback)
{
    const tag_t udo = newUdo();
    const tag_t object = newPoint();
    ASSERT_EQ(addLink(udo, 1, object), 0);
    ASSERT_EQ(UF_OBJ_delete_object(object), 0);
    EXPECT_EQ(statusOf(udo), UF_OBJ_DELETED);
    EXPECT_TRUE(events.empty());
}

TEST_F(UdobjDelete, Type1TheObjectOutlivesTheUdo)
{
    const tag_t udo = newUdo();
    const tag_t object = newPoint();
    ASSERT_EQ(addLink(udo, 1, object), 0);
    ASSERT_EQ(UF_OBJ_delete_object(udo), 0);
    EXPECT_EQ(statusOf(object), UF_OBJ_ALIVE);
    EXPECT_EQ(linksTo(object), LinkEnds{});
}

TEST_F(UdobjDelete, Type2TheObjectDiesWithTheUdo)
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

TEST_F(UdobjDelete, Type2ADeletedObjectStaysCondemnedAndReadable)
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

TEST_F(UdobjDelete, ACondemnedObjectDiesWithItsHolderOrWithTheLink)
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

TEST_F(UdobjDelete, ReorderingLinksKeepsACondemnedObjectHeld)
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

TEST_F(UdobjDelete, AnUnlinkedChildIsReallyDeleted)
{
    const tag_t udo = newUdo();
    const tag_t child = newUdo();
    ASSERT_EQ(addLink(udo, 2, child), 0);
    ASSERT_EQ(deleteLink(udo, 2, child), 0);
    ASSERT_EQ(UF_OBJ_delete_object(child), 0);
    EXPECT_EQ(statusOf(child), UF_OBJ_DELETED);
    EXPECT_TRUE(events.empty());
}

TEST_F(UdobjDelete, Type3TheLinkGoesWithDeleteAndThenUpdateCallback)
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

TEST_F(UdobjDelete, Type4TheLinkGoesSilently)
{
    const tag_t udo = newUdo();
    const tag_t object = newPoint();
    ASSERT_EQ(addLink(udo, 4, object), 0);
    ASSERT_EQ(UF_OBJ_delete_object(object), 0);
    EXPECT_TRUE(events.empty());
    EXPECT_EQ(statusOf(udo), UF_OBJ_ALIVE);
    EXPECT_EQ(linksOf(udo), LinkEnds{});
}

TEST_F(UdobjDelete, HoldersAreAskedInTheOrderTheLinksWereMadeAndTheFirstType2Decides)
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

TEST_F(UdobjDelete, AChildOfTwoParentsIsCondemnedWhenOneDies)
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

TEST_F(UdobjDelete, ACascadeTakesAnOwnedUdoOutOfItsOwnersList)
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

TEST_F(UdobjDelete, AHolderThatStaysCondemnedNamesNoDeadObject)
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

TEST_F(UdobjDelete, AnUnknownOrDeadTagCannotBeDeleted)
{
    const tag_t point = newPoint();
    ASSERT_EQ(UF_OBJ_delete_object(point), 0);
    EXPECT_EQ(UF_OBJ_delete_object(point), UF_err_unknown_tag);
    EXPECT_EQ(UF_OBJ_delete_object(NULL_TAG), UF_err_unknown_tag);
    EXPECT_EQ(UF_OBJ_delete_object(4000000000u), UF_err_unknown_tag);
}

TEST_F(UdobjDelete, ACallbackMayReadDeleteAndUnlinkInsideACascade)
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

TEST_F(UdobjDelete, ACallbackMayDeleteTheHolder)
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

// Callbacks may not do it, and one that does must not bring the session down.
TEST_F(UdobjDelete, ACallbackThatClosesThePartEndsTheCascade)
{
    const tag_t parent = newUdo();
    const tag_t child = newUdo("HOST_LEAF");
    const tag_t listener = newUdo();
    ASSERT_EQ(addLink(parent, 2, child), 0);
    ASSERT_EQ(addLink(listener, 3, child), 0);
    duringDelete = [](tag_t, const UF_UDOBJ_link_t &) { EXPECT_EQ(UF_PART_close_all(), 0); };
    EXPECT_EQ(UF_OBJ_delete_object(parent), 0);
    EXPECT_EQ(UF_PART_ask_num_parts(), 0);
    for (const tag_t gone : {parent, child, listener}) EXPECT_EQ(statusOf(gone), UF_OBJ_DELETED);
}

TEST_F(UdobjDelete, DeletingASheetTakesTheTreeThatHangsOnItAndWhatIsLeftInItsView)
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

TEST_F(UdobjDelete, AnArrayOfObjectsIsDeletedAsFarAsPossible)
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

TEST_F(UdobjDelete, EditedObjectsPutLinksOfTypes1And3OutOfDateUntilTheUpdate)
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

TEST_F(UdobjDelete, TouchingPutsLinksOutOfDateWithoutAnEdit)
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

TEST_F(UdobjDelete, LinksOutOfDateAreStillSoInAReopenedPart)
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

// Each hangs below the one before: by a link of type 2, by one of type 1, by being owned.
TEST_F(UdobjDelete, ChainsOfAnyLengthGoWithTheirFirst)
{
    constexpr int kLength = 200000;
    struct Row {
        const char *how;
        void (*hang)(tag_t below, tag_t above);
    };
    for (const Row &row :
         {Row{"type 2", [](tag_t below, tag_t above) { ASSERT_EQ(addLink(above, 2, below), 0); }},
          Row{"type 1", [](tag_t below, tag_t above) { ASSERT_EQ(addLink(below, 1, above), 0); }},
          Row{"owned", [](tag_t below, tag_t above) { ASSERT_EQ(own(above, {below}), 0); }}}) {
        SCOPED_TRACE(row.how);
        tag_t first = newUdo("HOST_LEAF");
        for (int i = 1; i < kLength; ++i) { // from the end up
            const tag_t above = newUdo("HOST_LEAF");
            row.hang(first, above);
            first = above;
        }
        ASSERT_EQ(nxhost::countObjects(part), static_cast<std::size_t>(kLength));
        ASSERT_EQ(UF_OBJ_delete_object(first), 0);
        EXPECT_EQ(nxhost::countObjects(part), 0u);
    }
}

TEST_F(UdobjDelete, ATreeOfAHundredThousandIsBuiltAskedAndDeletedQuickly)
{
    constexpr int kCount = 100000;
    const auto start = std::chrono::steady_clock::now();
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
    // Under a second; anything that looks at all siblings of each child takes many minutes.
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(60));
}
