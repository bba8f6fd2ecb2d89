/* User defined objects: classes, data arrays, links, owned objects. */
#ifndef UF_UDOBJ_H_INCLUDED
#define UF_UDOBJ_H_INCLUDED

#include "uf_defs.h"

#ifdef __cplusplus
extern "C" {
#endif

typedef unsigned int UF_UDOBJ_class_t; /* valid in this process only, never stored */

/* Link types: 1 the UDO dies with the object; 2 the object dies with the UDO; 3 dropped with
   callbacks; 4 dropped silently. */
struct UF_UDOBJ_link_s {
    int link_type;
    tag_t assoc_ug_tag;         /* the object; in answers to "who links here" the linking UDO */
    unsigned int object_status; /* 0 up to date, 1 out of date */
};
typedef struct UF_UDOBJ_link_s UF_UDOBJ_link_t, *UF_UDOBJ_link_p_t;

struct UF_UDOBJ_all_data_s {
    UF_UDOBJ_class_t class_id;
    unsigned int udo_status;
    unsigned int num_ints;
    int *ints;
    unsigned int num_doubles;
    double *doubles;
    unsigned int num_strings;
    char **strings;
    unsigned int num_links;
    UF_UDOBJ_link_t *link_defs;
    unsigned int num_lengths;
    double *lengths;
    unsigned int num_areas;
    double *areas;
    unsigned int num_volumes;
    double *volumes;
};
typedef struct UF_UDOBJ_all_data_s UF_UDOBJ_all_data_t, *UF_UDOBJ_all_data_p_t;

enum UF_UDOBJ_owned_object_selection_e {
    UF_UDOBJ_DONT_ALLOW_SELECTION = 1,
    UF_UDOBJ_ALLOW_SELECTION = 2
};
typedef enum UF_UDOBJ_owned_object_selection_e UF_UDOBJ_owned_object_selection_t;

enum UF_UDOBJ_query_class_id_e {
    UF_UDOBJ_DONT_ALLOW_QUERY_CLASS_ID = 1,
    UF_UDOBJ_ALLOW_QUERY_CLASS_ID = 2
};
typedef enum UF_UDOBJ_query_class_id_e UF_UDOBJ_query_class_id_t;

typedef void (*UF_UDOBJ_delete_f_t)(tag_t udo_tag, UF_UDOBJ_link_p_t deleted_obj);
typedef void (*UF_UDOBJ_update_f_t)(tag_t update_udo, UF_UDOBJ_link_p_t update_cause);
typedef void (*UF_UDOBJ_info_obj_f_t)(tag_t udo_tag);
typedef void (*UF_UDOBJ_edit_f_t)(tag_t udo_tag);

DllExport int UF_UDOBJ_create_class(const char *class_name, const char *friendly_name,
                                    UF_UDOBJ_class_t *class_id);
DllExport int UF_UDOBJ_ask_class_data(UF_UDOBJ_class_t class_id, char **class_name,
                                      char **friendly_name); /* free both with UF_free */
DllExport int UF_UDOBJ_ask_class_id_of_name(const char *class_name, UF_UDOBJ_class_t *class_id);
DllExport int UF_UDOBJ_set_query_class_id(UF_UDOBJ_class_t class_id,
                                          UF_UDOBJ_query_class_id_t value);
DllExport int UF_UDOBJ_register_delete_cb(UF_UDOBJ_class_t class_id, UF_UDOBJ_delete_f_t callback);
DllExport int UF_UDOBJ_register_update_cb(UF_UDOBJ_class_t class_id, UF_UDOBJ_update_f_t callback);
DllExport int UF_UDOBJ_register_info_obj_cb(UF_UDOBJ_class_t class_id,
                                            UF_UDOBJ_info_obj_f_t callback);
DllExport int UF_UDOBJ_register_edit_cb(UF_UDOBJ_class_t class_id, UF_UDOBJ_edit_f_t callback);
DllExport int UF_UDOBJ_set_owned_object_selection(UF_UDOBJ_class_t class_id,
                                                  UF_UDOBJ_owned_object_selection_t value);

DllExport int UF_UDOBJ_create_udo(UF_UDOBJ_class_t class_id, tag_t *udo); /* in the work part */
DllExport int UF_UDOBJ_ask_udo_class_name(tag_t udo, char **class_name);  /* free with UF_free */
DllExport int UF_UDOBJ_cycle_udos_by_class(tag_t part, UF_UDOBJ_class_t class_id, tag_t *udo);

/* Append; the edit calls must bring exactly as many elements as are stored. */
DllExport int UF_UDOBJ_add_integers(tag_t udo, unsigned int n, int values[]);
DllExport int UF_UDOBJ_add_doubles(tag_t udo, unsigned int n, double values[]);
DllExport int UF_UDOBJ_add_strings(tag_t udo, unsigned int n, char *values[]);
DllExport int UF_UDOBJ_add_lengths(tag_t udo, unsigned int n, double values[]);
DllExport int UF_UDOBJ_add_areas(tag_t udo, unsigned int n, double values[]);
DllExport int UF_UDOBJ_add_volumes(tag_t udo, unsigned int n, double values[]);
DllExport int UF_UDOBJ_edit_integers(tag_t udo, int values[]);
DllExport int UF_UDOBJ_edit_doubles(tag_t udo, double values[]);
DllExport int UF_UDOBJ_edit_strings(tag_t udo, char *values[]);
DllExport int UF_UDOBJ_edit_lengths(tag_t udo, double values[]);
DllExport int UF_UDOBJ_edit_areas(tag_t udo, double values[]);
DllExport int UF_UDOBJ_edit_volumes(tag_t udo, double values[]);
DllExport int UF_UDOBJ_delete_integers(tag_t udo);
DllExport int UF_UDOBJ_delete_doubles(tag_t udo);
DllExport int UF_UDOBJ_delete_strings(tag_t udo);
DllExport int UF_UDOBJ_delete_lengths(tag_t udo);
DllExport int UF_UDOBJ_delete_areas(tag_t udo);
DllExport int UF_UDOBJ_delete_volumes(tag_t udo);
DllExport int UF_UDOBJ_ask_udo_data(tag_t udo, UF_UDOBJ_all_data_t *all_data);
DllExport int UF_UDOBJ_free_udo_data(UF_UDOBJ_all_data_p_t all_data);

DllExport int UF_UDOBJ_add_links(tag_t udo, unsigned int num_links, UF_UDOBJ_link_t link_defs[]);
DllExport int UF_UDOBJ_edit_link(tag_t udo, UF_UDOBJ_link_p_t old_link, tag_t new_tag);
DllExport int UF_UDOBJ_edit_links(tag_t udo, const UF_UDOBJ_link_t *link_defs, unsigned int start,
                                  unsigned int count);
DllExport int UF_UDOBJ_delete_link(tag_t udo, UF_UDOBJ_link_p_t link_to_delete);
DllExport int UF_UDOBJ_ask_udo_links_to_obj(tag_t object, int *num_links,
                                            UF_UDOBJ_link_t **udo_links); /* UF_free */
DllExport int UF_UDOBJ_is_obj_linked_to_udo(tag_t object, logical *is_linked);

DllExport int UF_UDOBJ_add_owning_links(tag_t udo, unsigned int n, tag_t ug_objs[]);
DllExport int UF_UDOBJ_delete_owning_link(tag_t udo, tag_t object);
DllExport int UF_UDOBJ_ask_owned_objects(tag_t udo, unsigned int *n, tag_t **objects); /* UF_free */
DllExport int UF_UDOBJ_ask_owning_udo(tag_t object, tag_t *udo);
DllExport int UF_UDOBJ_is_owned(tag_t object, logical *is_owned);

#ifdef __cplusplus
}
#endif
#endif
