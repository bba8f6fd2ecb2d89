// Making, finding and deleting the object behind a view.
#include "probe.h"

#include "tests/support/story.h"

#include "foundation/qel_object.h"
#include "uf_obj.h"
#include "ug_line.hxx"

#include <cstring>
#include <type_traits>

namespace {

int layerOf(const Probe &probe) { return probe.GetUdoObject()->getLayer(); }

} // namespace

TEST(UdoLife, TheFirstWriteMakesTheObjectOnLayer254)
{
    Story story;
    story.newPart();
    Probe probe;
    EXPECT_TRUE(probe.IsNull());
    probe.SetInt(3, 9);
    EXPECT_FALSE(probe.IsNull());
    EXPECT_EQ(layerOf(probe), 254);
    EXPECT_EQ(probe.GetUdoObject()->askClassId(), Probe::mUDOClass.GetClassId());
}

TEST(UdoLife, EveryKindOfWriteMakesTheObject)
{
    Story story;
    story.newPart();
    UgLine *line = UgLine::create({0, 0, 0}, {1, 0, 0});
    const std::vector<std::pair<const char *, std::function<void(Probe &)>>> writes{
        {"int", [](Probe &p) { p.SetInt(0, 1); }},
        {"double", [](Probe &p) { p.SetDouble(0, 1); }},
        {"string", [](Probe &p) { p.SetString(0, ""); }},
        {"length", [](Probe &p) { p.SetLength(0, 1); }},
        {"area", [](Probe &p) { p.SetArea(0, 1); }},
        {"volume", [](Probe &p) { p.SetVolume(0, 1); }},
        {"link", [&](Probe &p) { p.SetLink(4, 0, line); }},
        {"owned objects", [](Probe &p) { p.AddOwnedObjects({}); }},
        {"tail",
         [](Probe &p) {
             p.set(LumUg::StringTail{0, "Tail"}, {});
         }},
        {"attribute",
         [](Probe &p) {
             p.set(LumUg::AttributeSlot{"ID", "Id"}, "1");
         }},
        {"nothing", [](Probe &p) { p.CreateUDO(); }},
    };
    for (const auto &[name, write] : writes) {
        SCOPED_TRACE(name);
        Probe probe;
        write(probe);
        EXPECT_FALSE(probe.IsNull());
        EXPECT_EQ(layerOf(probe), 254);
    }
    Probe remover;
    EXPECT_THROW(remover.removeLink(4, line), UgException); // no such link, yet the object is made
    EXPECT_FALSE(remover.IsNull());
    Probe releaser;
    EXPECT_THROW(releaser.DeleteOwnedObject(line), UgException);
    EXPECT_FALSE(releaser.IsNull());
}

TEST(UdoLife, AnAttachedViewNeverMakesASecondObject)
{
    Story story;
    story.newPart();
    Probe probe;
    probe.CreateUDO();
    const tag_t tag = probe.tag();
    probe.CreateUDO();
    probe.SetString(4, "x");
    EXPECT_EQ(probe.tag(), tag);
    EXPECT_EQ(nxhost::countObjects(story.part()), 1u);
}

TEST(UdoLife, DeletingEmptiesTheViewAndALaterWriteMakesANewObject)
{
    Story story;
    story.newPart();
    Probe probe;
    probe.SetInt(0, 1);
    const tag_t old = probe.tag();
    probe.DeleteUDO();
    EXPECT_TRUE(probe.IsNull());
    EXPECT_EQ(nxhost::countObjects(story.part()), 0u);
    probe.DeleteUDO(); // nothing to delete is no error
    probe.SetInt(0, 1);
    EXPECT_NE(probe.tag(), old);
    EXPECT_EQ(probe.GetInts(), std::vector<int>{1});
}

TEST(UdoLife, ARefusedDeletionKeepsTheView)
{
    Story story;
    story.newPart();
    Probe probe;
    probe.SetInt(0, 1);
    nxhost::failCall("UF_OBJ_delete_object", UF_OBJ_err_cannot_delete);
    EXPECT_EQ(codeThrownBy([&] { probe.DeleteUDO(); }), UF_OBJ_err_cannot_delete);
    EXPECT_FALSE(probe.IsNull());
    EXPECT_EQ(probe.GetInt(0, 0), 1);
}

TEST(UdoLife, AFailingCreationLeavesTheViewEmpty)
{
    Story story;
    story.newPart();
    Probe probe;
    nxhost::failCall("UF_UDOBJ_create_udo", UF_err_unknown_class_id);
    EXPECT_EQ(codeThrownBy([&] { probe.SetInt(0, 1); }), UF_err_unknown_class_id);
    EXPECT_TRUE(probe.IsNull());
    EXPECT_EQ(nxhost::countObjects(story.part()), 0u);
}

TEST(UdoLife, AViewWithoutAClassCannotMakeItsObject)
{
    Story story;
    story.newPart();
    PlainProbe plain;
    EXPECT_EQ(plain.GetUDOClass(), nullptr);
    EXPECT_THROW(plain.CreateUDO(), std::logic_error);
    EXPECT_TRUE(plain.IsNull());
}

TEST(UdoLife, TheBaseAnswersThePlatformsCallsWithNothing)
{
    Story story;
    story.newPart();
    Probe probe;
    probe.SetInt(0, 1);
    PlainProbe plain(probe.GetUdoObject());
    nxhost::takeInfoWindow();
    EXPECT_TRUE(story
                    .changesDuring([&] {
                        plain.InfoObject();
                        plain.MemberDeletion(nullptr);
                        plain.Update(nullptr);
                    })
                    .empty());
    EXPECT_EQ(nxhost::takeInfoWindow(), "");
}

