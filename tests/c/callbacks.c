/* The two callbacks: vetoing, calling back, clearing themselves. */
#include "world.h"

#include "claims.h"

#include <stddef.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

static int g_blocks_added, g_rows_added;
static char g_seen[256];

static unsigned int sheet_with_format(void)
{
    g_blocks_added = g_rows_added = 0;
    return world_sheet_with_format();
}

static int veto_notes(const char *format, const char *block)
{
    (void)format;
    ++g_blocks_added;
    return strcmp(block, "NOTE") != 0;
}

void c_AVetoedBlockIsGone(void)
{
    const unsigned int sheet = sheet_with_format();
    char *before = malloc(strlen(world_listing()) + 1);
    strcpy(before, world_listing());
    QEL_FMT_set_add_block_cb(veto_notes);
    SUCCEEDS(TRV_FMT_add_block(sheet, "NOTE"));
    HOLDS(g_blocks_added == 1);
    TEXT_IS(world_listing(), before);
    free(before);
    SUCCEEDS(TRV_FMT_add_block(sheet, "TITLE"));
    HOLDS(world_blocks_on(sheet) == 2);
    QEL_FMT_set_add_block_cb(NULL);
    SUCCEEDS(TRV_FMT_add_block(sheet, "NOTE"));
    HOLDS(world_blocks_on(sheet) == 3);
    HOLDS(g_blocks_added == 2);
}

/* Fills in what was just added, adds a row of its own, and looks at everything. */
static int fill_in(const char *format, const char *block)
{
    char line[] = "filled by the callback";
    char *lines[1];
    TRV_FMT_value_list_t list;
    (void)format;
    lines[0] = line;
    list.num_values = 1;
    list.values = lines;
    ++g_blocks_added;
    if (strcmp(block, "TITLE") != 0) return 1;
    SUCCEEDS(TRV_FMT_set_field_value(world_sheet(), block, "NAME", &list));
    SUCCEEDS(TRV_FMT_add_entry(world_sheet(), block, "REV"));
    SUCCEEDS(TRV_FMT_add_block(world_sheet(), "NOTE")); /* and so is called again */
    FAILS(TRV_FMT_add_block(world_sheet(), "GONE"), "No block with ID GONE");
    return 1;
}

static void number_row(const char *format, const char *block, const char *table)
{
    char line[16];
    char *lines[1];
    int count = 0;
    TRV_FMT_value_list_t list;
    (void)format;
    SUCCEEDS(TRV_FMT_ask_number_table_entries(world_sheet(), block, table, &count));
    sprintf(line, "%d", count);
    lines[0] = line;
    list.num_values = 1;
    list.values = lines;
    SUCCEEDS(TRV_FMT_set_table_value(world_sheet(), block, table, count - 1, "NO", &list));
    ++g_rows_added;
}

void c_CallbacksMayCallTheLibrary(void)
{
    TRV_FMT_value_list_t list = {0, NULL};
    unsigned int sheet;
    QEL_FMT_set_add_block_cb(fill_in);
    QEL_FMT_set_append_entry_cb(number_row);
    sheet = sheet_with_format();
    HOLDS(g_blocks_added == 2);
    HOLDS(g_rows_added == 1);
    HOLDS(world_blocks_on(sheet) == 2);
    SUCCEEDS(TRV_FMT_add_entry(sheet, "TITLE", "REV"));
    SUCCEEDS(TRV_FMT_ask_field_value(sheet, "TITLE", "NAME", &list));
    HOLDS(list.num_values == 1);
    if (list.num_values == 1) TEXT_IS(list.values[0], "filled by the callback");
    TRV_FMT_free_value(&list);
    SUCCEEDS(TRV_FMT_ask_table_value(sheet, "TITLE", "REV", 1, "NO", &list));
    HOLDS(list.num_values == 1);
    if (list.num_values == 1) TEXT_IS(list.values[0], "2");
    TRV_FMT_free_value(&list);
}

static int keep_once(const char *format, const char *block)
{
    QEL_FMT_set_add_block_cb(NULL);
    ++g_blocks_added;
    return format[0] == 'F' && block[0] == 'N'; /* the texts are still there */
}

static void count_once(const char *format, const char *block, const char *table)
{
    QEL_FMT_set_append_entry_cb(NULL);
    ++g_rows_added;
    HOLDS(strcmp(format, "F") == 0 && strcmp(block, "TITLE") == 0 && strcmp(table, "REV") == 0);
}

void c_CallbacksMayClearThemselves(void)
{
    const unsigned int sheet = sheet_with_format();
    QEL_FMT_set_add_block_cb(keep_once);
    QEL_FMT_set_append_entry_cb(count_once);
    SUCCEEDS(TRV_FMT_add_block(sheet, "NOTE"));
    SUCCEEDS(TRV_FMT_add_block(sheet, "NOTE"));
    HOLDS(g_blocks_added == 1);
    HOLDS(world_blocks_on(sheet) == 3);
    SUCCEEDS(TRV_FMT_add_entry(sheet, "TITLE", "REV"));
    SUCCEEDS(TRV_FMT_add_entry(sheet, "TITLE", "REV"));
    HOLDS(g_rows_added == 1);
}

static int see_block(const char *format, const char *block)
{
    sprintf(g_seen + strlen(g_seen), "%s/%s;", format, block);
    return 1;
}

static void see_row(const char *format, const char *block, const char *table)
{
    sprintf(g_seen + strlen(g_seen), "%s/%s/%s;", format, block, table);
}

void c_CallbacksGetTheIdentifiers(void)
{
    unsigned int sheet;
    g_seen[0] = '\0';
    QEL_FMT_set_add_block_cb(see_block);
    QEL_FMT_set_append_entry_cb(see_row);
    sheet = sheet_with_format(); /* which requires TITLE */
    SUCCEEDS(TRV_FMT_add_entry(sheet, "TITLE", "REV"));
    SUCCEEDS(TRV_FMT_add_block(sheet, "NOTE"));
    FAILS(TRV_FMT_add_block(sheet, "GONE"), "No block with ID GONE"); /* nobody is called */
    TEXT_IS(g_seen, "F/TITLE;F/TITLE/REV;F/NOTE;");
}
