#include "host_fixture.h"

#include "ug_session.hxx"

#include <cstring>
#include <fstream>
#include <set>

using namespace host_test;

namespace {

// Session state is counted over the process: this one starts from a closed session.
class ClosedSession : public ::testing::Test {
protected:
    void SetUp() override
    {
        while (UF_is_initialized()) {
            UF_terminate();
            ++m_opened;
        }
        nxhost::reset();
    }
    void TearDown() override
    {
        nxhost::reset();
        while (UF_is_initialized()) UF_terminate();
        for (; m_opened > 0; --m_opened) UF_initialize();
    }

private:
    int m_opened = 0;
};

class HostSession : public HostTest {};

} // namespace

// --- initialising ---------------------------------------------------------------------------------

TEST_F(ClosedSession, EveryCallFailsBeforeItIsInitialised)
{
    tag_t tag = NULL_TAG;
    int number = 0;
    char *text = nullptr;
    UF_timer_t timer = 0;
    UF_UDOBJ_class_t id = 0;
    UF_UDOBJ_all_data_t data{};
    UF_UDOBJ_link_t *links = nullptr;
    char message[] = "x";
    char title[] = "t";
    UF_ATTR_value_t value{};
    const int codes[] = {UF_terminate(),
                         UF_print_syslog(message, FALSE),
                         UF_translate_variable("HOME", &text),
                         UF_begin_timer(&timer),
                         UF_UDOBJ_create_class("NEVER_MADE", "x", &id),
                         UF_UDOBJ_create_udo(1, &tag),
                         UF_UDOBJ_ask_udo_data(1, &data),
                         UF_UDOBJ_ask_udo_links_to_obj(1, &number, &links),
                         UF_OBJ_delete_object(1),
                         UF_OBJ_ask_type_and_subtype(1, &number, &number),
                         UF_ATTR_read_value(1, title, UF_ATTR_string, &value),
                         UF_LAYER_set_status(1, 2),
                         UF_PART_new("never", 1, &tag),
                         UF_PART_save(),
                         UF_DRAW_ask_current_drawing(&tag)};
    for (const int code : codes) EXPECT_EQ(code, UF_err_program_not_initialized);
    EXPECT_EQ(text, nullptr);
}

TEST_F(ClosedSession, CallsThatAnswerValuesSayNoBeforeItIsInitialised)
{
    EXPECT_EQ(UF_PART_is_loaded("anything"), 0);
    EXPECT_EQ(UF_PART_ask_part_tag("anything"), NULL_TAG);
    EXPECT_EQ(UF_ASSEM_ask_work_part(), NULL_TAG);
    EXPECT_EQ(UF_OBJ_ask_status(20001), UF_OBJ_DELETED);
    int code = 0;
    EXPECT_EQ(UF_allocate_memory(8, &code), nullptr);
    EXPECT_EQ(code, UF_err_program_not_initialized);
}

TEST_F(ClosedSession, InitialisationsAreCountedTogetherWithTheCxxSession)
{
    EXPECT_FALSE(UF_is_initialized());
    ASSERT_EQ(UF_initialize(), 0);
    {
        const UgSession inner(true);
        EXPECT_TRUE(UgSession::isInitialized());
    }
    EXPECT_TRUE(UF_is_initialized());
    EXPECT_TRUE(UgSession::isInitialized());
    UgSession::initialize();
    EXPECT_EQ(UF_terminate(), 0);
    EXPECT_TRUE(UF_is_initialized());
    EXPECT_EQ(UF_terminate(), 0);
    EXPECT_FALSE(UF_is_initialized());
    EXPECT_EQ(UF_terminate(), UF_err_program_not_initialized);
    EXPECT_FALSE(UgSession::isInitialized());
}

TEST_F(ClosedSession, WithoutALicenceItCannotBeInitialised)
{
    EXPECT_EQ(UF_err_program_not_initialized, 1105003);
    nxhost::setInterfaceAvailable(false);
    EXPECT_EQ(UF_initialize(), 1105003);
    EXPECT_FALSE(UF_is_initialized());
    nxhost::setInterfaceAvailable(true);
    EXPECT_EQ(UF_initialize(), 0);
}

TEST_F(ClosedSession, MessagesAndMemoryWorkWithoutIt)
{
    EXPECT_NE(messageOf(UF_err_program_not_initialized), "");
    ASSERT_EQ(UF_initialize(), 0);
    int code = -1;
    void *block = UF_allocate_memory(16, &code);
    ASSERT_EQ(code, 0);
    ASSERT_EQ(UF_terminate(), 0);
    const std::size_t before = nxhost::outstandingAllocations();
    UF_free(block);
    EXPECT_EQ(nxhost::outstandingAllocations(), before - 1);
}

