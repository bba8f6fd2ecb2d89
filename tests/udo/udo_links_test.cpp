// Links, children and owned objects of one record.
#include "probe.h"

#include "tests/support/story.h"

#include "uf_drf.h"
#include "uf_obj.h"
#include "ug_line.hxx"

namespace {

using Objects = std::vector<UgTypedObject *>;

UgLine *newLine() { return UgLine::create({0, 0, 0}, {1, 0, 0}); }

Probe written()
{
    Probe probe;
    probe.CreateUDO();
    return probe;
}

constexpr LumUg::ChildList<Probe> kProbes{2, "Probes"};
constexpr LumUg::ChildList<OtherProbe> kOthers{2, "Others"};

std::vector<tag_t> tagsOf(const std::vector<boost::shared_ptr<Probe>> &probes)
{
    std::vector<tag_t> tags;
    for (const auto &probe : probes) tags.push_back(probe->tag());
    return tags;
}

} // namespace

TEST(UdoLinks, IndexPastTheEndFillsWithNullLinks)
{
    Story story;
    story.newPart();
    Probe probe;
    UgLine *line = newLine();
    probe.SetLink(4, 1, line);
    EXPECT_EQ(probe.GetLink(4, 0), nullptr);
    EXPECT_EQ(probe.GetLink(4, 1), line);
    EXPECT_EQ(probe.GetLinks(4), Objects{line}); // without the null one
}

TEST(UdoLinks, AreIndexedWithinTheirType)
{
    Story story;
    story.newPart();
    Probe probe;
    UgLine *a = newLine(), *b = newLine(), *c = newLine(), *d = newLine();
    probe.SetLink(4, 0, a);
    probe.SetLink(2, 0, b);
    probe.SetLink(4, 1, c);
    EXPECT_EQ(probe.GetLink(4, 0), a);
    EXPECT_EQ(probe.GetLink(4, 1), c);
    EXPECT_EQ(probe.GetLink(2, 0), b);
    probe.SetLink(4, 0, d);
    EXPECT_EQ(probe.GetLinks(4), (Objects{d, c}));
    EXPECT_EQ(probe.GetLinks(2), Objects{b});
    EXPECT_TRUE(probe.GetLinks(1).empty());
}

TEST(UdoLinks, AreStrictPastTheEndOfTheirType)
{
    Story story;
    story.newPart();
    Probe probe;
    probe.SetLink(4, 0, newLine());
    EXPECT_EQ(textThrownBy([&] { probe.GetLink(4, 1); }),
              "Requested link offset that is greater than UDO has.");
    EXPECT_EQ(textThrownBy([&] { probe.GetLink(2, 0); }),
              "Requested link offset that is greater than UDO has.");
}

TEST(UdoLinks, NullCanBeStored)
{
    Story story;
    story.newPart();
    Probe probe;
    UgLine *line = newLine();
    probe.SetLink(4, 0, line);
    probe.SetLink(4, 1, line);
    probe.SetLink(4, 0, nullptr);
    EXPECT_EQ(probe.GetLink(4, 0), nullptr);
    EXPECT_EQ(probe.GetLink(4, 1), line);
}

TEST(UdoLinks, DeadTargetsDropOut)
{
    Story story;
    story.newPart();
    Probe probe;
    UgLine *a = newLine(), *b = newLine();
    probe.SetLink(4, 0, a);
    probe.SetLink(4, 1, b);
    UgException::throwOnFailure(UF_OBJ_delete_object(a->getTag()));
    EXPECT_EQ(probe.GetLinks(4), Objects{b});
}

TEST(UdoLinks, RemovingOneLeavesTheObjectAndTheOthers)
{
    Story story;
    story.newPart();
    Probe probe;
    UgLine *a = newLine(), *b = newLine();
    probe.SetLink(2, 0, a);
    probe.SetLink(4, 0, a);
    probe.SetLink(2, 1, b);
    probe.removeLink(2, a);
    EXPECT_EQ(probe.GetLinks(2), Objects{b});
    EXPECT_EQ(probe.GetLinks(4), Objects{a});
    EXPECT_TRUE(a->isAlive());
    EXPECT_EQ(codeThrownBy([&] { probe.removeLink(2, a); }), UF_err_no_such_link);
}

