/* Patterns: instances of a saved part's geometry. */
#ifndef UF_PATT_H_INCLUDED
#define UF_PATT_H_INCLUDED

#include "uf_defs.h"

#ifdef __cplusplus
extern "C" {
#endif

#define UF_PATT_err_unreadable -1 /* the file is not a readable part */
#define UF_PATT_err_bad_argument -2

enum UF_PATT_switch_e { UF_PATT_off = 0, UF_PATT_on = 1 };
typedef enum UF_PATT_switch_e UF_PATT_switch_t;

/* NULL_TAG sets the defaults of new patterns. */
DllExport int UF_PATT_set_params(tag_t pattern, UF_PATT_switch_t origin_status,
                                 UF_PATT_switch_t max_min_status,
                                 UF_PATT_switch_t control_pt_status);

/* Retrieves a pattern. transform_data: [0]-[8] rotation, [9]-[11] origin, [12] scale.
   0 ok, 1 file not found, 5 revision check failed, 6 no pattern data in the part,
   20 invalid name, 21 matrix not orthogonal, 22 scale not positive, below 0 an error. */
DllExport int uc5823(char *file_name, char *pattern_name, int autoscale_option,
                     double transform_data[13], tag_t *pattern);
/* Reads a pattern back; name and file_name take MAX_FSPEC_BUFSIZE bytes. */
DllExport int uc5822(tag_t pattern, char *name, char *file_name, int *view_dependent, int *layer,
                     int *status, double transform_data[13]);

#ifdef __cplusplus
}
#endif
#endif
