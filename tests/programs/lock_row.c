/* Locks a field of a table's row, which the command has no verb for:
       lock_row PART BLOCK TABLE ROW FIELD
   The part's current sheet is the one that is meant. */
#include "api/trv_fmt.h"

#include "uf.h"
#include "uf_draw.h"
#include "uf_part.h"

#include <stdio.h>
#include <stdlib.h>

static int failed(const char *what, int status)
{
    if (status != 0) fprintf(stderr, "lock_row: %s: %d\n", what, status);
    return status != 0;
}

int main(int count, char **arguments)
{
    UF_PART_load_status_t loaded;
    tag_t part = NULL_TAG, sheet = NULL_TAG;
    if (count != 6) return 2;
    if (failed("start", QEL_FMT_initialize(0))) return 1;
    if (failed("open", UF_PART_open(arguments[1], &part, &loaded))) return 1;
    UF_PART_free_load_status(&loaded);
    if (failed("sheet", UF_DRAW_ask_current_drawing(&sheet))) return 1;
    if (failed("lock", QEL_FMT_set_table_field_editable(sheet, arguments[2], arguments[3],
                                                        atoi(arguments[4]), arguments[5], 0))) {
        fprintf(stderr, "lock_row: %s\n", TRV_FMT_ask_last_error());
        return 1;
    }
    return failed("save", UF_PART_save());
}