TEST(UdoOwned, ManyObjectsAreTakenInOneCall)
{
    Story story;
    story.newPart();
    Probe probe;
    const Objects lines{newLine(), newLine(), newLine()};
    nxhost::clearCallCounts();
    probe.AddOwnedObjects(lines);
    EXPECT_EQ(nxhost::callCount("UF_UDOBJ_add_owning_links"), 1u);
    EXPECT_EQ(probe.GetOwnedObjects(), lines);
    EXPECT_EQ(probe.getOwnedObject(2), lines[2]);
}

TEST(UdoOwned, ARefusedListAddsNothing)
{
    Story story;
    story.newPart();
    Probe probe, owner;
    UgLine *taken = newLine();
    owner.AddOwnedObjects({taken});
    EXPECT_EQ(codeThrownBy([&] {
                  probe.AddOwnedObjects({newLine(), taken});
              }),
              UF_err_already_owned);
    EXPECT_TRUE(probe.GetOwnedObjects().empty());
    EXPECT_THROW(probe.AddOwnedObjects({newLine(), nullptr}), UgException);
    EXPECT_TRUE(probe.GetOwnedObjects().empty());
}

TEST(UdoOwned, PastTheEndIsAnError)
{
    Story story;
    story.newPart();
    Probe probe;
    probe.AddOwnedObjects({newLine()});
    EXPECT_EQ(textThrownBy([&] { probe.getOwnedObject(1); }),
              "Requested owned object offset that is greater than UDO has.");
}

TEST(UdoOwned, ReleasingLeavesTheObjectAlive)
{
    Story story;
    story.newPart();
    Probe probe;
    UgLine *line = newLine();
    probe.AddOwnedObjects({line});
    EXPECT_EQ(UF_OBJ_delete_object(line->getTag()), UF_OBJ_err_cannot_delete);
    probe.DeleteOwnedObject(line);
    EXPECT_TRUE(line->isAlive());
    EXPECT_TRUE(probe.GetOwnedObjects().empty());
    EXPECT_EQ(UF_OBJ_delete_object(line->getTag()), 0);
}

TEST(UdoOwned, ReleasingNothingDoesNothing)
{
    Story story;
    story.newPart();
    Probe probe;
    EXPECT_TRUE(story.changesDuring([&] { probe.DeleteOwnedObject(nullptr); }).empty());
    EXPECT_TRUE(probe.IsNull());
}

TEST(UdoOwned, AreFilteredByTypeWhateverTheirSubtype)
{
    Story story;
    story.newSheet();
    tag_t note = NULL_TAG, symbol = NULL_TAG;
    char text[] = "A", *lines[] = {text};
    double origin[3] = {10, 10, 0};
    UgException::throwOnFailure(UF_DRF_create_note(1, lines, origin, 0, &note));
    UgException::throwOnFailure(
        UF_DRF_create_id_symbol(UF_DRF_sym_circle, text, "", origin, UF_DRF_without_leader,
                                UF_DRF_leader_attach_screen, nullptr, nullptr, &symbol));
    UgLine *line = newLine();
    const auto typed = [](tag_t tag) { return dynamic_cast<UgTypedObject *>(UgObject::find(tag)); };
    Probe probe;
    probe.AddOwnedObjects({typed(note), line, typed(symbol)});
    EXPECT_EQ(probe.GetOwnedObjects(25), (Objects{typed(note), typed(symbol)}));
    EXPECT_EQ(probe.GetOwnedObjects(3), Objects{line});
    EXPECT_TRUE(probe.GetOwnedObjects(10).empty());
}

TEST(UdoOwned, DieWithTheirOwner)
{
    Story story;
    story.newPart();
    Probe probe;
    UgLine *line = newLine();
    probe.AddOwnedObjects({line});
    probe.DeleteUDO();
    EXPECT_FALSE(line->isAlive());
}

TEST(UdoChildren, AreTheLinkedRecordsOfTheirClassInLinkOrder)
{
    Story story;
    story.newPart();
    Probe parent, a = written(), b = written();
    OtherProbe other;
    other.CreateUDO();
    parent.attach(2, b);
    parent.SetLink(2, 1, newLine());
    parent.attach(2, other);
    parent.attach(2, a);
    EXPECT_EQ(tagsOf(parent.children(kProbes)), (std::vector<tag_t>{b.tag(), a.tag()}));
    ASSERT_EQ(parent.children(kOthers).size(), 1u);
    EXPECT_EQ(parent.firstChild(kOthers)->tag(), other.tag());
    EXPECT_EQ(parent.firstChild(kProbes)->tag(), b.tag());
}

