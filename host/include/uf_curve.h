/* Points and lines, in absolute coordinates of the work part. */
#ifndef UF_CURVE_H_INCLUDED
#define UF_CURVE_H_INCLUDED

#include "uf_defs.h"

#ifdef __cplusplus
extern "C" {
#endif

#define UF_CURVE_err_not_a_point 1480000
#define UF_CURVE_err_not_a_line 1480001
#define UF_CURVE_err_not_an_arc 1480002

struct UF_CURVE_line_s {
    double start_point[3];
    double end_point[3];
};
typedef struct UF_CURVE_line_s UF_CURVE_line_t, *UF_CURVE_line_p_t;

DllExport int UF_CURVE_create_point(double point_coords[3], tag_t *point);
DllExport int UF_CURVE_ask_point_data(tag_t point, double point_coords[3]);
DllExport int UF_CURVE_create_line(UF_CURVE_line_p_t line_coords, tag_t *line);
DllExport int UF_CURVE_ask_line_data(tag_t line, UF_CURVE_line_p_t line_coords);
DllExport int UF_CURVE_edit_line_data(tag_t line, UF_CURVE_line_p_t line_coords);

#ifdef __cplusplus
}
#endif
#endif
