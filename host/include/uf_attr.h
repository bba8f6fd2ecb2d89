/* Attributes of objects and parts. The host keeps string attributes. */
#ifndef UF_ATTR_H_INCLUDED
#define UF_ATTR_H_INCLUDED

#include "uf_defs.h"

#ifdef __cplusplus
extern "C" {
#endif

#define UF_ATTR_integer 1
#define UF_ATTR_real 2
#define UF_ATTR_time 3
#define UF_ATTR_null 4
#define UF_ATTR_string 5
#define UF_ATTR_any 6
#define UF_ATTR_reference 7
#define UF_ATTR_bool 8
#define UF_ATTR_MAX_TITLE_LEN 50
#define UF_ATTR_MAX_STRING_LEN 132

struct UF_ATTR_value_s {
    int type;
    union {
        int integer;
        double real;
        int time[2];
        int null;
        char *string;
        char *reference;
    } value;
};
typedef struct UF_ATTR_value_s UF_ATTR_value_t, *UF_ATTR_value_p_t;

DllExport int UF_ATTR_assign(tag_t object, char *title, UF_ATTR_value_t value);
/* Absent: result 0 and type 0. A NULL string on input is allocated here: free it with UF_free. */
DllExport int UF_ATTR_read_value(tag_t object, char *title, int type, UF_ATTR_value_p_t value);
DllExport int UF_ATTR_find_attribute(tag_t object, int type, char *title, int *title_type);
DllExport int UF_ATTR_delete(tag_t object, int type, char *title);
DllExport int UF_ATTR_delete_all(tag_t object, int type);
DllExport int UF_ATTR_count_attributes(tag_t object, int type, int *count);
/* Start with *index 0; title takes 51 bytes; *index is 0 again at the end. The string of each value
   is allocated: free it with UF_free. */
DllExport int UF_ATTR_cycle(tag_t object, int *index, int type, char title[51],
                            UF_ATTR_value_p_t value);

#ifdef __cplusplus
}
#endif
#endif
