// Fields of blocks.
#include "api/guard.h"
#include "api/lookup.h"
#include "api/trv_fmt.h"
#include "api/values.h"

using namespace QelFmt::api;

extern "C" int TRV_FMT_ask_field_value(unsigned drawing, const char *block_id, const char *field_id,
                                       TRV_FMT_value_list_t *value)
{
    return guarded([&] {
        findDrawing(drawing);
        requireArgument(value);
        clear(*value);
        fill(*value, findField(drawing, block_id, field_id)->GetValue());
    });
}

extern "C" int TRV_FMT_set_field_value(unsigned drawing, const char *block_id, const char *field_id,
                                       const TRV_FMT_value_list_t *value)
{
    return guarded([&] {
        findDrawing(drawing);
        requireArgument(value);
        const auto lines = linesOf(*value);
        findField(drawing, block_id, field_id)->ModifyValue(lines);
    });
}

extern "C" int QEL_FMT_set_field_editable(unsigned drawing, const char *block_id,
                                          const char *field_id, char editable)
{
    return guarded([&] { findField(drawing, block_id, field_id)->SetIsEditable(editable != 0); });
}

extern "C" int QEL_FMT_get_field_editable(unsigned drawing, const char *block_id,
                                          const char *field_id, char *editable)
{
    return guarded([&] {
        findDrawing(drawing);
        requireArgument(editable);
        *editable = findField(drawing, block_id, field_id)->GetIsEditable() != 0;
    });
}