TEST(UdoChildren, OfAnEmptyViewAreNone)
{
    const Probe parent;
    EXPECT_TRUE(parent.children(kProbes).empty());
    EXPECT_FALSE(parent.firstChild(kProbes));
}

TEST(UdoChildren, AttachingIsOneLinkAndMakesTheParent)
{
    Story story;
    story.newPart();
    Probe parent, child = written();
    nxhost::clearCallCounts();
    parent.attach(2, child);
    EXPECT_FALSE(parent.IsNull());
    EXPECT_EQ(nxhost::callCount("UF_UDOBJ_add_links"), 1u);
    Probe unwritten;
    EXPECT_THROW(parent.attach(2, unwritten), std::logic_error);
    EXPECT_EQ(parent.children(kProbes).size(), 1u);
}

TEST(UdoChildren, DetachedOnesLiveOn)
{
    Story story;
    story.newPart();
    Probe parent, child = written();
    parent.attach(2, child);
    parent.detach(2, child);
    EXPECT_TRUE(parent.children(kProbes).empty());
    EXPECT_TRUE(child.GetUdoObject()->isAlive());
    parent.DeleteUDO();
    EXPECT_TRUE(child.GetUdoObject()->isAlive());
    EXPECT_THROW(Probe().detach(2, child), UgException);
}

TEST(UdoChildren, DiscardedOnesAreReallyDeleted)
{
    Story story;
    story.newPart();
    Probe parent, child = written(), sibling = written();
    parent.attach(2, child);
    parent.attach(2, sibling);
    const tag_t tag = child.tag();
    parent.discard(2, child);
    EXPECT_TRUE(child.IsNull());
    EXPECT_EQ(UF_OBJ_ask_status(tag), UF_OBJ_DELETED); // not condemned
    EXPECT_EQ(tagsOf(parent.children(kProbes)), std::vector<tag_t>{sibling.tag()});
}

TEST(UdoChildren, ExchangedOnesKeepTheirPlace)
{
    Story story;
    story.newPart();
    Probe parent, a = written(), b = written(), c = written(), fresh = written();
    for (const Probe *child : {&a, &b, &c}) parent.attach(2, *child);
    parent.exchange(2, b, fresh);
    EXPECT_EQ(tagsOf(parent.children(kProbes)),
              (std::vector<tag_t>{a.tag(), fresh.tag(), c.tag()}));
    EXPECT_TRUE(b.GetUdoObject()->isAlive());
    EXPECT_THROW(parent.exchange(2, a, Probe()), std::logic_error);
    EXPECT_THROW(parent.exchange(2, b, c), UgException); // b is no child any more
}

TEST(UdoChildren, DieWithTheirParent)
{
    Story story;
    story.newPart();
    Probe parent, child = written(), grandchild = written(), neighbour = written();
    parent.attach(2, child);
    child.attach(2, grandchild);
    parent.attach(4, neighbour);
    parent.DeleteUDO();
    EXPECT_FALSE(child.GetUdoObject()->isAlive());
    EXPECT_FALSE(grandchild.GetUdoObject()->isAlive());
    EXPECT_TRUE(neighbour.GetUdoObject()->isAlive());
}

TEST(UdoChildren, KeepTheirOrderThroughSavingAndReopening)
{
    Story story;
    story.newPart();
    Probe parent, children[5];
    parent.SetString(0, "parent");
    for (int i = 0; i < 5; ++i) {
        children[i].SetString(0, "child");
        children[i].SetInt(0, i);
    }
    for (const int i : {3, 1, 4, 0, 2}) parent.attach(2, children[i]);
    story.saveAndReopen();
    std::vector<int> order;
    for (UgUDO *udo :
         LumUg::UDO::GetAllUgUDOsOfClass(story.partObject(), Probe::mUDOClass.GetClassId())) {
        const Probe view(udo);
        if (view.GetString(0) != "parent") continue;
        for (const auto &child : view.children(kProbes)) order.push_back(child->GetInt(0, -1));
    }
    EXPECT_EQ(order, (std::vector<int>{3, 1, 4, 0, 2}));
}