// --- memory ---------------------------------------------------------------------------------------

TEST_F(HostSession, AllocatedMemoryIsTrackedUntilItComesBack)
{
    const std::size_t before = nxhost::outstandingAllocations();
    int code = -1;
    char *block = static_cast<char *>(UF_allocate_memory(4, &code));
    ASSERT_EQ(code, 0);
    std::memcpy(block, "abc", 4);
    EXPECT_EQ(nxhost::outstandingAllocations(), before + 1);
    block = static_cast<char *>(UF_reallocate_memory(block, 4096, &code));
    EXPECT_EQ(code, 0);
    EXPECT_STREQ(block, "abc");
    EXPECT_EQ(nxhost::outstandingAllocations(), before + 1);
    UF_free(block);
    EXPECT_EQ(nxhost::outstandingAllocations(), before);
}

TEST_F(HostSession, NoBytesAreNoMemoryAndNothingIsFreedHarmlessly)
{
    int code = -1;
    EXPECT_EQ(UF_allocate_memory(0, &code), nullptr);
    EXPECT_EQ(code, 0);
    UF_free(nullptr);
    UF_free_string_array(0, nullptr);
    EXPECT_EQ(nxhost::badFrees(), 0u);
}

TEST_F(HostSession, DoubleAndForeignFreesAreCountedAndNotExecuted)
{
    int code = 0;
    void *block = UF_allocate_memory(8, &code);
    UF_free(block);
    UF_free(block);
    EXPECT_EQ(nxhost::badFrees(), 1u);
    int ours = 7;
    UF_free(&ours);
    EXPECT_EQ(nxhost::badFrees(), 2u);
    EXPECT_EQ(ours, 7);
    m_expectedBadFrees = 2;
}

TEST_F(HostSession, AStringArrayIsFreedWithItsStrings)
{
    int code = 0;
    const std::size_t before = nxhost::outstandingAllocations();
    char **array = static_cast<char **>(UF_allocate_memory(2 * sizeof(char *), &code));
    array[0] = static_cast<char *>(UF_allocate_memory(2, &code));
    array[1] = static_cast<char *>(UF_allocate_memory(2, &code));
    EXPECT_EQ(nxhost::outstandingAllocations(), before + 3);
    UF_free_string_array(2, array);
    EXPECT_EQ(nxhost::outstandingAllocations(), before);
}

TEST_F(HostSession, ADataBlockIsNoMemoryForTheOrdinaryFree)
{
    const tag_t udo = newUdo();
    int one[] = {1};
    ASSERT_EQ(UF_UDOBJ_add_integers(udo, 1, one), 0);
    UF_UDOBJ_all_data_t data{};
    ASSERT_EQ(UF_UDOBJ_ask_udo_data(udo, &data), 0);
    EXPECT_EQ(nxhost::outstandingDataBlocks(), 1u);
    UF_free(data.ints);
    EXPECT_EQ(nxhost::badFrees(), 1u);
    EXPECT_EQ(UF_UDOBJ_free_udo_data(&data), 0);
    EXPECT_EQ(nxhost::outstandingDataBlocks(), 0u);
    EXPECT_NE(UF_UDOBJ_free_udo_data(&data), 0);
    EXPECT_EQ(nxhost::badFrees(), 2u);
    m_expectedBadFrees = 2;
}

// --- messages, log, environment, timers --------------------------------------------------------------

TEST_F(HostSession, EveryCodeOfTheHeadersAndOfThePatternCallsHasATextThatFitsItsBuffer)
{
    std::set<int> codes{1, 3, 5, 6, 14, 20, 21, 22};
    for (const auto &entry :
         std::filesystem::directory_iterator(QELFMT_SOURCE_DIR "/host/include")) {
        std::ifstream header(entry.path());
        std::string directive;
        std::string name;
        for (std::string word; header >> word;) {
            if (name.find("_err_") != std::string::npos && directive == "#define")
                codes.insert(std::stoi(word));
            directive = name;
            name = word;
        }
    }
    EXPECT_GT(codes.size(), 40u);
    std::set<std::string> texts;
    for (const int code : codes) {
        const std::string text = messageOf(code);
        EXPECT_NE(text, "") << code;
        EXPECT_LE(text.size(), 132u) << text;
        EXPECT_TRUE(texts.insert(text).second) << text;
    }
}

