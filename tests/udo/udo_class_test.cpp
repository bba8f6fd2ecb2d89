// The registration of classes with the platform.
#include "probe.h"

#include "tests/support/story.h"

#include "udo/class_names.h"
#include "ug_line.hxx"
#include "ug_session.hxx"

#include <algorithm>

using LumUg::UDOClass;

namespace {

UgUDO *foreignUdo(const char *class_name)
{
    static std::map<std::string, UF_UDOBJ_class_t> made; // classes live as long as the process
    if (!made.count(class_name))
        UgException::throwOnFailure(
            UF_UDOBJ_create_class(class_name, "Foreign", &made[class_name]));
    tag_t tag = NULL_TAG;
    UgException::throwOnFailure(UF_UDOBJ_create_udo(made[class_name], &tag));
    return dynamic_cast<UgUDO *>(UgObject::find(tag));
}

} // namespace

TEST(UdoClass, IsFoundByItsName)
{
    EXPECT_EQ(UDOClass::GetClass(Probe::kClassName), &Probe::mUDOClass);
    EXPECT_NE(Probe::mUDOClass.GetClassId(), 0u);
    EXPECT_EQ(UDOClass::GetClass("test_probe_v1"), nullptr);
    EXPECT_EQ(UDOClass::GetClass(""), nullptr);
}

TEST(UdoClass, RegistersTheClassThenItsCallbacksInOrder)
{
    nxhost::recordCalls(true);
    static UDOClass made("TEST_ORDER_V1", "Order", Probe::CreateInstance);
    std::vector<std::string> calls = nxhost::recordedCalls();
    nxhost::recordCalls(false);
    std::erase_if(calls, [](const std::string &call) { return !call.starts_with("UF_UDOBJ"); });
    EXPECT_EQ(calls, (std::vector<std::string>{
                         "UF_UDOBJ_create_class", "UF_UDOBJ_register_delete_cb",
                         "UF_UDOBJ_register_info_obj_cb", "UF_UDOBJ_register_update_cb"}));
    char *name = nullptr, *friendly = nullptr;
    ASSERT_EQ(UF_UDOBJ_ask_class_data(made.GetClassId(), &name, &friendly), 0);
    EXPECT_STREQ(name, "TEST_ORDER_V1");
    EXPECT_STREQ(friendly, "Order");
    UF_free(name);
    UF_free(friendly);
}

TEST(UdoClass, ASecondRegistrationOfANameBorrowsTheId)
{
    nxhost::clearCallCounts();
    const UDOClass second(QelFmt::kBlockV1Classname, "x", Probe::CreateInstance);
    EXPECT_EQ(nxhost::callCount("UF_UDOBJ_create_class"), 0u);
    const UDOClass *first = UDOClass::GetClass(QelFmt::kBlockV1Classname);
    ASSERT_NE(first, nullptr);
    EXPECT_NE(first, &second);
    EXPECT_EQ(second.GetClassId(), first->GetClassId());
}

// A wrapper is made for every step from object to object.
TEST(UdoClass, TheNameOfAnIdIsAskedOnceAProcess)
{
    Story story;
    story.newPart();
    Probe probe;
    probe.SetInt(0, 1);
    ASSERT_TRUE(LumUg::UDO::Create(probe.tag()));
    nxhost::clearCallCounts();
    for (int i = 0; i < 3; ++i)
        EXPECT_NE(dynamic_cast<Probe *>(LumUg::UDO::Create(probe.tag()).get()), nullptr);
    EXPECT_EQ(nxhost::callCount("UF_UDOBJ_ask_class_data"), 0u);
}

TEST(UdoClass, AFailureStopsTheRestAndLeavesTheNameOut)
{
    struct Row {
        const char *call;
        const char *class_name;
        std::vector<std::string> not_reached;
    };
    for (const Row &row :
         {Row{"UF_UDOBJ_create_class",
              "TEST_FAIL_1",
              {"UF_UDOBJ_register_delete_cb", "UF_UDOBJ_register_info_obj_cb",
               "UF_UDOBJ_register_update_cb"}},
          Row{"UF_UDOBJ_register_delete_cb",
              "TEST_FAIL_2",
              {"UF_UDOBJ_register_info_obj_cb", "UF_UDOBJ_register_update_cb"}},
          Row{"UF_UDOBJ_register_info_obj_cb", "TEST_FAIL_3", {"UF_UDOBJ_register_update_cb"}},
          Row{"UF_UDOBJ_register_update_cb", "TEST_FAIL_4", {}}}) {
        SCOPED_TRACE(row.call);
        nxhost::clearCallCounts();
        nxhost::failCall(row.call, 1105061);
        EXPECT_EQ(codeThrownBy([&] { UDOClass(row.class_name, "x", Probe::CreateInstance); }),
                  1105061);
        EXPECT_EQ(UDOClass::GetClass(row.class_name), nullptr);
        for (const std::string &call : row.not_reached) EXPECT_EQ(nxhost::callCount(call), 0u);
    }
}

