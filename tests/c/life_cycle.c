/* Start and end, the last error, the start-up exit. */
#include "world.h"

#include "claims.h"

#include <stddef.h>
#include <string.h>

void c_LifeMayBeginAndEndInAnyOrder(void)
{
    SUCCEEDS(TRV_FMT_initialize()); /* once more */
    SUCCEEDS(TRV_FMT_terminate());
    SUCCEEDS(TRV_FMT_terminate()); /* without an initialise */
    SUCCEEDS(TRV_FMT_initialize());
    SUCCEEDS(TRV_FMT_add_format(world_sheet(), "F", "A3"));
}

void c_WithoutDefinitionsNoFormatIsKnown(void)
{
    SUCCEEDS(TRV_FMT_terminate());
    SUCCEEDS(QEL_FMT_initialize(0));
    FAILS(TRV_FMT_add_format(world_sheet(), "F", "A3"), "No format with ID F");
    SUCCEEDS(TRV_FMT_terminate());
    SUCCEEDS(QEL_FMT_initialize(-1)); /* any value but 0 loads */
    SUCCEEDS(TRV_FMT_add_format(world_sheet(), "F", "A3"));
}

void c_TheLastErrorSurvivesSuccesses(void)
{
    FAILS(TRV_FMT_add_block(world_sheet(), "NOTE"), "No format found on drawing");
    SUCCEEDS(TRV_FMT_add_format(world_sheet(), "F", "A3"));
    SUCCEEDS(TRV_FMT_terminate());
    TEXT_IS(TRV_FMT_ask_last_error(), "No format found on drawing");
    SUCCEEDS(TRV_FMT_initialize());
    HOLDS(TRV_FMT_ask_last_error() != NULL);
    TEXT_IS(TRV_FMT_ask_last_error(), "No format found on drawing");
}

void c_TheStartUpExitMayRunAgain(void)
{
    ufsta();
    ufsta();
    SUCCEEDS(TRV_FMT_add_format(world_sheet(), "F", "A3"));
    TRV_FMT_free_value(NULL);
}
