/* A process in which nothing has failed yet: the last error is an empty text, and ending what never began is none. */
#include "api/trv_fmt.h"

#include <stdio.h>
#include <string.h>

static int is_empty(const char *when)
{
    if (strcmp(TRV_FMT_ask_last_error(), "") == 0) return 1;
    printf("%s: \"%s\"\n", when, TRV_FMT_ask_last_error());
    return 0;
}

int main(void)
{
    int good = is_empty("at first");
    good &= TRV_FMT_terminate() == 0;
    good &= is_empty("after a terminate without initialise");
    good &= QEL_FMT_initialize(0) == 0;
    good &= is_empty("after an initialise");
    good &= TRV_FMT_update(0) == 1;
    good &= strcmp(TRV_FMT_ask_last_error(), "Invalid drawing") == 0;
    good &= TRV_FMT_terminate() == 0;
    return good ? 0 : 1;
}
