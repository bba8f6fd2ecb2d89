/* Display of objects. */
#ifndef UF_DISP_H_INCLUDED
#define UF_DISP_H_INCLUDED

#include "uf_defs.h"

#ifdef __cplusplus
extern "C" {
#endif

DllExport int UF_DISP_add_item_to_display(tag_t object);
DllExport int UF_DISP_set_highlight(tag_t object, int on);

#ifdef __cplusplus
}
#endif
#endif
