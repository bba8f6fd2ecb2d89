#include "tests/host/drawing_host.h"

#include "uf_layer.h"
#include "ug_info_window.hxx"
#include "ug_part.hxx"
#include "ug_session.hxx"

#include <exception>
#include <type_traits>

namespace {

using OpenSession = DrawingHost;

// The fixture's own initialisation is one; every test leaves the count as it found it.
TEST_F(OpenSession, ATemporarySessionNeverClosesOneThatWasOpenBefore)
{
    ASSERT_TRUE(UgSession::isInitialized());
    {
        const UgSession temporary(true);
        EXPECT_TRUE(UgSession::isInitialized());
    }
    EXPECT_TRUE(UgSession::isInitialized());
}

TEST_F(OpenSession, ASessionObjectThatWasNotAskedToInitialiseLeavesTheCountAlone)
{
    {
        const UgSession plain;
        const UgSession no(false);
    }
    EXPECT_TRUE(UgSession::isInitialized());
}

TEST_F(OpenSession, InitialisationsAreCounted)
{
    UgSession::initialize();
    UgSession::terminate();
    EXPECT_TRUE(UgSession::isInitialized());
    UgSession::terminate();
    EXPECT_FALSE(UgSession::isInitialized());
    try {
        UgSession::terminate();
        ADD_FAILURE() << "a session that is not open cannot be closed";
    } catch (const UgException &failure) {
        EXPECT_EQ(failure.askErrorCode(), 1105003);
    }
    UgSession::initialize();
    EXPECT_TRUE(UgSession::isInitialized());
}

TEST_F(OpenSession, MembersFailBeforeTheSessionIsInitialised)
{
    UgSession::terminate();
    try {
        UgObject::find(part());
        ADD_FAILURE();
    } catch (const UgException &failure) {
        EXPECT_EQ(failure.askErrorCode(), UF_err_program_not_initialized);
    }
    UgSession::initialize();
}

TEST_F(OpenSession, WithoutTheInterfaceInitialisationFailsWithItsCode)
{
    nxhost::setInterfaceAvailable(false);
    try {
        const UgSession session(true);
        ADD_FAILURE();
    } catch (const UgException &failure) {
        EXPECT_EQ(failure.askErrorCode(), 1105003);
        EXPECT_NE(failure.askErrorText(), "");
    }
    nxhost::setInterfaceAvailable(true);
}

TEST_F(OpenSession, TheWorkPartIsAnObjectOrAnErrorNeverNull)
{
    ASSERT_TRUE(UgSession::getWorkPart());
    EXPECT_EQ(UgSession::getWorkPart()->getTag(), part());
    ASSERT_EQ(UF_PART_close(part(), 0, 1), 0);
    EXPECT_THROW(UgSession::getWorkPart(), UgException);
}

TEST_F(OpenSession, LayerStatusIsSetButTheWorkLayerKeepsIts)
{
    UgSession::setLayerStatus(254, UF_LAYER_INACTIVE_LAYER);
    int status = 0;
    ASSERT_EQ(UF_LAYER_ask_status(254, &status), 0);
    EXPECT_EQ(status, UF_LAYER_INACTIVE_LAYER);
    UgSession::setLayerStatus(254, 2);
    ASSERT_EQ(UF_LAYER_ask_status(254, &status), 0);
    EXPECT_EQ(status, UF_LAYER_ACTIVE_LAYER);
    EXPECT_NO_THROW(UgSession::setLayerStatus(1, 2));
    ASSERT_EQ(UF_LAYER_ask_status(1, &status), 0);
    EXPECT_EQ(status, UF_LAYER_WORK_LAYER);
    EXPECT_THROW(UgSession::setLayerStatus(0, 2), UgException);
    EXPECT_THROW(UgSession::setLayerStatus(257, 2), UgException);
}

TEST_F(OpenSession, InjectedFaultsOfMembersAreRaised)
{
    nxhost::failCall("UgSession::getWorkPart", 640001, 2);
    EXPECT_NO_THROW(UgSession::getWorkPart());
    try {
        UgSession::getWorkPart();
        ADD_FAILURE();
    } catch (const UgException &failure) {
        EXPECT_EQ(failure.askErrorCode(), 640001);
    }
}

// --- the information window -----------------------------------------------------------------------

TEST_F(OpenSession, TheInformationWindowAddsNoLineEnds)
{
    nxhost::takeInfoWindow();
    EXPECT_FALSE(nxhost::infoWindowOpened());
    UgInfoWindow::open();
    UgInfoWindow::write("a");
    UgInfoWindow().write("b\n");
    EXPECT_TRUE(nxhost::infoWindowOpened());
    EXPECT_EQ(nxhost::takeInfoWindow(), "ab\n");
    EXPECT_EQ(nxhost::takeInfoWindow(), "");
}

// --- the exception --------------------------------------------------------------------------------

static_assert(!std::is_base_of_v<std::exception, UgException>);
static_assert(std::is_copy_constructible_v<UgException> && std::is_copy_assignable_v<UgException>);

TEST_F(OpenSession, OnlyZeroIsNoFailure)
{
    EXPECT_NO_THROW(UgException::throwOnFailure(0));
    for (const int code : {1, 6, -1, 1105003}) {
        try {
            UgException::throwOnFailure(code);
            ADD_FAILURE();
        } catch (const UgException &caught) {
            const UgException failure = caught; // callers catch by value, too
            EXPECT_EQ(failure.askErrorCode(), code);
        }
    }
}

TEST_F(OpenSession, TheTextIsThatOfTheCCallAndFitsItsBuffer)
{
    for (const int code : {1, 6, 1105003, 1175001, 1155000, UF_err_unknown_tag}) {
        char text[133] = "";
        ASSERT_EQ(UF_get_fail_message(code, text), 0);
        EXPECT_EQ(UgException(code).askErrorText(), text);
    }
    EXPECT_NE(UgException(123456789).askErrorText().find("123456789"), std::string::npos);
    EXPECT_LE(UgException(123456789).askErrorText().size(), 132u);
}

TEST_F(OpenSession, AProcessedErrorIsReportedInTheInformationWindow)
{
    nxhost::takeInfoWindow();
    const UgException failure(1155000);
    failure.processError();
    EXPECT_EQ(nxhost::takeInfoWindow(), failure.askErrorText() + "\n");
}

} // namespace
