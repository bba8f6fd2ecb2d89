/* Views: which objects stand in a view, and the change of membership. */
#ifndef UF_VIEW_H_INCLUDED
#define UF_VIEW_H_INCLUDED

#include "uf_defs.h"

#ifdef __cplusplus
extern "C" {
#endif

enum UF_VIEW_cycle_objects_e {
    UF_VIEW_VISIBLE_OBJECTS = 1,
    UF_VIEW_DEPENDENT_OBJECTS = 2,
    UF_VIEW_ERASED_OBJECTS = 3,
    UF_VIEW_MODIFIED_OBJECTS = 4
};
typedef enum UF_VIEW_cycle_objects_e UF_VIEW_cycle_objects_t;

DllExport int UF_VIEW_cycle_objects(tag_t view, UF_VIEW_cycle_objects_t type, tag_t *object);
DllExport int UF_VIEW_convert_to_view(tag_t view, tag_t object);
DllExport int UF_VIEW_convert_to_model(tag_t view, tag_t object);
DllExport int UF_VIEW_ask_tag_of_view_name(const char *view_name, tag_t *view);
DllExport int UF_VIEW_ask_work_view(tag_t *view);
/* Status 0: a model object; else dependent on the named view. */
DllExport int uc6409(tag_t object, int *status, char *view_name);

#ifdef __cplusplus
}
#endif
#endif
