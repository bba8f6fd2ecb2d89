// The platform's start-up exit.
#include "interface_story.h"

#include "foundation/log.h"
#include "udo/class_names.h"
#include "udo/udo_class.h"

#include <stdexcept>

namespace {

// The classes that were given a selection mode, in order.
Texts selectionCalls(const Story &story, const char *settings)
{
    story.writeSettings(settings);
    nxhost::recordCalls(true);
    ufsta();
    Texts calls;
    for (const std::string &call : nxhost::recordedCalls())
        if (call == "UF_UDOBJ_set_owned_object_selection") calls.push_back(call);
    nxhost::recordCalls(false);
    return calls;
}

TEST(StartUp, WithoutTheSettingNoClassIsTouched)
{
    const Story story;
    EXPECT_TRUE(selectionCalls(story, "[Settings]\nField Selection = 0\n").empty());
    EXPECT_TRUE(selectionCalls(story, "").empty());
}

TEST(StartUp, TheSettingLetsNotesOfFieldsRowsAndBlocksBePicked)
{
    const Story story;
    EXPECT_EQ(selectionCalls(story, "[Settings]\nField Selection = 1\n").size(), 3u);
    for (const char *name :
         {QelFmt::kFieldV1Classname, QelFmt::kEntryV2Classname, QelFmt::kBlockV1Classname})
        EXPECT_EQ(nxhost::ownedObjectSelection(name), 2) << name;
    for (const char *name : {QelFmt::kTableV1Classname, QelFmt::kEntryV1Classname})
        EXPECT_EQ(nxhost::ownedObjectSelection(name), 1) << name;
}

// The nth call is refused: what was set before it shows the order.
TEST(StartUp, FieldsComeBeforeRowsAndRowsBeforeBlocks)
{
    const char *const order[] = {QelFmt::kFieldV1Classname, QelFmt::kEntryV2Classname,
                                 QelFmt::kBlockV1Classname};
    for (unsigned refused = 1; refused <= 3; ++refused) {
        SCOPED_TRACE(refused);
        const Story story;
        story.writeSettings("[Settings]\nField Selection = -1\n"); // anything but 0
        for (const char *name : order)
            LumUg::UDOClass::setOwnedObjSelection(name, UF_UDOBJ_DONT_ALLOW_SELECTION);
        nxhost::failCall("UF_UDOBJ_set_owned_object_selection", 1105061, refused);
        ufsta();
        for (unsigned i = 0; i < 3; ++i)
            EXPECT_EQ(nxhost::ownedObjectSelection(order[i]), i + 1 < refused ? 2 : 1) << order[i];
    }
}

TEST(StartUp, AFailureGoesToTheSystemLogUnlessTheInterfaceIsNotAvailable)
{
    const Story story;
    story.writeSettings("[Settings]\nField Selection = 1\n");
    nxhost::takeSyslog();
    nxhost::failCall("UF_UDOBJ_set_owned_object_selection", 1105061);
    ufsta();
    char text[133];
    ASSERT_EQ(UF_get_fail_message(1105061, text), 0);
    EXPECT_NE(nxhost::takeSyslog().find(text), std::string::npos);
    nxhost::failCall("UF_UDOBJ_set_owned_object_selection", UF_err_program_not_initialized);
    ufsta();
    EXPECT_EQ(nxhost::takeSyslog(), "");
}

// A log that cannot be written stands for everything that is no failure of the platform.
TEST(StartUp, NoOtherFailurePassesThroughThePlatformsCall)
{
    const Story story;
    story.writeSettings("[Settings]\nField Selection = 1\n");
    nxhost::takeSyslog();
    const Base::log::Recording restoresTheSink{&QelFmt::info_log()};
    Base::log::setSink([](const Base::log::Record &) { throw std::runtime_error("no room"); });
    EXPECT_NO_THROW(ufsta());
    EXPECT_EQ(nxhost::takeSyslog(), "");
}

} // namespace