TEST_F(HostSession, ACodeWithoutATextIsNotAnswered)
{
    char text[133] = "x";
    EXPECT_NE(UF_get_fail_message(987654, text), 0);
    EXPECT_STREQ(text, "");
}

TEST_F(HostSession, TheSystemLogTakesTextsAsTheyAre)
{
    nxhost::takeSyslog();
    char first[] = "one";
    char second[] = " two\n";
    EXPECT_EQ(UF_print_syslog(first, FALSE), 0);
    EXPECT_EQ(UF_print_syslog(second, FALSE), 0);
    EXPECT_EQ(nxhost::takeSyslog(), "one two\n");
    EXPECT_EQ(nxhost::takeSyslog(), "");
}

TEST_F(HostSession, ATraceFollowsTheTextWhenItIsAskedFor)
{
    nxhost::takeSyslog();
    char text[] = "critical\n";
    EXPECT_EQ(UF_print_syslog(text, TRUE), 0);
    const std::string log = nxhost::takeSyslog();
    EXPECT_TRUE(log.starts_with("critical\n"));
    EXPECT_NE(log.find("UF_print_syslog"), std::string::npos);
}

TEST_F(HostSession, TheSystemLogHasAFileThatIsKeptUpToDate)
{
    char first[] = "before\n";
    char second[] = "after\n";
    ASSERT_EQ(UF_print_syslog(first, FALSE), 0);
    char *name = nullptr;
    ASSERT_EQ(UF_ask_syslog_filename(&name), 0);
    ASSERT_EQ(UF_print_syslog(second, FALSE), 0);
    std::ifstream file(name);
    const std::string text{std::istreambuf_iterator<char>(file), {}};
    EXPECT_TRUE(text.ends_with("before\nafter\n")) << text;
    std::filesystem::remove(name);
    UF_free(name);
}

TEST_F(HostSession, VariablesAreTranslatedInPlace)
{
    ASSERT_EQ(UF_set_variable("QELFMT_HOST_TEST", "here"), 0);
    char *translation = nullptr;
    ASSERT_EQ(UF_translate_variable("QELFMT_HOST_TEST", &translation), 0);
    EXPECT_STREQ(translation, "here");
    ASSERT_EQ(UF_set_variable("QELFMT_HOST_TEST", nullptr), 0);
    EXPECT_EQ(UF_translate_variable("QELFMT_HOST_TEST", &translation), 0);
    EXPECT_EQ(translation, nullptr);
}

TEST_F(HostSession, SeveralTimersRunAtOnceByTheClockThatWasSet)
{
    double now = 100.0;
    nxhost::setClock([&] { return now; });
    UF_timer_t outer = 0;
    UF_timer_t inner = 0;
    ASSERT_EQ(UF_begin_timer(&outer), 0);
    now = 130.0;
    ASSERT_EQ(UF_begin_timer(&inner), 0);
    EXPECT_NE(outer, inner);
    now = 160.0;
    UF_timer_values_t values{};
    ASSERT_EQ(UF_end_timer(outer, &values), 0);
    EXPECT_EQ(values.real_time, 60.0); // 160 - 100
    EXPECT_EQ(values.cpu_time, 60.0);
    ASSERT_EQ(UF_end_timer(inner, &values), 0);
    EXPECT_EQ(values.real_time, 30.0); // 160 - 130
    EXPECT_NE(UF_end_timer(inner, &values), 0) << "a timer ends once";
}

TEST_F(HostSession, TheRealClockRunsForwards)
{
    UF_timer_t timer = 0;
    ASSERT_EQ(UF_begin_timer(&timer), 0);
    volatile double sum = 0.0;
    for (int i = 0; i < 2000000; ++i) sum = sum + i;
    UF_timer_values_t values{};
    ASSERT_EQ(UF_end_timer(timer, &values), 0);
    EXPECT_GT(values.real_time, 0.0);
    EXPECT_GT(values.cpu_time, 0.0);
    EXPECT_LT(values.real_time, 60.0);
}

// --- tags -----------------------------------------------------------------------------------------

TEST_F(HostSession, TagsRiseAndAreNeverUsedAgain)
{
    const tag_t first = newPoint();
    const tag_t second = newPoint();
    EXPECT_GT(second, first);
    ASSERT_EQ(UF_OBJ_delete_object(second), 0);
    EXPECT_GT(newPoint(), second);
    nxhost::reset();
    ASSERT_EQ(UF_PART_new(folder.file("other").c_str(), UF_PART_METRIC, &part), 0);
    EXPECT_GT(part, second);
}
