/* Session, memory, messages, environment and timers. */
#ifndef UF_H_INCLUDED
#define UF_H_INCLUDED

#include "uf_defs.h"

#ifdef __cplusplus
extern "C" {
#endif

/* General error codes. Every non-zero code that a call returns has a text in UF_get_fail_message. */
/* The interface is not initialised or not available. */
#define UF_err_program_not_initialized 1105003
#define UF_err_bad_parameter_number_1 1105011
#define UF_err_bad_parameter_number_2 1105012
#define UF_err_bad_parameter_number_3 1105013
#define UF_err_bad_parameter_number_4 1105014
#define UF_err_bad_parameter_number_5 1105015
#define UF_err_unknown_tag 1105050 /* the tag was never given out, or its object is gone */
#define UF_err_wrong_class 1105051 /* the call does not apply to this kind of object */
#define UF_err_class_exists 1105060
#define UF_err_unknown_class_id 1105061
#define UF_err_class_query_refused 1105062
#define UF_err_link_cycle 1105070
#define UF_err_no_such_link 1105071
#define UF_err_already_owned 1105072
#define UF_err_other_part 1105073 /* links and owning links stay within a part */
#define UF_err_attribute_missing 1105080
#define UF_err_attribute_exists 1105081
#define UF_err_no_work_part 1105090
#define UF_err_count_mismatch 1105091 /* an edit must bring as many elements as are stored */
#define UF_err_zero_length 1480010    /* a line must have a length */
#define UF_err_layer_range 1105092
#define UF_err_unknown_font 1105093 /* met only while unknown fonts are refused */

DllExport int UF_initialize(void);
DllExport int UF_terminate(void);
DllExport int UF_is_initialized(void); /* a truth value */

DllExport void *UF_allocate_memory(unsigned int nbytes, int *error_code);
DllExport void *UF_reallocate_memory(void *data, unsigned int nbytes, int *error_code);
DllExport void UF_free(void *block); /* NULL is harmless */
DllExport void UF_free_string_array(int n_strings, char **string_array);

DllExport int UF_get_fail_message(int fail_code,
                                  char message[133]); /* 0 when the code has a text */
DllExport int UF_print_syslog(char *message, logical trace);
DllExport int UF_ask_syslog_filename(char **filename);

/* The translation belongs to the environment: neither change nor free it. NULL when there is none. */
DllExport int UF_translate_variable(const char *variable, char **translation);
DllExport int UF_set_variable(const char *variable, const char *value);

typedef unsigned int UF_timer_t, *UF_timer_p_t;
struct UF_timer_values_s {
    double cpu_time;  /* seconds, user and system */
    double real_time; /* seconds elapsed */
};
typedef struct UF_timer_values_s UF_timer_values_t, *UF_timer_values_p_t;
DllExport int UF_begin_timer(UF_timer_p_t timer);
DllExport int UF_end_timer(UF_timer_t timer, UF_timer_values_p_t values);

#define UF_UNLOAD_IMMEDIATELY 1
#define UF_UNLOAD_SEL_DIALOG 2
#define UF_UNLOAD_UG_TERMINATE 3

#ifdef __cplusplus
}
#endif
#endif
