/* Formats and blocks. */
#include "world.h"

#include "claims.h"

#include <stdlib.h>
#include <string.h>

static char *copy_of(const char *text)
{
    char *copy = malloc(strlen(text) + 1);
    strcpy(copy, text);
    return copy;
}

void c_AFormatIsPlacedAskedAndDeleted(void)
{
    const unsigned int sheet = world_sheet();
    char format[TRV_FMT_MAX_ID_BUFSIZE] = "before", size[TRV_FMT_MAX_ID_BUFSIZE] = "before";
    SUCCEEDS(TRV_FMT_ask_format(sheet, format, size));
    TEXT_IS(format, "before"); /* no format: left alone */
    TEXT_IS(size, "before");
    SUCCEEDS(TRV_FMT_add_format(sheet, "F", "A4"));
    SUCCEEDS(TRV_FMT_ask_format(sheet, format, size));
    TEXT_IS(format, "F");
    TEXT_IS(size, "A4");
    SUCCEEDS(TRV_FMT_delete_format(sheet));
    SUCCEEDS(TRV_FMT_delete_format(sheet));
    strcpy(format, "after");
    SUCCEEDS(TRV_FMT_ask_format(sheet, format, size));
    TEXT_IS(format, "after");
}

void c_FormatErrorsNameWhatIsMissing(void)
{
    const unsigned int sheet = world_sheet();
    char format[TRV_FMT_MAX_ID_BUFSIZE], size[TRV_FMT_MAX_ID_BUFSIZE];
    FAILS(TRV_FMT_add_format(sheet, "G", "A3"), "No format with ID G");
    FAILS(TRV_FMT_add_format(sheet, "f", "A3"), "No format with ID f");
    FAILS(TRV_FMT_add_format(sheet, NULL, "A3"), "No format with ID ");
    FAILS(TRV_FMT_add_format(sheet, "", "A3"), "No format with ID ");
    FAILS(TRV_FMT_add_format(sheet, "F", "A"), "No size with ID A");
    FAILS(TRV_FMT_add_format(sheet, "F", NULL), "No size with ID ");
    SUCCEEDS(TRV_FMT_add_format(sheet, "F", "A3"));
    FAILS(TRV_FMT_add_format(sheet, "F", "A3"), "Format already exists on drawing");
    FAILS(TRV_FMT_add_format(sheet, "G", "A9"), "Format already exists on drawing");
    FAILS(TRV_FMT_ask_format(sheet, NULL, size), "Invalid argument");
    FAILS(TRV_FMT_ask_format(sheet, format, NULL), "Invalid argument");
}

/* 255 of 300 characters and the NUL; what stands behind the buffers stays. */
void c_LongNamesAreCutForTheBuffers(void)
{
    char format[TRV_FMT_MAX_ID_BUFSIZE + 1], size[TRV_FMT_MAX_ID_BUFSIZE + 1];
    char long_format[301], long_size[301];
    memset(long_format, 'L', 300);
    memset(long_size, 'S', 300);
    long_format[300] = long_size[300] = '\0';
    format[TRV_FMT_MAX_ID_BUFSIZE] = size[TRV_FMT_MAX_ID_BUFSIZE] = '#';
    SUCCEEDS(TRV_FMT_add_format(world_sheet(), long_format, long_size));
    SUCCEEDS(TRV_FMT_ask_format(world_sheet(), format, size));
    HOLDS(strlen(format) == 255 && strncmp(format, long_format, 255) == 0);
    HOLDS(strlen(size) == 255 && strncmp(size, long_size, 255) == 0);
    HOLDS(format[TRV_FMT_MAX_ID_BUFSIZE] == '#' && size[TRV_FMT_MAX_ID_BUFSIZE] == '#');
}

