/* Parts: open, create, save, close. */
#ifndef UF_PART_H_INCLUDED
#define UF_PART_H_INCLUDED

#include "uf_defs.h"

#ifdef __cplusplus
extern "C" {
#endif

#define UF_PART_METRIC 1
#define UF_PART_ENGLISH 2

#define UF_PART_err_no_work_part 640001
#define UF_PART_err_file_exists 640002
#define UF_PART_err_file_not_found 640003
#define UF_PART_err_already_loaded 640004
#define UF_PART_err_not_a_part 640005
#define UF_PART_err_damaged 640006
#define UF_PART_err_newer_version 640007
#define UF_PART_err_cannot_write 640008
#define UF_PART_err_locked 640009
#define UF_PART_err_changed_on_disk 640010
#define UF_PART_err_modified 640011

struct UF_PART_load_status_s {
    logical failed;
    logical user_abort;
    int n_parts;
    char **file_names;
    int *statuses;
};
typedef struct UF_PART_load_status_s UF_PART_load_status_t, *UF_PART_load_status_p_t;

DllExport int UF_PART_is_loaded(const char *part_name); /* 0 no, 1 fully, 2 partly: no error code */
DllExport tag_t UF_PART_ask_part_tag(const char *part_name); /* the tag itself */
DllExport int UF_PART_open(const char *part_name, tag_t *part, UF_PART_load_status_t *status);
DllExport int UF_PART_open_quiet(const char *part_name, tag_t *part, UF_PART_load_status_t *status);
DllExport int UF_PART_free_load_status(UF_PART_load_status_t *status);
/* Scope 0 this part, 1 with its components; mode 0 ask, 1 also when modified, 2 only unmodified. */
DllExport int UF_PART_close(tag_t part, int scope, int mode);
DllExport int UF_PART_close_all(void);
DllExport int UF_PART_new(const char *part_name, int units, tag_t *part);
DllExport int UF_PART_save(void);
DllExport int UF_PART_save_as(const char *new_name);
DllExport int UF_PART_save_work_only(void);
DllExport int UF_PART_is_modified(tag_t part); /* a truth value */
DllExport int UF_PART_ask_part_name(tag_t part, char part_name[MAX_FSPEC_BUFSIZE]);
DllExport int UF_PART_ask_units(tag_t part, int *units);
DllExport int UF_PART_ask_num_parts(void);
DllExport tag_t UF_PART_ask_nth_part(int n);
DllExport tag_t UF_PART_ask_display_part(void);
DllExport int UF_PART_set_display_part(tag_t part);

/* The work part; the second sets it, NULL_TAG meaning the display part. */
DllExport tag_t UF_ASSEM_ask_work_part(void);
DllExport int UF_ASSEM_set_work_part(tag_t part);

#ifdef __cplusplus
}
#endif
#endif
