// What the platform calls on the objects of a class.
#include "probe.h"

#include "tests/support/story.h"

#include "uf_obj.h"
#include "ug_line.hxx"
#include "ug_session.hxx"

namespace {

using Texts = std::vector<std::string>;

class Callbacks : public ::testing::Test {
protected:
    Callbacks()
    {
        story.newPart();
        Probe::s_calls.clear();
        probe.CreateUDO();
        line = UgLine::create({0, 0, 0}, {1, 0, 0});
        line->setName("LINE");
        wrappers = Probe::s_alive;
    }
    UF_UDOBJ_link_t linkTo(tag_t object) const { return {3, object, 0}; }

    Story story;
    Probe probe;
    UgLine *line;
    int wrappers;
};

} // namespace

TEST_F(Callbacks, DeletionTellsTheObjectThatGoes)
{
    UF_UDOBJ_link_t link = linkTo(line->getTag());
    LumUg::UDO::DeleteMethod(probe.tag(), &link);
    EXPECT_EQ(Probe::s_calls, Texts{"deleted LINE"});
    EXPECT_EQ(Probe::s_alive, wrappers); // the wrapper was short-lived
}

TEST_F(Callbacks, UpdateTellsTheObjectThatChanged)
{
    UF_UDOBJ_link_t link = linkTo(line->getTag());
    LumUg::UDO::UpdateMethod(probe.tag(), &link);
    EXPECT_EQ(Probe::s_calls, Texts{"updated LINE"});
    EXPECT_EQ(Probe::s_alive, wrappers);
}

TEST_F(Callbacks, InformationIsAskedOfTheWrapper)
{
    LumUg::UDO::InfoObjMethod(probe.tag());
    EXPECT_EQ(Probe::s_calls, Texts{"info"});
    EXPECT_EQ(Probe::s_alive, wrappers);
}

TEST_F(Callbacks, ANullLinkIsANullObject)
{
    LumUg::UDO::DeleteMethod(probe.tag(), nullptr);
    LumUg::UDO::UpdateMethod(probe.tag(), nullptr);
    EXPECT_EQ(Probe::s_calls, (Texts{"deleted null", "updated null"}));
}

TEST_F(Callbacks, AnObjectThatIsGoneOrIsNoTypedObjectIsNull)
{
    const tag_t dead = line->getTag();
    UgException::throwOnFailure(UF_OBJ_delete_object(dead));
    for (const tag_t object : {dead, story.part(), NULL_TAG}) {
        UF_UDOBJ_link_t link = linkTo(object);
        Probe::s_calls.clear();
        LumUg::UDO::DeleteMethod(probe.tag(), &link);
        LumUg::UDO::UpdateMethod(probe.tag(), &link);
        EXPECT_EQ(Probe::s_calls, (Texts{"deleted null", "updated null"}));
    }
}

TEST_F(Callbacks, AnObjectWithoutAWrapperIsLeftAlone)
{
    LumUg::UDO::DeleteMethod(line->getTag(), nullptr);
    LumUg::UDO::InfoObjMethod(NULL_TAG);
    LumUg::UDO::UpdateMethod(999999, nullptr);
    EXPECT_TRUE(Probe::s_calls.empty());
}

TEST_F(Callbacks, OpenASessionWhenNoneIs)
{
    int closed = 0;
    for (; UgSession::isInitialized(); ++closed) UgSession::terminate();
    LumUg::UDO::InfoObjMethod(probe.tag());
    EXPECT_TRUE(UgSession::isInitialized());
    for (int i = 1; i < closed; ++i) UgSession::initialize();
    EXPECT_EQ(Probe::s_calls, Texts{"info"});
}

TEST_F(Callbacks, ThePlatformCallsThem)
{
    probe.SetLink(3, 0, line);
    nxhost::runInfoCallback(probe.tag());
    EXPECT_EQ(Probe::s_calls, Texts{"info"});

    nxhost::touch(line->getTag());
    nxhost::updatePart(story.part());
    ASSERT_EQ(Probe::s_calls.size(), 2u);
    EXPECT_EQ(Probe::s_calls[1], "updated LINE");

    Probe::s_calls.clear();
    UgException::throwOnFailure(UF_OBJ_delete_object(line->getTag()));
    ASSERT_FALSE(Probe::s_calls.empty());
    EXPECT_EQ(Probe::s_calls[0], "deleted LINE");
    EXPECT_TRUE(probe.GetLinks(3).empty());
}

TEST_F(Callbacks, AParentHearsOfItsChildsDeletion)
{
    Probe child;
    child.CreateUDO();
    child.GetUdoObject()->setName("CHILD");
    probe.attach(2, child);
    UgException::throwOnFailure(UF_OBJ_delete_object(child.tag()));
    EXPECT_EQ(Probe::s_calls, Texts{"deleted CHILD"});
    EXPECT_EQ(UF_OBJ_ask_status(child.tag()), UF_OBJ_CONDEMNED);
}
