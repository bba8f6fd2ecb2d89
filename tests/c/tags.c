/* Layouts, and tags that name no drawing. */
#include "world.h"

#include "claims.h"

#include "uf.h"

#include <stddef.h>

/* A caller was compiled with these. */
typedef char list_begins_with_its_number[offsetof(TRV_FMT_value_list_t, num_values) == 0 ? 1 : -1];
typedef char
    texts_follow_as_a_pointer[offsetof(TRV_FMT_value_list_t, values) == sizeof(char **) ? 1 : -1];
typedef char
    list_is_two_pointers_long[sizeof(TRV_FMT_value_list_t) == 2 * sizeof(char **) ? 1 : -1];
typedef char status_has_32_bits[sizeof(int) == 4 ? 1 : -1];
typedef char tags_have_32_bits[sizeof(unsigned int) == 4 ? 1 : -1];

void c_StructuresHaveTheLayoutThatCallersCompiled(void)
{
    const TRV_FMT_value_list_t list = {1, NULL};
    const int number = 1;
    HOLDS(*(const int *)&list == number);
    HOLDS(sizeof(list_begins_with_its_number) + sizeof(texts_follow_as_a_pointer) +
              sizeof(list_is_two_pointers_long) + sizeof(status_has_32_bits) +
              sizeof(tags_have_32_bits) ==
          5);
    HOLDS(TRV_FMT_MAX_ID_BUFSIZE == 256);
}

void c_TagsStandBesideThoseOfThePlatform(void)
{
    tag_t tag = world_sheet();
    unsigned int *same_type = &tag;
    SUCCEEDS(TRV_FMT_update(*same_type));
}

/* Every function that takes a tag, with every other argument as bad as it can be. */

#define TAG_FUNCTIONS 22

static int call_bare(int which, unsigned int tag)
{
    switch (which) {
    case 0:
        return TRV_FMT_add_format(tag, NULL, NULL);
    case 1:
        return TRV_FMT_ask_format(tag, NULL, NULL);
    case 2:
        return TRV_FMT_delete_format(tag);
    case 3:
        return TRV_FMT_update(tag);
    case 4:
        return TRV_FMT_recreate_notes(tag);
    case 5:
        return TRV_FMT_verify_block_locations(tag);
    case 6:
        return TRV_FMT_add_block(tag, NULL);
    case 7:
        return TRV_FMT_delete_block(tag, NULL);
    case 8:
        return TRV_FMT_ask_blocks_on_drawing(tag, NULL);
    case 9:
        return QEL_FMT_move_block(tag, NULL, NULL);
    case 10:
        return TRV_FMT_ask_field_value(tag, NULL, NULL, NULL);
    case 11:
        return TRV_FMT_set_field_value(tag, NULL, NULL, NULL);
    case 12:
        return QEL_FMT_set_field_editable(tag, NULL, NULL, 1);
    case 13:
        return QEL_FMT_get_field_editable(tag, NULL, NULL, NULL);
    case 14:
        return TRV_FMT_ask_table_value(tag, NULL, NULL, -1, NULL, NULL);
    case 15:
        return TRV_FMT_set_table_value(tag, NULL, NULL, -1, NULL, NULL);
    case 16:
        return QEL_FMT_set_table_field_editable(tag, NULL, NULL, -1, NULL, 1);
    case 17:
        return QEL_FMT_get_table_field_editable(tag, NULL, NULL, -1, NULL, NULL);
    case 18:
        return TRV_FMT_add_entry(tag, NULL, NULL);
    case 19:
        return TRV_FMT_delete_entry(tag, NULL, NULL, -1);
    case 20:
        return TRV_FMT_ask_number_table_entries(tag, NULL, NULL, NULL);
    default:
        return TRV_FMT_place_symbol(tag, NULL, NULL, -1, NULL);
    }
}

void c_TagZeroIsAnInvalidDrawing(void)
{
    int which;
    for (which = 0; which < TAG_FUNCTIONS; ++which) FAILS(call_bare(which, 0), "Invalid drawing");
}

/* The rest of the arguments is right: only the tag is not. */
static int call_right(int which, unsigned int tag)
{
    char buffer[TRV_FMT_MAX_ID_BUFSIZE], size[TRV_FMT_MAX_ID_BUFSIZE];
    char line[] = "line", editable = 0;
    char *lines[1];
    int count = 0;
    const double place[3] = {10.0, 20.0, 0.0};
    TRV_FMT_value_list_t in = {1, NULL}, out = {0, NULL};
    lines[0] = line;
    in.values = lines;
    switch (which) {
    case 0:
        return TRV_FMT_add_format(tag, "F", "A3");
    case 1:
        return TRV_FMT_ask_format(tag, buffer, size);
    case 8:
        return TRV_FMT_ask_blocks_on_drawing(tag, &out);
    case 9:
        return QEL_FMT_move_block(tag, "TITLE", place);
    case 10:
        return TRV_FMT_ask_field_value(tag, "TITLE", "NAME", &out);
    case 11:
        return TRV_FMT_set_field_value(tag, "TITLE", "NAME", &in);
    case 13:
        return QEL_FMT_get_field_editable(tag, "TITLE", "NAME", &editable);
    case 14:
        return TRV_FMT_ask_table_value(tag, "TITLE", "REV", 0, "NO", &out);
    case 15:
        return TRV_FMT_set_table_value(tag, "TITLE", "REV", 0, "NO", &in);
    case 17:
        return QEL_FMT_get_table_field_editable(tag, "TITLE", "REV", 0, "NO", &editable);
    case 20:
        return TRV_FMT_ask_number_table_entries(tag, "TITLE", "REV", &count);
    case 21:
        return TRV_FMT_place_symbol(tag, "TITLE", "REV", 0, place);
    default:
        return call_bare(which, tag);
    }
}

/* A tag that was never a drawing with a format gets a failure with a text of its own, or, from the functions
   that pass over sheets without a format, a success; and nothing changes. */
static void no_drawing(unsigned int tag)
{
    int which;
    char before[64 * 1024];
    size_t length = 0;
    for (; world_listing()[length] && length + 1 < sizeof before; ++length)
        before[length] = world_listing()[length];
    before[length] = '\0';
    for (which = 0; which < TAG_FUNCTIONS; ++which) {
        int status;
        const int passes_over = (which >= 1 && which <= 5);
        forget_last_error();
        status = call_right(which, tag);
        HOLDS(status == 1 || (status == 0 && passes_over));
        if (status == 1) {
            HOLDS(TRV_FMT_ask_last_error()[0] != '\0');
            HOLDS(TRV_FMT_ask_last_error()[0] != 'n'); /* no call has failed yet */
        }
    }
    TEXT_IS(world_listing(), before);
}

void c_ADeletedSheetIsRefusedOrHasNoFormat(void)
{
    no_drawing(world_dead_sheet());
    no_drawing(0xfffffff0u); /* never handed out */
}

void c_AForeignTagIsRefusedOrHasNoFormat(void)
{
    no_drawing(world_part_tag());
    no_drawing(world_note_tag());
}
