// The frame of the interface: status, last error, argument order, callbacks, life cycle.
#include "interface_story.h"

#include "api/guard.h"
#include "content/field.h"
#include "drawing/block.h"

#include <functional>
#include <new>
#include <stdexcept>

namespace {

class Frame : public InterfaceStory {};

int veto(const char *, const char *) { return 0; }
int keepWithMinusOne(const char *, const char *) { return -1; }
std::vector<std::string> g_calls;
int record(const char *format, const char *block)
{
    g_calls.push_back(std::string(format) + "/" + block);
    return 1;
}
int throwFive(const char *, const char *) { throw 5; }
void recordRow(const char *format, const char *block, const char *table)
{
    g_calls.push_back(std::string(format) + "/" + block + "/" + table);
}

TEST_F(Frame, TagZeroIsAnInvalidDrawingForEveryFunctionBeforeAnythingElse)
{
    const std::vector<std::function<int()>> calls{
        [] { return TRV_FMT_add_format(0, nullptr, nullptr); },
        [] { return TRV_FMT_ask_format(0, nullptr, nullptr); },
        [] { return TRV_FMT_delete_format(0); },
        [] { return TRV_FMT_update(0); },
        [] { return TRV_FMT_recreate_notes(0); },
        [] { return TRV_FMT_verify_block_locations(0); },
        [] { return TRV_FMT_add_block(0, nullptr); },
        [] { return TRV_FMT_delete_block(0, nullptr); },
        [] { return TRV_FMT_ask_blocks_on_drawing(0, nullptr); },
        [] { return QEL_FMT_move_block(0, nullptr, nullptr); },
        [] { return TRV_FMT_ask_field_value(0, nullptr, nullptr, nullptr); },
        [] { return TRV_FMT_set_field_value(0, nullptr, nullptr, nullptr); },
        [] { return QEL_FMT_set_field_editable(0, nullptr, nullptr, 0); },
        [] { return QEL_FMT_get_field_editable(0, nullptr, nullptr, nullptr); },
        [] { return TRV_FMT_ask_table_value(0, nullptr, nullptr, 0, nullptr, nullptr); },
        [] { return TRV_FMT_set_table_value(0, nullptr, nullptr, 0, nullptr, nullptr); },
        [] { return QEL_FMT_set_table_field_editable(0, nullptr, nullptr, 0, nullptr, 0); },
        [] { return QEL_FMT_get_table_field_editable(0, nullptr, nullptr, 0, nullptr, nullptr); },
        [] { return TRV_FMT_add_entry(0, nullptr, nullptr); },
        [] { return TRV_FMT_delete_entry(0, nullptr, nullptr, 0); },
        [] { return TRV_FMT_ask_number_table_entries(0, nullptr, nullptr, nullptr); },
        [] { return TRV_FMT_place_symbol(0, nullptr, nullptr, 0, nullptr); }};
    EXPECT_EQ(calls.size(), 22u);
    for (std::size_t i = 0; i < calls.size(); ++i) {
        SCOPED_TRACE(i);
        failure(
            TRV_FMT_add_format(sheet, "NOSUCH", "A3")); // another text, so that the next is fresh
        EXPECT_EQ(failure(calls[i]()), "Invalid drawing");
    }
}

TEST_F(Frame, ASuccessLeavesTheLastErrorAsItWas)
{
    EXPECT_EQ(failure(TRV_FMT_update(0)), "Invalid drawing");
    EXPECT_EQ(TRV_FMT_delete_format(sheet), 0);
    EXPECT_STREQ(TRV_FMT_ask_last_error(), "Invalid drawing");
}

TEST_F(Frame, UpdateRecreateAndVerifyPassOverASheetWithoutFormat)
{
    EXPECT_EQ(TRV_FMT_update(sheet), 0);
    EXPECT_EQ(TRV_FMT_recreate_notes(sheet), 0);
    EXPECT_EQ(TRV_FMT_verify_block_locations(sheet), 0);
    char editable = 9;
    EXPECT_EQ(failure(QEL_FMT_get_field_editable(sheet, "TITLE", "NAME", &editable)),
              "No format found on drawing");
    EXPECT_EQ(editable, 9);
}

TEST_F(Frame, AVetoedBlockLeavesNothingBehindAndTheStatusIsZero)
{
    addFormat();
    QEL_FMT_set_add_block_cb(veto);
    const std::string before = nxhost::listPart(story.part());
    EXPECT_EQ(TRV_FMT_add_block(sheet, "NOTE"), 0);
    EXPECT_EQ(nxhost::listPart(story.part()), before);
    QEL_FMT_set_add_block_cb(keepWithMinusOne);
    EXPECT_EQ(TRV_FMT_add_block(sheet, "NOTE"), 0);
    EXPECT_EQ(blocks(), (Texts{"TITLE", "NOTE"}));
}

TEST_F(Frame, CallbacksSeeTheNamesAndAreEmptiedByNull)
{
    g_calls.clear();
    QEL_FMT_set_add_block_cb(record);
    QEL_FMT_set_append_entry_cb(recordRow);
    addFormat(); // TITLE is required
    ASSERT_EQ(TRV_FMT_add_entry(sheet, "TITLE", "REV"), 0) << TRV_FMT_ask_last_error();
    EXPECT_EQ(g_calls, (Texts{"F/TITLE", "F/TITLE/REV"}));
    QEL_FMT_set_add_block_cb(nullptr);
    QEL_FMT_set_append_entry_cb(nullptr);
    EXPECT_EQ(TRV_FMT_add_block(sheet, "NOTE"), 0);
    EXPECT_EQ(TRV_FMT_add_entry(sheet, "TITLE", "REV"), 0);
    EXPECT_EQ(g_calls.size(), 2u);
}

TEST_F(Frame, CallbacksSurviveTerminate)
{
    g_calls.clear();
    QEL_FMT_set_add_block_cb(record);
    EXPECT_EQ(TRV_FMT_terminate(), 0);
    ASSERT_EQ(TRV_FMT_initialize(), 0);
    addFormat();
    EXPECT_EQ(g_calls, (Texts{"F/TITLE"}));
}

TEST_F(Frame, ExceptionsOfOtherKindsReachTheCaller)
{
    addFormat();
    QEL_FMT_set_add_block_cb(throwFive);
    EXPECT_THROW(TRV_FMT_add_block(sheet, "NOTE"), int);
}

TEST_F(Frame, WithoutDefinitionsNothingIsKnown)
{
    TRV_FMT_terminate();
    ASSERT_EQ(QEL_FMT_initialize(0), 0);
    EXPECT_EQ(failure(TRV_FMT_add_format(sheet, "F", "A3")), "No format with ID F");
}

TEST_F(Frame, TerminateTwiceAndInitialiseTwiceAreHarmless)
{
    EXPECT_EQ(TRV_FMT_initialize(), 0);
    EXPECT_EQ(TRV_FMT_terminate(), 0);
    EXPECT_EQ(TRV_FMT_terminate(), 0);
}

TEST_F(Frame, TerminateCountsAnInterfaceThatIsGoneAsSuccess)
{
    failure(TRV_FMT_update(0));
    nxhost::failCall("UF_PART_close", UF_err_program_not_initialized);
    EXPECT_EQ(TRV_FMT_terminate(), 0);
    EXPECT_STREQ(TRV_FMT_ask_last_error(), "Invalid drawing");
    nxhost::clearFaults();
}

TEST_F(Frame, APlatformFailureBecomesItsText)
{
    nxhost::failCall("UF_DRAW_set_drawing_info", 1405001);
    char text[133];
    ASSERT_EQ(UF_get_fail_message(1405001, text), 0);
    EXPECT_EQ(failure(TRV_FMT_add_format(sheet, "F", "A3")), text);
}

TEST_F(Frame, AStandardExceptionBecomesItsText)
{
    EXPECT_EQ(QelFmt::api::guarded([] { throw std::bad_alloc(); }), 1);
    EXPECT_STREQ(TRV_FMT_ask_last_error(), std::bad_alloc().what());
}

TEST_F(Frame, EditableIsOneWhateverNumberIsStored)
{
    addFormat();
    TrDrawing::getDrawing(sheet)->format()->getBlocks().at(0)->getFields().at(0)->SetIsEditable(7);
    char editable = 9;
    ASSERT_EQ(QEL_FMT_get_field_editable(sheet, "TITLE", "NAME", &editable), 0);
    EXPECT_EQ(editable, 1);
}

TEST_F(Frame, ListsAreFreedWhateverTheyHold)
{
    TRV_FMT_free_value(nullptr);
    TRV_FMT_value_list_t none{0, nullptr};
    TRV_FMT_free_value(&none);
    addFormat();
    ASSERT_EQ(TRV_FMT_delete_block(sheet, "TITLE"), 0);
    TRV_FMT_value_list_t list{7, nullptr};
    ASSERT_EQ(TRV_FMT_ask_blocks_on_drawing(sheet, &list), 0);
    EXPECT_EQ(list.num_values, 0);
    EXPECT_NE(list.values, nullptr);
    TRV_FMT_free_value(&list);
}

TEST_F(Frame, NullOutPointersAreInvalidArguments)
{
    addFormat();
    char buffer[TRV_FMT_MAX_ID_BUFSIZE];
    EXPECT_EQ(failure(TRV_FMT_ask_format(sheet, nullptr, buffer)), "Invalid argument");
    EXPECT_EQ(failure(TRV_FMT_ask_format(sheet, buffer, nullptr)), "Invalid argument");
    EXPECT_EQ(failure(TRV_FMT_ask_blocks_on_drawing(sheet, nullptr)), "Invalid argument");
    EXPECT_EQ(failure(TRV_FMT_ask_field_value(sheet, "TITLE", "NAME", nullptr)),
              "Invalid argument");
    EXPECT_EQ(failure(TRV_FMT_set_field_value(sheet, "TITLE", "NAME", nullptr)),
              "Invalid argument");
    EXPECT_EQ(failure(QEL_FMT_get_field_editable(sheet, "TITLE", "NAME", nullptr)),
              "Invalid argument");
    EXPECT_EQ(failure(TRV_FMT_ask_number_table_entries(sheet, "TITLE", "REV", nullptr)),
              "Invalid argument");
    EXPECT_EQ(failure(TRV_FMT_place_symbol(sheet, "TITLE", "REV", 0, nullptr)), "Invalid argument");
}

} // namespace
