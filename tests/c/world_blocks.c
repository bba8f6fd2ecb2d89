/* What several C tests ask of a sheet. */
#include "world.h"

#include <stddef.h>

unsigned int world_sheet_with_format(void)
{
    SUCCEEDS(TRV_FMT_add_format(world_sheet(), "F", "A3"));
    return world_sheet();
}

int world_blocks_on(unsigned int sheet)
{
    TRV_FMT_value_list_t list = {0, NULL};
    int number;
    SUCCEEDS(TRV_FMT_ask_blocks_on_drawing(sheet, &list));
    number = list.num_values;
    TRV_FMT_free_value(&list);
    return number;
}
