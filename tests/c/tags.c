/* Layouts, and tags that name no drawing. */
#include "world.h"

#include "claims.h"
#include "functions.h"

#include "uf.h"

#include <stddef.h>
#include <string.h>

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

void c_TagZeroIsAnInvalidDrawing(void)
{
    const struct place nowhere = {0, NULL, NULL, NULL, NULL, -1, NULL};
    int which;
    for (which = 0; which < FUNCTIONS; ++which) {
        forget_last_error();
        claim_fails(functions[which].call(&nowhere, 0), "Invalid drawing", __FILE__, __LINE__,
                    functions[which].name);
    }
}

/* A tag that was never a drawing with a format gets a failure with a text of its own, or, from the functions
   that pass over sheets without a format, a success; and nothing changes. */
static void no_drawing(unsigned int tag)
{
    struct place at = {0, "F", "A3", "TITLE", "REV", 0, "NAME"};
    int which;
    char before[64 * 1024];
    at.sheet = tag;
    HOLDS(strlen(world_listing()) < sizeof before);
    strncpy(before, world_listing(), sizeof before - 1);
    before[sizeof before - 1] = '\0';
    for (which = 0; which < FUNCTIONS; ++which) {
        int status;
        forget_last_error();
        status = functions[which].call(&at, 1);
        HOLDS(status == 1 || (status == 0 && functions[which].passes_over));
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

/* A part that is opened again has new tags. */
void c_ATagOfAnEarlierSessionIsNoDrawing(void)
{
    unsigned int before = world_sheet(), after;
    SUCCEEDS(TRV_FMT_add_format(before, "F", "A3"));
    after = world_reopen();
    HOLDS(after != before);
    no_drawing(before);
}
