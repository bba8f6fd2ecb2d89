/* Layers of the work part: 1 to 256. */
#ifndef UF_LAYER_H_INCLUDED
#define UF_LAYER_H_INCLUDED

#include "uf_defs.h"

#ifdef __cplusplus
extern "C" {
#endif

#define UF_LAYER_MIN_LAYER 1
#define UF_LAYER_MAX_LAYER 256
#define UF_LAYER_WORK_LAYER 1      /* where new objects go; visible and selectable */
#define UF_LAYER_ACTIVE_LAYER 2    /* visible and selectable */
#define UF_LAYER_REFERENCE_LAYER 3 /* visible, not selectable */
#define UF_LAYER_INACTIVE_LAYER 4  /* neither */

DllExport int UF_LAYER_set_status(const int layer, const int status);
DllExport int UF_LAYER_ask_status(const int layer, int *status);
DllExport int UF_LAYER_ask_work_layer(int *layer);
DllExport int UF_LAYER_set_all_but_work(const int status);
DllExport int UF_LAYER_cycle_by_layer(int layer, tag_t *object);

#ifdef __cplusplus
}
#endif
#endif
