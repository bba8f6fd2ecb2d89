/* Rows of tables. */
#include "world.h"

#include "claims.h"

#include <limits.h>
#include <stddef.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#define BIG (64 * 1024)
#define MANY 10000

static const char *const beyond = "Wanted entry is greater then table has.";

static unsigned int sheet_with_rows(int rows)
{
    const unsigned int sheet = world_sheet();
    SUCCEEDS(TRV_FMT_add_format(sheet, "F", "A3"));
    for (; rows > 0; --rows) SUCCEEDS(TRV_FMT_add_entry(sheet, "TITLE", "REV"));
    return sheet;
}

static int set_row(unsigned int sheet, int row, const char *field, char *line)
{
    TRV_FMT_value_list_t list;
    list.num_values = 1;
    list.values = &line;
    return TRV_FMT_set_table_value(sheet, "TITLE", "REV", row, field, &list);
}

static void row_is(unsigned int sheet, int row, const char *field, const char *line)
{
    TRV_FMT_value_list_t list = {0, NULL};
    SUCCEEDS(TRV_FMT_ask_table_value(sheet, "TITLE", "REV", row, field, &list));
    HOLDS(list.num_values == 1);
    if (list.num_values == 1) TEXT_IS(list.values[0], line);
    TRV_FMT_free_value(&list);
}

static int rows_of(unsigned int sheet)
{
    int count = -1;
    SUCCEEDS(TRV_FMT_ask_number_table_entries(sheet, "TITLE", "REV", &count));
    return count;
}

void c_RowsAreAddedFilledAndDeleted(void)
{
    unsigned int sheet = sheet_with_rows(0);
    char a[] = "A", b[] = "B", c[] = "C";
    int row;
    HOLDS(rows_of(sheet) == 0);
    for (row = 0; row < 3; ++row) SUCCEEDS(TRV_FMT_add_entry(sheet, "TITLE", "REV"));
    SUCCEEDS(set_row(sheet, 0, "NO", a));
    SUCCEEDS(set_row(sheet, 1, "NO", b));
    SUCCEEDS(set_row(sheet, 2, "NO", c));
    SUCCEEDS(TRV_FMT_delete_entry(sheet, "TITLE", "REV", 1));
    sheet = world_reopen();
    HOLDS(rows_of(sheet) == 2);
    row_is(sheet, 0, "NO", "A");
    row_is(sheet, 1, "NO", "C");
    row_is(sheet, 1, "TEXT", "");
}

/* Every table function, one wrong argument at a time. */
static void each_fails(unsigned int sheet, const char *block, const char *table, int row,
                       const char *text)
{
    char line[] = "line", editable = 9;
    char *lines[1];
    const double place[3] = {1.0, 2.0, 3.0};
    TRV_FMT_value_list_t in = {1, NULL}, out = {0, NULL};
    lines[0] = line;
    in.values = lines;
    FAILS(TRV_FMT_ask_table_value(sheet, block, table, row, "NO", &out), text);
    FAILS(TRV_FMT_set_table_value(sheet, block, table, row, "NO", &in), text);
    FAILS(QEL_FMT_get_table_field_editable(sheet, block, table, row, "NO", &editable), text);
    FAILS(QEL_FMT_set_table_field_editable(sheet, block, table, row, "NO", 1), text);
    FAILS(TRV_FMT_delete_entry(sheet, block, table, row), text);
    FAILS(TRV_FMT_place_symbol(sheet, block, table, row, place), text);
    HOLDS(editable == 9);
    TRV_FMT_free_value(&out);
}

static void each_fails_also_without_row(unsigned int sheet, const char *block, const char *table,
                                        const char *text)
{
    int count = -7;
    each_fails(sheet, block, table, 0, text);
    FAILS(TRV_FMT_add_entry(sheet, block, table), text);
    FAILS(TRV_FMT_ask_number_table_entries(sheet, block, table, &count), text);
    HOLDS(count == -7);
}

void c_TableErrorsNameWhatIsMissing(void)
{
    const unsigned int sheet = sheet_with_rows(0);
    char line[] = "line", editable = 9;
    TRV_FMT_value_list_t out = {0, NULL};
    each_fails_also_without_row(world_other_sheet(), "TITLE", "REV", "No format found on drawing");
    each_fails_also_without_row(sheet, "GONE", "REV", "No block with ID GONE on format.");
    each_fails_also_without_row(sheet, "TITLE", "rev", "No table with ID rev on block.");
    each_fails(sheet, "TITLE", "REV", 0, beyond); /* no rows */
    SUCCEEDS(TRV_FMT_add_entry(sheet, "TITLE", "REV"));
    SUCCEEDS(TRV_FMT_add_entry(sheet, "TITLE", "REV"));
    each_fails(sheet, "TITLE", "REV", 2, beyond);
    each_fails(sheet, "TITLE", "REV", -1, beyond);
    each_fails(sheet, "TITLE", "REV", INT_MAX, beyond);
    each_fails(sheet, "TITLE", "REV", INT_MIN, beyond);
    HOLDS(rows_of(sheet) == 2);
    FAILS(TRV_FMT_ask_table_value(sheet, "TITLE", "REV", 1, "X", &out),
          "No field with ID X on table.");
    FAILS(set_row(sheet, 1, "X", line), "No field with ID X on table.");
    FAILS(QEL_FMT_get_table_field_editable(sheet, "TITLE", "REV", 1, "X", &editable),
          "No field with ID X on block.");
    FAILS(QEL_FMT_set_table_field_editable(sheet, "TITLE", "REV", 1, "X", 1),
          "No field with ID X on block.");
    HOLDS(editable == 9);
}

