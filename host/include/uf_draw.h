/* Drawing sheets. */
#ifndef UF_DRAW_H_INCLUDED
#define UF_DRAW_H_INCLUDED

#include "uf_defs.h"

#ifdef __cplusplus
extern "C" {
#endif

#define UF_DRAW_err_unrecoverable 1405000
#define UF_DRAW_err_invalid_parameter 1405001
#define UF_DRAW_err_not_current 1405004
#define UF_DRAW_err_name_in_use 1405005
#define UF_DRAW_err_null_object 1405007

#define UF_DRAW_MAX_NAME_LEN 30

enum UF_DRAW_size_state_e {
    UF_DRAW_METRIC_SIZE = 0,
    UF_DRAW_ENGLISH_SIZE = 1,
    UF_DRAW_CUSTOM_SIZE = 2
};
typedef enum UF_DRAW_size_state_e UF_DRAW_size_state_t;

enum UF_DRAW_metric_size_e {
    UF_DRAW_A0 = 1, /* 841 high, 1189 wide */
    UF_DRAW_A1,
    UF_DRAW_A2,
    UF_DRAW_A3,
    UF_DRAW_A4 /* 210 high, 297 wide */
};
typedef enum UF_DRAW_metric_size_e UF_DRAW_metric_size_t;

enum UF_DRAW_english_size_e {
    UF_DRAW_A = 1, /* 8.5 high, 11 wide */
    UF_DRAW_B,
    UF_DRAW_C,
    UF_DRAW_D,
    UF_DRAW_E,
    UF_DRAW_F, /* 28 x 40 */
    UF_DRAW_H, /* 28 x 44 */
    UF_DRAW_J  /* 34 x 55 */
};
typedef enum UF_DRAW_english_size_e UF_DRAW_english_size_t;

enum UF_DRAW_projection_angle_e {
    UF_DRAW_THIRD_ANGLE_PROJECTION = 1,
    UF_DRAW_FIRST_ANGLE_PROJECTION = 2
};
typedef enum UF_DRAW_projection_angle_e UF_DRAW_projection_angle_t;

union UF_DRAW_size_u {
    UF_DRAW_metric_size_t metric_size_code;
    UF_DRAW_english_size_t english_size_code;
    double custom_size[2]; /* [0] height, [1] length */
};
typedef union UF_DRAW_size_u UF_DRAW_size_union_t;

struct UF_DRAW_info_s {
    UF_DRAW_size_state_t size_state;
    UF_DRAW_size_union_t size;
    double drawing_scale;
    int units; /* 1 millimetres, 2 inches */
    UF_DRAW_projection_angle_t projection_angle;
};
typedef struct UF_DRAW_info_s UF_DRAW_info_t, *UF_DRAW_info_p_t;

/* NULL_TAG with result 0 when no sheet is current. */
DllExport int UF_DRAW_ask_current_drawing(tag_t *drawing);
DllExport int UF_DRAW_ask_drawings(int *num_drawings, tag_p_t *drawings); /* UF_free */
DllExport int UF_DRAW_ask_num_drawings(int *num_drawings);
DllExport int UF_DRAW_ask_view_of_drawing(const tag_t drawing, tag_t *view);
DllExport int UF_DRAW_ask_drawing_of_view(const tag_t view, tag_t *drawing);
DllExport int UF_DRAW_ask_drawing_info(tag_t drawing, UF_DRAW_info_t *info);
DllExport int UF_DRAW_set_drawing_info(const tag_t drawing, UF_DRAW_info_p_t info);
DllExport int UF_DRAW_create_drawing(const char *name, UF_DRAW_info_p_t info, tag_t *drawing);
DllExport int UF_DRAW_open_drawing(tag_t drawing);
DllExport int UF_DRAW_delete_drawing(tag_t drawing);
DllExport int UF_DRAW_ask_views(const tag_t drawing, int *num_views, tag_p_t *views);

#ifdef __cplusplus
}
#endif
#endif