TEST(UdoClass, AnObjectIsOfTheClassOfItsId)
{
    Story story;
    story.newPart();
    Probe probe;
    probe.CreateUDO();
    EXPECT_TRUE(UDOClass::sameClass(probe.GetUdoObject(), Probe::kClassName));
    EXPECT_FALSE(UDOClass::sameClass(probe.GetUdoObject(), "TEST_OTHER_PROBE_V1"));
    EXPECT_FALSE(UDOClass::sameClass(nullptr, Probe::kClassName));
}

TEST(UdoClass, AClassOfSomeoneElseIsNeverTheSame)
{
    Story story;
    story.newPart();
    UgUDO *foreign = foreignUdo("FOO");
    EXPECT_FALSE(UDOClass::sameClass(foreign, "FOO"));
    EXPECT_FALSE(UDOClass::sameClass(foreign, Probe::kClassName));
    EXPECT_EQ(LumUg::GetUDOClassName(foreign), "FOO");
}

TEST(UdoClass, ForeignObjectsHaveNoWrapperAndAreSkipped)
{
    Story story;
    story.newPart();
    UgUDO *foreign = foreignUdo("FOO");
    EXPECT_FALSE(LumUg::UDO::Create(foreign->getTag()));
    EXPECT_FALSE(LumUg::UDO::Create(static_cast<const UgTypedObject *>(foreign)));
    Probe parent, child;
    child.CreateUDO();
    parent.SetLink(2, 0, foreign);
    parent.attach(2, child);
    constexpr LumUg::ChildList<Probe> probes{2, "Probes"};
    ASSERT_EQ(parent.children(probes).size(), 1u);
    EXPECT_EQ(parent.firstChild(probes)->tag(), child.tag());
    constexpr LumUg::ChildList<LumUg::UDO> all{2, "All"};
    EXPECT_EQ(parent.children(all).size(), 1u);
}

TEST(UdoClass, OwnedObjectSelectionIsPassedOnForKnownNamesOnly)
{
    UDOClass::setOwnedObjSelection(Probe::kClassName, UF_UDOBJ_ALLOW_SELECTION);
    EXPECT_EQ(nxhost::ownedObjectSelection(Probe::kClassName), UF_UDOBJ_ALLOW_SELECTION);
    UDOClass::setOwnedObjSelection(Probe::kClassName, UF_UDOBJ_DONT_ALLOW_SELECTION);
    EXPECT_EQ(nxhost::ownedObjectSelection(Probe::kClassName), UF_UDOBJ_DONT_ALLOW_SELECTION);

    nxhost::clearCallCounts();
    EXPECT_NO_THROW(UDOClass::setOwnedObjSelection("UNKNOWN", UF_UDOBJ_ALLOW_SELECTION));
    EXPECT_EQ(nxhost::callCount("UF_UDOBJ_set_owned_object_selection"), 0u);

    nxhost::failCall("UF_UDOBJ_set_owned_object_selection", 1105061);
    EXPECT_EQ(codeThrownBy([] {
                  UDOClass::setOwnedObjSelection(Probe::kClassName, UF_UDOBJ_ALLOW_SELECTION);
              }),
              1105061);
}

TEST(UdoClass, TheNameOfAnObjectsClassIsCopiedAndGivenBack)
{
    Story story;
    story.newPart();
    Probe probe;
    probe.CreateUDO();
    const std::size_t before = nxhost::outstandingAllocations();
    EXPECT_EQ(LumUg::GetUDOClassName(probe.GetUdoObject()), Probe::kClassName);
    EXPECT_TRUE(LumUg::UDO::Create(probe.tag()));
    EXPECT_EQ(nxhost::outstandingAllocations(), before);
    nxhost::failCall("UF_UDOBJ_ask_udo_class_name", 1105051);
    EXPECT_EQ(codeThrownBy([&] { LumUg::GetUDOClassName(probe.GetUdoObject()); }), 1105051);
    EXPECT_NE(codeThrownBy([] { LumUg::GetUDOClassName(nullptr); }), 0);
}

TEST(UdoClass, ARegistrationOpensASessionWhenNoneIs)
{
    int closed = 0;
    for (; UgSession::isInitialized(); ++closed) UgSession::terminate();
    static UDOClass made("TEST_SESSION_V1", "Session", Probe::CreateInstance);
    EXPECT_TRUE(UgSession::isInitialized());
    EXPECT_NE(made.GetClassId(), 0u);
    for (int i = 1; i < closed; ++i) UgSession::initialize();
}