void c_NullAndEmptyTableArgumentsAreRefused(void)
{
    const unsigned int sheet = sheet_with_rows(1);
    TRV_FMT_value_list_t list = {0, NULL};
    each_fails_also_without_row(sheet, NULL, "REV", "No block with ID  on format.");
    each_fails_also_without_row(sheet, "", NULL, "No block with ID  on format.");
    each_fails_also_without_row(sheet, "TITLE", NULL, "No table with ID  on block.");
    FAILS(TRV_FMT_ask_table_value(sheet, "TITLE", "REV", 0, NULL, &list),
          "No field with ID  on table.");
    FAILS(QEL_FMT_set_table_field_editable(sheet, "TITLE", "REV", 0, NULL, 1),
          "No field with ID  on block.");
    FAILS(TRV_FMT_ask_table_value(sheet, "TITLE", "REV", 0, "NO", NULL), "Invalid argument");
    FAILS(TRV_FMT_set_table_value(sheet, "TITLE", "REV", 0, "NO", NULL), "Invalid argument");
    FAILS(QEL_FMT_get_table_field_editable(sheet, "TITLE", "REV", 0, "NO", NULL),
          "Invalid argument");
    FAILS(TRV_FMT_ask_number_table_entries(sheet, "TITLE", "REV", NULL), "Invalid argument");
    FAILS(TRV_FMT_place_symbol(sheet, "TITLE", "REV", 0, NULL), "Invalid argument");
    SUCCEEDS(TRV_FMT_set_table_value(sheet, "TITLE", "REV", 0, "NO", &list)); /* zero lines */
    row_is(sheet, 0, "NO", "");
}

void c_EditabilityOfRowsIsOneOrZero(void)
{
    unsigned int sheet = sheet_with_rows(2);
    char editable = 9;
    SUCCEEDS(QEL_FMT_set_table_field_editable(sheet, "TITLE", "REV", 1, "NO", 0));
    sheet = world_reopen();
    SUCCEEDS(QEL_FMT_get_table_field_editable(sheet, "TITLE", "REV", 1, "NO", &editable));
    HOLDS(editable == 0);
    SUCCEEDS(QEL_FMT_get_table_field_editable(sheet, "TITLE", "REV", 0, "NO", &editable));
    HOLDS(editable == 1);
    SUCCEEDS(QEL_FMT_set_table_field_editable(sheet, "TITLE", "REV", 1, "NO", 64));
    SUCCEEDS(QEL_FMT_get_table_field_editable(sheet, "TITLE", "REV", 1, "NO", &editable));
    HOLDS(editable == 1);
}

void c_SymbolsStandWhereTheyWerePlaced(void)
{
    const unsigned int sheet = sheet_with_rows(1);
    const double there[3] = {200.0, 150.0, 99.0};
    HOLDS(strstr(world_listing(), "(200, 150") == NULL);
    SUCCEEDS(TRV_FMT_place_symbol(sheet, "TITLE", "REV", 0, there));
    HOLDS(strstr(world_listing(), "(200, 150, 0)") != NULL);
    SUCCEEDS(TRV_FMT_delete_entry(sheet, "TITLE", "REV", 0));
    HOLDS(strstr(world_listing(), "(200, 150") == NULL); /* it went with its row */
}

void c_ManyLinesOfARowAreKeptInOrder(void)
{
    const unsigned int sheet = sheet_with_rows(1);
    static char texts[MANY][8];
    static char *lines[MANY];
    TRV_FMT_value_list_t in = {MANY, NULL}, out = {0, NULL};
    int i, right = 0;
    for (i = 0; i < MANY; ++i) {
        sprintf(texts[i], "%d", i);
        lines[i] = texts[i];
    }
    in.values = lines;
    SUCCEEDS(TRV_FMT_set_table_value(sheet, "TITLE", "REV", 0, "TEXT", &in));
    SUCCEEDS(TRV_FMT_ask_table_value(sheet, "TITLE", "REV", 0, "TEXT", &out));
    HOLDS(out.num_values == MANY);
    for (i = 0; i < out.num_values; ++i) right += strcmp(out.values[i], texts[i]) == 0;
    HOLDS(right == MANY);
    TRV_FMT_free_value(&out);
    in.num_values = 0; /* and none at all */
    SUCCEEDS(TRV_FMT_set_table_value(sheet, "TITLE", "REV", 0, "TEXT", &in));
    row_is(sheet, 0, "TEXT", "");
}

void c_LongTextsOfARowAreKeptWhole(void)
{
    unsigned int sheet = sheet_with_rows(2);
    char *text = malloc(BIG + 1);
    memset(text, 'x', BIG);
    text[BIG] = '\0';
    SUCCEEDS(set_row(sheet, 1, "TEXT", text));
    row_is(sheet, 1, "TEXT", text);
    sheet = world_reopen();
    row_is(sheet, 1, "TEXT", text);
    row_is(sheet, 0, "TEXT", "");
    free(text);
}