TEST(UdoLife, ATagFindsTheWrapperOfItsClass)
{
    Story story;
    story.newPart();
    Probe probe;
    probe.SetInt(0, 4);
    OtherProbe other;
    other.SetInt(0, 5);
    const auto found = LumUg::UDO::Create(probe.tag());
    ASSERT_TRUE(boost::dynamic_pointer_cast<Probe>(found));
    EXPECT_EQ(found->GetInt(0, 0), 4);
    EXPECT_EQ(found->tag(), probe.tag());
    EXPECT_TRUE(boost::dynamic_pointer_cast<OtherProbe>(
        LumUg::UDO::Create(static_cast<const UgTypedObject *>(other.GetUdoObject()))));
}

TEST(UdoLife, ATagThatIsNoUdoOrIsGoneFindsNothing)
{
    Story story;
    const tag_t sheet = story.newSheet();
    const tag_t line = UgLine::create({0, 0, 0}, {1, 0, 0})->getTag();
    Probe probe;
    probe.SetInt(0, 1);
    const tag_t dead = probe.tag();
    UgUDO *stale = probe.GetUdoObject();
    probe.DeleteUDO();

    EXPECT_FALSE(LumUg::UDO::Create(line));
    EXPECT_FALSE(LumUg::UDO::Create(sheet));
    EXPECT_FALSE(LumUg::UDO::Create(story.part()));
    EXPECT_FALSE(LumUg::UDO::Create(NULL_TAG));
    EXPECT_FALSE(LumUg::UDO::Create(dead));
    EXPECT_FALSE(LumUg::UDO::Create(999999u));
    EXPECT_FALSE(LumUg::UDO::Create(static_cast<const UgTypedObject *>(nullptr)));
    EXPECT_FALSE(LumUg::UDO::Create(static_cast<const UgTypedObject *>(stale)));
}

TEST(UdoLife, AllObjectsOfAClassComeInOrderOfCreation)
{
    Story story;
    story.newPart();
    const auto all = [&] {
        return LumUg::UDO::GetAllUgUDOsOfClass(story.partObject(), Probe::mUDOClass.GetClassId());
    };
    EXPECT_TRUE(all().empty());
    Probe a, b, c;
    OtherProbe between;
    a.SetInt(0, 1);
    between.SetInt(0, 1);
    b.SetInt(0, 2);
    c.SetInt(0, 3);
    EXPECT_EQ(all(), (std::vector<UgUDO *>{a.GetUdoObject(), b.GetUdoObject(), c.GetUdoObject()}));
    b.DeleteUDO();
    EXPECT_EQ(all(), (std::vector<UgUDO *>{a.GetUdoObject(), c.GetUdoObject()}));
}

TEST(UdoLife, AllObjectsOfAClassAreThoseOfTheGivenPart)
{
    Story story;
    story.newPart("one.prt");
    UgPart *one = story.partObject();
    Probe a;
    a.SetInt(0, 1);
    story.newPart("two.prt");
    Probe b;
    b.SetInt(0, 2);
    const unsigned id = Probe::mUDOClass.GetClassId();
    EXPECT_EQ(LumUg::UDO::GetAllUgUDOsOfClass(one, id), std::vector<UgUDO *>{a.GetUdoObject()});
    EXPECT_EQ(LumUg::UDO::GetAllUgUDOsOfClass(story.partObject(), id),
              std::vector<UgUDO *>{b.GetUdoObject()});
}

TEST(UdoLife, ANullContextIsRefused)
{
    EXPECT_EQ(textThrownBy([] { LumUg::UDO::GetAllUgUDOsOfClass(nullptr, 1); }),
              "Null context passed to UDO::GetAllUgUDOsOfClass");
    const std::unique_ptr<QelObject> tagless(
        dynamic_cast<QelObject *>(nxhost::createDerived("QelObject")));
    ASSERT_TRUE(tagless);
    EXPECT_EQ(tagless->getTag(), NULL_TAG);
    EXPECT_EQ(textThrownBy([&] { LumUg::UDO::GetAllUgUDOsOfClass(tagless.get(), 1); }),
              "Null context passed to UDO::GetAllUgUDOsOfClass");
}

TEST(UdoLife, AFailingCycleIsRaised)
{
    Story story;
    story.newPart();
    EXPECT_EQ(codeThrownBy([&] { LumUg::UDO::GetAllUgUDOsOfClass(story.partObject(), 0xFFFFFF); }),
              UF_err_unknown_class_id);
}

// Callers of other libraries reach the operations by their place in the table.
TEST(UdoLife, VirtualOperationsStandInTheirOrder)
{
    const auto slotOf = [](auto member) { // Itanium ABI: 1 + offset in the table
        std::ptrdiff_t raw = 0;
        static_assert(sizeof member >= sizeof raw);
        std::memcpy(&raw, &member, sizeof raw);
        return (raw - 1) / static_cast<std::ptrdiff_t>(sizeof(void *));
    };
    using LumUg::UDO;
    static_assert(std::has_virtual_destructor_v<UDO>);
    EXPECT_EQ(slotOf(&UDO::InfoObject), 2); // the destructor takes two places here
    EXPECT_EQ(slotOf(&UDO::MemberDeletion), 3);
    EXPECT_EQ(slotOf(&UDO::Update), 4);
    EXPECT_EQ(slotOf(&UDO::GetUDOClass), 5);
}
