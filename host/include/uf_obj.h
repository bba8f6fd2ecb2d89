/* Objects: deletion, status, cycling, names and display properties. */
#ifndef UF_OBJ_H_INCLUDED
#define UF_OBJ_H_INCLUDED

#include "uf_defs.h"
#include "uf_object_types.h"

#ifdef __cplusplus
extern "C" {
#endif

#define UF_OBJ_NAME_LEN 30

#define UF_OBJ_DELETED 0
#define UF_OBJ_TEMPORARY 1
#define UF_OBJ_CONDEMNED 2
#define UF_OBJ_ALIVE 3

#define UF_OBJ_NOT_BLANKED 0
#define UF_OBJ_BLANKED 1

#define UF_OBJ_WIDTH_NORMAL 0
#define UF_OBJ_WIDTH_THICK 1
#define UF_OBJ_WIDTH_THIN 2
#define UF_OBJ_WIDTH_ONE 5
#define UF_OBJ_WIDTH_NINE 13

#define UF_OBJ_FONT_INVISIBLE 0
#define UF_OBJ_FONT_SOLID 1
#define UF_OBJ_FONT_DASHED 2
#define UF_OBJ_FONT_PHANTOM 3
#define UF_OBJ_FONT_CENTERLINE 4
#define UF_OBJ_FONT_DOTTED 5
#define UF_OBJ_FONT_LONG_DASHED 6
#define UF_OBJ_FONT_DOTTED_DASHED 7

#define UF_OBJ_err_cannot_delete 1155000
#define UF_OBJ_err_no_name 1155001
#define UF_OBJ_err_internal 1155002

struct UF_OBJ_disp_props_s {
    int layer;
    int color;
    int blank_status;
    int line_width;
    int font;
    logical highlight_status;
};
typedef struct UF_OBJ_disp_props_s UF_OBJ_disp_props_t, *UF_OBJ_disp_props_p_t;

DllExport int UF_OBJ_delete_object(tag_t object);
DllExport int UF_OBJ_delete_array_of_objects(int num_objects, tag_t objects[], int **statuses);
DllExport int UF_OBJ_ask_status(tag_t object); /* the status itself, not an error code */
DllExport int UF_OBJ_cycle_objs_in_part(tag_t part, int type, tag_t *object);
DllExport tag_t UF_OBJ_cycle_all(tag_t part, tag_t object);
DllExport int UF_OBJ_cycle_by_name(const char *name, tag_t *object);
DllExport int UF_OBJ_cycle_by_name_and_type(tag_t part, const char *name, int type,
                                            logical use_occurrences, tag_t *object);
DllExport int UF_OBJ_ask_type_and_subtype(tag_t object, int *type, int *subtype);
DllExport int UF_OBJ_ask_name(tag_t object, char name[UF_OBJ_NAME_LEN + 1]);
DllExport int UF_OBJ_set_name(tag_t object, const char *name);
DllExport int UF_OBJ_delete_name(tag_t object);
DllExport int UF_OBJ_set_layer(tag_t object, int layer);
DllExport int UF_OBJ_set_color(tag_t object, int color);
DllExport int UF_OBJ_set_font(tag_t object, int font);
DllExport int UF_OBJ_set_line_width(tag_t object, int width);
DllExport int UF_OBJ_set_blank_status(tag_t object, int blank_status);
DllExport int UF_OBJ_ask_display_properties(tag_t object, UF_OBJ_disp_props_p_t properties);
DllExport int UF_OBJ_ask_owning_part(tag_t object, tag_t *part);
DllExport int UF_OBJ_is_displayable(tag_t object, logical *is_displayable);

#ifdef __cplusplus
}
#endif
#endif