void c_UpdatingChangesNothingThatIsUpToDate(void)
{
    const unsigned int sheet = world_sheet();
    char *before;
    SUCCEEDS(TRV_FMT_update(world_other_sheet())); /* no format */
    SUCCEEDS(TRV_FMT_recreate_notes(world_other_sheet()));
    SUCCEEDS(TRV_FMT_verify_block_locations(world_other_sheet()));
    SUCCEEDS(TRV_FMT_add_format(sheet, "F", "A3"));
    before = copy_of(world_listing());
    SUCCEEDS(TRV_FMT_update(sheet));
    TEXT_IS(world_listing(), before);
    SUCCEEDS(TRV_FMT_verify_block_locations(sheet));
    TEXT_IS(world_listing(), before);
    SUCCEEDS(TRV_FMT_recreate_notes(sheet));
    HOLDS(strlen(world_listing()) > 0);
    free(before);
}

static void blocks_are(unsigned int sheet, int number, const char *const *ids)
{
    TRV_FMT_value_list_t list = {-7, NULL};
    int i;
    SUCCEEDS(TRV_FMT_ask_blocks_on_drawing(sheet, &list));
    HOLDS(list.num_values == number);
    HOLDS(list.values != NULL); /* also of a list of 0 */
    for (i = 0; i < list.num_values && i < number; ++i) TEXT_IS(list.values[i], ids[i]);
    TRV_FMT_free_value(&list);
}

void c_BlocksAreAddedListedMovedAndDeleted(void)
{
    static const char *const one[] = {"TITLE"}, *const three[] = {"TITLE", "NOTE", "NOTE"};
    const unsigned int sheet = world_sheet();
    const double there[] = {70.0, 80.0};
    char *before;
    SUCCEEDS(TRV_FMT_add_format(sheet, "F", "A3"));
    blocks_are(sheet, 1, one);
    SUCCEEDS(TRV_FMT_add_block(sheet, "NOTE"));
    SUCCEEDS(TRV_FMT_add_block(sheet, "NOTE"));
    blocks_are(sheet, 3, three);
    SUCCEEDS(QEL_FMT_move_block(sheet, "TITLE", there));
    HOLDS(strstr(world_listing(), "70") != NULL);
    SUCCEEDS(QEL_FMT_move_block(sheet, "TITLE", NULL)); /* back to its own point */
    before = copy_of(world_listing());
    SUCCEEDS(QEL_FMT_move_block(sheet, "GONE", there)); /* none of that name: no error */
    SUCCEEDS(QEL_FMT_move_block(sheet, NULL, there));
    SUCCEEDS(TRV_FMT_delete_block(sheet, "GONE"));
    SUCCEEDS(TRV_FMT_delete_block(sheet, NULL));
    SUCCEEDS(TRV_FMT_delete_block(sheet, "TITL"));
    TEXT_IS(world_listing(), before);
    free(before);
    SUCCEEDS(TRV_FMT_delete_block(sheet, "NOTE"));
    blocks_are(sheet, 2, three); /* the first of the two is gone */
    SUCCEEDS(TRV_FMT_delete_block(sheet, "NOTE"));
    SUCCEEDS(TRV_FMT_delete_block(sheet, "TITLE"));
    blocks_are(sheet, 0, NULL);
}

void c_BlockErrorsNameWhatIsMissing(void)
{
    const unsigned int sheet = world_sheet();
    const double there[] = {70.0, 80.0};
    TRV_FMT_value_list_t list = {0, NULL};
    FAILS(TRV_FMT_add_block(sheet, "NOTE"), "No format found on drawing");
    FAILS(TRV_FMT_delete_block(sheet, "NOTE"), "No format found on drawing");
    FAILS(TRV_FMT_ask_blocks_on_drawing(sheet, &list), "No format found on drawing");
    FAILS(QEL_FMT_move_block(sheet, "NOTE", there), "No format found on drawing");
    TRV_FMT_free_value(&list); /* a failed ask leaves nothing dangling */
    SUCCEEDS(TRV_FMT_add_format(sheet, "F", "A3"));
    FAILS(TRV_FMT_add_block(sheet, "GONE"), "No block with ID GONE");
    FAILS(TRV_FMT_add_block(sheet, "note"), "No block with ID note");
    FAILS(TRV_FMT_add_block(sheet, ""), "No block with ID ");
    FAILS(TRV_FMT_add_block(sheet, NULL), "No block with ID ");
    FAILS(TRV_FMT_ask_blocks_on_drawing(sheet, NULL), "Invalid argument");
}
