/* The rows of functions.h. A failure must leave what is to be written as it was, and a list empty. */
#include "functions.h"

#include "world.h"

#include <stddef.h>

static int add_format(const struct place *at, int with_pointers)
{
    (void)with_pointers;
    return TRV_FMT_add_format(at->sheet, at->format, at->size);
}

static int ask_format(const struct place *at, int with_pointers)
{
    char format[TRV_FMT_MAX_ID_BUFSIZE], size[TRV_FMT_MAX_ID_BUFSIZE];
    return TRV_FMT_ask_format(at->sheet, with_pointers ? format : NULL,
                              with_pointers ? size : NULL);
}

static int delete_format(const struct place *at, int with_pointers)
{
    (void)with_pointers;
    return TRV_FMT_delete_format(at->sheet);
}

static int update(const struct place *at, int with_pointers)
{
    (void)with_pointers;
    return TRV_FMT_update(at->sheet);
}

static int recreate_notes(const struct place *at, int with_pointers)
{
    (void)with_pointers;
    return TRV_FMT_recreate_notes(at->sheet);
}

static int verify_block_locations(const struct place *at, int with_pointers)
{
    (void)with_pointers;
    return TRV_FMT_verify_block_locations(at->sheet);
}

static int add_block(const struct place *at, int with_pointers)
{
    (void)with_pointers;
    return TRV_FMT_add_block(at->sheet, at->block);
}

static int delete_block(const struct place *at, int with_pointers)
{
    (void)with_pointers;
    return TRV_FMT_delete_block(at->sheet, at->block);
}

static int move_block(const struct place *at, int with_pointers)
{
    const double point[2] = {10.0, 20.0};
    return QEL_FMT_move_block(at->sheet, at->block, with_pointers ? point : NULL);
}

/* A failed ask leaves nothing that would have to be released, and releasing it does no harm. */
static int asked(int status, TRV_FMT_value_list_t *list)
{
    if (status != 0) HOLDS(list->num_values == 0);
    TRV_FMT_free_value(list);
    return status;
}

static int ask_blocks(const struct place *at, int with_pointers)
{
    TRV_FMT_value_list_t list = {0, NULL};
    return asked(TRV_FMT_ask_blocks_on_drawing(at->sheet, with_pointers ? &list : NULL), &list);
}

static int ask_field(const struct place *at, int with_pointers)
{
    TRV_FMT_value_list_t list = {0, NULL};
    return asked(
        TRV_FMT_ask_field_value(at->sheet, at->block, at->field, with_pointers ? &list : NULL),
        &list);
}

static int set_field(const struct place *at, int with_pointers)
{
    char line[] = "line", *lines[1];
    TRV_FMT_value_list_t list = {1, NULL};
    lines[0] = line;
    list.values = lines;
    return TRV_FMT_set_field_value(at->sheet, at->block, at->field, with_pointers ? &list : NULL);
}

static int set_field_editable(const struct place *at, int with_pointers)
{
    (void)with_pointers;
    return QEL_FMT_set_field_editable(at->sheet, at->block, at->field, 1);
}

static int get_field_editable(const struct place *at, int with_pointers)
{
    char editable = 9;
    const int status = QEL_FMT_get_field_editable(at->sheet, at->block, at->field,
                                                  with_pointers ? &editable : NULL);
    if (status != 0) HOLDS(editable == 9);
    return status;
}

static int ask_row(const struct place *at, int with_pointers)
{
    TRV_FMT_value_list_t list = {0, NULL};
    return asked(TRV_FMT_ask_table_value(at->sheet, at->block, at->table, at->row, at->field,
                                         with_pointers ? &list : NULL),
                 &list);
}

static int set_row(const struct place *at, int with_pointers)
{
    char line[] = "line", *lines[1];
    TRV_FMT_value_list_t list = {1, NULL};
    lines[0] = line;
    list.values = lines;
    return TRV_FMT_set_table_value(at->sheet, at->block, at->table, at->row, at->field,
                                   with_pointers ? &list : NULL);
}

static int set_row_editable(const struct place *at, int with_pointers)
{
    (void)with_pointers;
    return QEL_FMT_set_table_field_editable(at->sheet, at->block, at->table, at->row, at->field, 1);
}

static int get_row_editable(const struct place *at, int with_pointers)
{
    char editable = 9;
    const int status = QEL_FMT_get_table_field_editable(
        at->sheet, at->block, at->table, at->row, at->field, with_pointers ? &editable : NULL);
    if (status != 0) HOLDS(editable == 9);
    return status;
}

