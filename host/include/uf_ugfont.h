/* The font table of a part. Indexes start at 1. */
#ifndef UF_UGFONT_H_INCLUDED
#define UF_UGFONT_H_INCLUDED

#include "uf_defs.h"

#ifdef __cplusplus
extern "C" {
#endif

/* The font table is the part's one object of type UF_font_table_type. A known font keeps its
   index, a new one takes the first free slot. */
DllExport int UF_UGFONT_add_font(tag_t font_table, int *font_index, char *font_name);
DllExport int UF_UGFONT_ask_font_name(tag_t font_table, int font_index, char **font_name);
DllExport int UF_UGFONT_ask_number_of_fonts(tag_t font_table, int *number_of_fonts);

#ifdef __cplusplus
}
#endif
#endif
