#include "api/trv_fmt.h"

#include "content/table.h"
#include "drawing/format.h"

extern "C" void QEL_FMT_set_add_block_cb(int (*callback)(const char *, const char *))
{
    TrFormatBase::addBlockCB() = callback;
}

extern "C" void QEL_FMT_set_append_entry_cb(void (*callback)(const char *, const char *,
                                                             const char *))
{
    TrTableBase::appendEntryCB() = callback;
}
