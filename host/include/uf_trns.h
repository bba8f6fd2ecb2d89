/* Transformations. A matrix is three rows of four: x' = m0 x + m1 y + m2 z + m3. */
#ifndef UF_TRNS_H_INCLUDED
#define UF_TRNS_H_INCLUDED

#include "uf_defs.h"

#ifdef __cplusplus
extern "C" {
#endif

DllExport void FTN(uf5941)(double position[3], double matrix[12]);
DllExport void FTN(uf5943)(double translation[3], double matrix[12]);
/* Rotation about an axis, in degrees. Status 0 ok, 1 zero direction. */
DllExport void FTN(uf5945)(double origin[3], double direction[3], double *degrees_rotation,
                           double matrix[12], int *status);
/* move_or_copy 1 move, 2 copy; dest_layer 0 original, -1 work, else that layer; trace_curves
   1 on, 2 off. Status 0 ok, 1 too many or too few objects, 2 bad parameter, 3 invalid object. */
DllExport void FTN(uf5947)(const double matrix[12], const tag_t objects[], const int *n_objects,
                           const int *move_or_copy, const int *dest_layer, const int *trace_curves,
                           tag_t *copies, tag_t *trace_curve_group, int *status);

#ifdef __cplusplus
}
#endif
#endif