static int add_entry(const struct place *at, int with_pointers)
{
    (void)with_pointers;
    return TRV_FMT_add_entry(at->sheet, at->block, at->table);
}

static int delete_entry(const struct place *at, int with_pointers)
{
    (void)with_pointers;
    return TRV_FMT_delete_entry(at->sheet, at->block, at->table, at->row);
}

static int count_rows(const struct place *at, int with_pointers)
{
    int count = -7;
    const int status = TRV_FMT_ask_number_table_entries(at->sheet, at->block, at->table,
                                                        with_pointers ? &count : NULL);
    if (status != 0) HOLDS(count == -7);
    return status;
}

static int place_symbol(const struct place *at, int with_pointers)
{
    const double point[3] = {10.0, 20.0, 0.0};
    return TRV_FMT_place_symbol(at->sheet, at->block, at->table, at->row,
                                with_pointers ? point : NULL);
}

const char *const error_texts[ERRORS] = {
    "Invalid drawing",
    "Invalid argument",
    "Format already exists on drawing",
    "No format with ID *",
    "No size with ID *",
    "Definition for format ID(*) was not found on disk.\nUnable to update format.",
    "No format found on drawing",
    "No block with ID *",
    "Block location on format not found for block *",
    "No block with ID * on format.",
    "No table with ID * on block.",
    "Wanted entry is greater then table has.",
    "No field with ID * on block.",
    "No field with ID * on table.",
};

#define TAG BIT(INVALID_DRAWING)
#define POINTER (TAG | BIT(INVALID_ARGUMENT))
#define ON_FORMAT (TAG | BIT(NO_FORMAT))
#define IN_BLOCK (ON_FORMAT | BIT(NO_BLOCK))
#define IN_TABLE (IN_BLOCK | BIT(NO_TABLE))
#define IN_ROW (IN_TABLE | BIT(NO_ROW))

const struct function functions[FUNCTIONS] = {
    {"TRV_FMT_add_format", add_format,
     TAG | BIT(FORMAT_EXISTS) | BIT(NO_FORMAT_DEFINITION) | BIT(NO_SIZE_DEFINITION), 0},
    {"TRV_FMT_ask_format", ask_format, POINTER, 1},
    {"TRV_FMT_delete_format", delete_format, TAG, 1},
    {"TRV_FMT_update", update, TAG | BIT(DEFINITION_GONE), 1},
    {"TRV_FMT_recreate_notes", recreate_notes, TAG, 1},
    {"TRV_FMT_verify_block_locations", verify_block_locations, TAG, 1},
    {"TRV_FMT_add_block", add_block, ON_FORMAT | BIT(NO_BLOCK_DEFINITION) | BIT(NO_PLACE), 0},
    {"TRV_FMT_delete_block", delete_block, ON_FORMAT, 0},
    {"TRV_FMT_ask_blocks_on_drawing", ask_blocks, POINTER | ON_FORMAT, 0},
    {"QEL_FMT_move_block", move_block, ON_FORMAT, 0},
    {"TRV_FMT_ask_field_value", ask_field, POINTER | IN_BLOCK | BIT(NO_FIELD), 0},
    {"TRV_FMT_set_field_value", set_field, POINTER | IN_BLOCK | BIT(NO_FIELD), 0},
    {"QEL_FMT_set_field_editable", set_field_editable, IN_BLOCK | BIT(NO_FIELD), 0},
    {"QEL_FMT_get_field_editable", get_field_editable, POINTER | IN_BLOCK | BIT(NO_FIELD), 0},
    {"TRV_FMT_ask_table_value", ask_row, POINTER | IN_ROW | BIT(NO_COLUMN), 0},
    {"TRV_FMT_set_table_value", set_row, POINTER | IN_ROW | BIT(NO_COLUMN), 0},
    {"QEL_FMT_set_table_field_editable", set_row_editable, IN_ROW | BIT(NO_FIELD), 0},
    {"QEL_FMT_get_table_field_editable", get_row_editable, POINTER | IN_ROW | BIT(NO_FIELD), 0},
    {"TRV_FMT_add_entry", add_entry, IN_TABLE, 0},
    {"TRV_FMT_delete_entry", delete_entry, IN_ROW, 0},
    {"TRV_FMT_ask_number_table_entries", count_rows, POINTER | IN_TABLE, 0},
    {"TRV_FMT_place_symbol", place_symbol, POINTER | IN_ROW, 0},
};
