/* Callbacks that throw, and that take away what they are told of. */
#include "world.h"

#include "claims.h"
#include "uf.h"

#include <stddef.h>
#include <string.h>

static enum thrown g_kind;
static int g_calls;

static int throw_for_block(const char *format, const char *block)
{
    (void)format;
    (void)block;
    ++g_calls;
    world_throw(g_kind);
    return 1;
}

static void throw_for_row(const char *format, const char *block, const char *table)
{
    (void)table;
    (void)throw_for_block(format, block);
}

static unsigned int sheet_with_format(void)
{
    g_calls = 0;
    return world_sheet_with_format();
}

static int rows_of(unsigned int sheet)
{
    int rows = -1;
    SUCCEEDS(TRV_FMT_ask_number_table_entries(sheet, "TITLE", "REV", &rows));
    return rows;
}

static int add_note(void) { return TRV_FMT_add_block(world_sheet(), "NOTE"); }
static int add_row(void) { return TRV_FMT_add_entry(world_sheet(), "TITLE", "REV"); }

/* What was made before the exception stays, complete, and is still there when the part is opened again. */
void c_AnExceptionOfACallbackEndsTheCall(void)
{
    unsigned int sheet = sheet_with_format();
    char text[133] = "";
    UF_get_fail_message(1405001, text);
    QEL_FMT_set_add_block_cb(throw_for_block);
    QEL_FMT_set_append_entry_cb(throw_for_row);
    g_kind = THROWS_STANDARD;
    FAILS(add_note(), "the callback gave up");
    FAILS(add_row(), "the callback gave up");
    g_kind = THROWS_PLATFORM;
    FAILS(add_note(), text);
    FAILS(add_row(), text);
    HOLDS(g_calls == 4); /* it stays installed */
    QEL_FMT_set_add_block_cb(NULL);
    QEL_FMT_set_append_entry_cb(NULL);
    sheet = world_reopen();
    HOLDS(world_blocks_on(sheet) == 3);
    HOLDS(rows_of(sheet) == 2);
    SUCCEEDS(add_row());
    SUCCEEDS(TRV_FMT_update(sheet));
}

void c_AnExceptionOfAnotherKindPassesThrough(void)
{
    unsigned int sheet = sheet_with_format();
    QEL_FMT_set_add_block_cb(throw_for_block);
    QEL_FMT_set_append_entry_cb(throw_for_row);
    g_kind = THROWS_NUMBER;
    forget_last_error();
    HOLDS(world_caught(add_note) == 5);
    HOLDS(world_caught(add_row) == 5);
    TEXT_IS(TRV_FMT_ask_last_error(), "no call has failed yet");
    sheet = world_reopen();
    HOLDS(world_blocks_on(sheet) == 2);
    HOLDS(rows_of(sheet) == 1);
}

static int g_answer;

static int delete_the_block(const char *format, const char *block)
{
    (void)format;
    ++g_calls;
    SUCCEEDS(TRV_FMT_delete_block(world_sheet(), block));
    return g_answer;
}

static void delete_the_row(const char *format, const char *block, const char *table)
{
    (void)format;
    ++g_calls;
    SUCCEEDS(TRV_FMT_delete_entry(world_sheet(), block, table, rows_of(world_sheet()) - 1));
}

void c_ACallbackMayDeleteWhatItIsToldOf(void)
{
    const unsigned int sheet = sheet_with_format();
    QEL_FMT_set_add_block_cb(delete_the_block);
    QEL_FMT_set_append_entry_cb(delete_the_row);
    for (g_answer = 0; g_answer < 2; ++g_answer) { /* vetoed or kept: it is gone already */
        SUCCEEDS(add_note());
        HOLDS(world_blocks_on(sheet) == 1);
    }
    SUCCEEDS(add_row());
    HOLDS(rows_of(sheet) == 0);
    HOLDS(g_calls == 3);
    QEL_FMT_set_append_entry_cb(NULL);
    SUCCEEDS(add_row());
    HOLDS(rows_of(sheet) == 1);
}

static int delete_the_format(const char *format, const char *block)
{
    (void)format;
    (void)block;
    SUCCEEDS(TRV_FMT_delete_format(world_sheet()));
    return g_answer;
}

static void delete_the_format_for_a_row(const char *format, const char *block, const char *table)
{
    (void)table;
    (void)delete_the_format(format, block);
}

/* Whatever the rest of the call makes of it: there is no format, and the next one comes as ever. */
void c_ACallbackMayDeleteTheFormat(void)
{
    unsigned int sheet = world_sheet();
    char format[TRV_FMT_MAX_ID_BUFSIZE], size[TRV_FMT_MAX_ID_BUFSIZE];
    for (g_answer = 0; g_answer < 2; ++g_answer) {
        int status;
        QEL_FMT_set_add_block_cb(NULL);
        SUCCEEDS(TRV_FMT_add_format(sheet, "F", "A3"));
        QEL_FMT_set_add_block_cb(delete_the_format);
        status = add_note();
        HOLDS(status == 0 || status == 1);
        strcpy(format, "none");
        SUCCEEDS(TRV_FMT_ask_format(sheet, format, size));
        TEXT_IS(format, "none");
        status = TRV_FMT_add_format(sheet, "F", "A3"); /* whose first block takes it away again */
        HOLDS(status == 0 || status == 1);
        SUCCEEDS(TRV_FMT_ask_format(sheet, format, size));
        TEXT_IS(format, "none");
    }
    QEL_FMT_set_add_block_cb(NULL);
    QEL_FMT_set_append_entry_cb(delete_the_format_for_a_row);
    SUCCEEDS(TRV_FMT_add_format(sheet, "F", "A3"));
    (void)add_row();
    SUCCEEDS(TRV_FMT_ask_format(sheet, format, size));
    TEXT_IS(format, "none");
    sheet = world_reopen();
    SUCCEEDS(TRV_FMT_add_format(sheet, "F", "A3"));
    HOLDS(world_blocks_on(sheet) == 1);
}

static int end_the_library(const char *format, const char *block)
{
    (void)format;
    (void)block;
    ++g_calls;
    SUCCEEDS(TRV_FMT_terminate());
    return 1;
}

void c_ACallbackMayEndTheLibrary(void)
{
    unsigned int sheet = sheet_with_format();
    QEL_FMT_set_add_block_cb(end_the_library);
    SUCCEEDS(add_note());
    HOLDS(g_calls == 1);
    QEL_FMT_set_add_block_cb(NULL);
    FAILS(add_note(), "No block with ID NOTE"); /* no definitions any more */
    SUCCEEDS(TRV_FMT_initialize());
    SUCCEEDS(add_note());
    sheet = world_reopen();
    HOLDS(world_blocks_on(sheet) == 3);
}

static int veto(const char *format, const char *block)
{
    (void)format;
    (void)block;
    return 0;
}

static int hand_over(const char *format, const char *block)
{
    (void)format;
    (void)block;
    QEL_FMT_set_add_block_cb(veto);
    return 1;
}

void c_ACallbackMayInstallAnother(void)
{
    const unsigned int sheet = sheet_with_format();
    QEL_FMT_set_add_block_cb(hand_over);
    SUCCEEDS(add_note()); /* its own answer holds */
    HOLDS(world_blocks_on(sheet) == 2);
    SUCCEEDS(add_note()); /* vetoed by the other */
    HOLDS(world_blocks_on(sheet) == 2);
}
