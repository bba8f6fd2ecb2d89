/* Every error of every function, provoked. */
#include "world.h"

#include "claims.h"
#include "functions.h"

#include <limits.h>
#include <stddef.h>
#include <stdlib.h>
#include <string.h>

#define BIG (64 * 1024)

/* Functions of rows are asked for a field of row 0, the others for one of the block. */
static struct place right_for(const struct function *function)
{
    struct place at = {0, "F", "A3", "TITLE", "REV", 0, "NAME"};
    at.sheet = world_sheet();
    if (function->errors & BIT(NO_ROW)) at.field = "NO";
    return at;
}

/* Makes the call wrong in one way; 0 when the error needs more than another argument. */
static int spoil(struct place *at, enum error error, const char *id)
{
    switch (error) {
    case INVALID_DRAWING:
        at->sheet = 0;
        return 1;
    case INVALID_ARGUMENT:
    case FORMAT_EXISTS:
        return 1;
    case NO_FORMAT_DEFINITION:
        at->sheet = world_other_sheet();
        at->format = id;
        return 1;
    case NO_SIZE_DEFINITION:
        at->sheet = world_other_sheet();
        at->size = id;
        return 1;
    case NO_FORMAT:
        at->sheet = world_other_sheet();
        return 1;
    case NO_BLOCK_DEFINITION:
    case NO_BLOCK:
        at->block = id;
        return 1;
    case NO_TABLE:
        at->table = id;
        return 1;
    case NO_ROW:
        at->row = 1;
        return 1;
    case NO_FIELD:
    case NO_COLUMN:
        at->field = id;
        return 1;
    default:
        return 0;
    }
}

static char *text_with(const char *pattern, const char *id)
{
    const char *mark = strchr(pattern, '*');
    char *text = malloc(strlen(pattern) + strlen(id) + 1);
    strcpy(text, pattern);
    if (mark) {
        strcpy(text + (mark - pattern), id);
        strcat(text, mark + 1);
    }
    return text;
}

/* Each error of each function by one wrong argument; the part stays as it is. */
static void provoke_all(const char *given, const char *named)
{
    int which, error;
    char *before;
    SUCCEEDS(TRV_FMT_add_format(world_sheet(), "F", "A3"));
    SUCCEEDS(TRV_FMT_add_entry(world_sheet(), "TITLE", "REV"));
    before = text_with(world_listing(), "");
    for (which = 0; which < FUNCTIONS; ++which)
        for (error = 0; error < ERRORS; ++error) {
            struct place at = right_for(&functions[which]);
            char *text;
            if (!(functions[which].errors & BIT(error)) || !spoil(&at, (enum error)error, given))
                continue;
            text = text_with(error_texts[error], named);
            forget_last_error();
            claim_fails(functions[which].call(&at, error != INVALID_ARGUMENT), text, __FILE__,
                        __LINE__, functions[which].name);
            free(text);
        }
    TEXT_IS(world_listing(), before);
    free(before);
}

void c_EveryErrorIsProvokedByAWrongName(void) { provoke_all("GONE", "GONE"); }
void c_EveryErrorIsProvokedByAnEmptyName(void) { provoke_all("", ""); }
void c_EveryErrorIsProvokedByANullName(void) { provoke_all(NULL, ""); }

void c_EveryErrorIsProvokedByALongName(void)
{
    char *id = malloc(BIG + 1);
    memset(id, 'i', BIG);
    id[BIG] = '\0';
    provoke_all(id, id);
    free(id);
}

/* With everything wrong at once the first test speaks, down to the last one. */
void c_ErrorsAreTestedFromTheSheetDown(void)
{
    struct place at = {0, NULL, NULL, "GONE", "GONE", INT_MAX, "GONE"};
    TRV_FMT_value_list_t list = {0, NULL};
    SUCCEEDS(TRV_FMT_add_format(world_sheet(), "F", "A3"));
    FAILS(TRV_FMT_ask_table_value(0, at.block, at.table, at.row, at.field, NULL),
          "Invalid drawing");
    at.sheet = world_other_sheet();
    FAILS(TRV_FMT_ask_table_value(at.sheet, at.block, at.table, at.row, at.field, NULL),
          "Invalid argument");
    FAILS(TRV_FMT_ask_table_value(at.sheet, at.block, at.table, at.row, at.field, &list),
          "No format found on drawing");
    at.sheet = world_sheet();
    FAILS(TRV_FMT_ask_table_value(at.sheet, at.block, at.table, at.row, at.field, &list),
          "No block with ID GONE on format.");
    FAILS(TRV_FMT_ask_table_value(at.sheet, "TITLE", at.table, at.row, at.field, &list),
          "No table with ID GONE on block.");
    FAILS(TRV_FMT_ask_table_value(at.sheet, "TITLE", "REV", at.row, at.field, &list),
          "Wanted entry is greater then table has.");
    SUCCEEDS(TRV_FMT_add_entry(at.sheet, "TITLE", "REV"));
    FAILS(TRV_FMT_ask_table_value(at.sheet, "TITLE", "REV", 0, at.field, &list),
          "No field with ID GONE on table.");
    SUCCEEDS(TRV_FMT_ask_table_value(at.sheet, "TITLE", "REV", 0, "NO", &list));
    TRV_FMT_free_value(&list);
}

void c_ABlockNeedsAPlaceOnTheFormat(void)
{
    SUCCEEDS(TRV_FMT_add_format(world_sheet(), "F", "A3"));
    FAILS(TRV_FMT_add_block(world_sheet(), "ELSEWHERE"),
          "Block location on format not found for block ELSEWHERE");
}

void c_AFormatWhoseDefinitionIsGoneIsNotUpdated(void)
{
    char *before;
    SUCCEEDS(TRV_FMT_add_format(world_sheet(), "F", "A3"));
    before = text_with(world_listing(), "");
    SUCCEEDS(TRV_FMT_terminate());
    SUCCEEDS(QEL_FMT_initialize(0));
    FAILS(TRV_FMT_update(world_sheet()),
          "Definition for format ID(F) was not found on disk.\nUnable to update format.");
    TEXT_IS(world_listing(), before);
    free(before);
}

void c_AReleasedListMayBeReleasedAgain(void)
{
    TRV_FMT_value_list_t list = {0, NULL};
    SUCCEEDS(TRV_FMT_add_format(world_sheet(), "F", "A3"));
    SUCCEEDS(TRV_FMT_ask_blocks_on_drawing(world_sheet(), &list));
    HOLDS(list.num_values == 1);
    TRV_FMT_free_value(&list);
    HOLDS(list.num_values == 0);
    HOLDS(list.values == NULL);
    TRV_FMT_free_value(&list);
    /* A failed ask of a list that was released leaves nothing to release. */
    FAILS(TRV_FMT_ask_field_value(world_sheet(), "GONE", "NAME", &list),
          "No block with ID GONE on format.");
    TRV_FMT_free_value(&list);
}
