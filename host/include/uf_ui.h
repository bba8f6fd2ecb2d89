/* The information window. */
#ifndef UF_UI_H_INCLUDED
#define UF_UI_H_INCLUDED

#include "uf_defs.h"

#ifdef __cplusplus
extern "C" {
#endif

DllExport int UF_UI_open_listing_window(void);
DllExport int UF_UI_write_listing_window(const char *text);
DllExport int UF_UI_close_listing_window(void);

#ifdef __cplusplus
}
#endif
#endif
