/* Drafting: notes, ID symbols and their preferences. */
#ifndef UF_DRF_H_INCLUDED
#define UF_DRF_H_INCLUDED

#include "uf_defs.h"

#ifdef __cplusplus
extern "C" {
#endif

#define UF_DRF_err_invalid_parameter 1175001
#define UF_DRF_err_null_structure 1175002
#define UF_DRF_err_null_object 1175005
#define UF_DRF_err_invalid_object 1175008

#define MAX_LINE_LENGTH 132
#define MAX_ID_SYM_TEXT_LENGTH 132
#define NUM_INT_PARAMS 100
#define NUM_REAL_PARAMS 70

/* Indexes into the object preferences. */
#define UF_DRF_MPI_text_justification 10
#define UF_DRF_MPI_align_site 30
#define UF_DRF_MPI_text_color 87
#define UF_DRF_MPI_text_font 88
#define UF_DRF_MPI_text_width 89
#define UF_DRF_MPI_id_symbol_type 95
#define UF_DRF_MPI_id_symbol_density 96
#define UF_DRF_MPR_text_angle 3 /* degrees */
#define UF_DRF_MPR_char_size 44
#define UF_DRF_MPR_aspect_ratio 45
#define UF_DRF_MPR_char_space_factor 46
#define UF_DRF_MPR_line_space_factor 47
#define UF_DRF_MPR_id_symbol_size 68

typedef int UF_DRF_align_position_t; /* 1 top left ... 9 bottom right, row by row */
typedef int UF_DRF_text_just_t;      /* 1 left, 2 centre, 3 right */
typedef int UF_DRF_text_type_t;

struct UF_DRF_text_cfw_s {
    int color;
    int font;
    int width; /* 0 normal, 1 thick, 2 thin */
};
typedef struct UF_DRF_text_cfw_s UF_DRF_text_cfw_t;

struct UF_DRF_lettering_s {
    double size;
    double character_space_factor;
    double aspect_ratio;
    double line_space_factor;
    UF_DRF_text_cfw_t cfw;
};
typedef struct UF_DRF_lettering_s UF_DRF_lettering_t;

struct UF_DRF_lettering_preferences_s {
    UF_DRF_align_position_t align_position;
    UF_DRF_text_just_t horiz_text_just;
    double gdt_frame_height_factor;
    double angle; /* degrees */
    UF_DRF_lettering_t dimension_text;
    UF_DRF_lettering_t appended_text;
    UF_DRF_lettering_t tolerance_text;
    UF_DRF_lettering_t general_text; /* notes, labels, ID symbols */
    double dim_dim_line_space_factor;
    double dim_app_text_space_factor;
    double dim_tol_text_space_factor;
};
typedef struct UF_DRF_lettering_preferences_s UF_DRF_lettering_preferences_t,
    *UF_DRF_lettering_preferences_p_t;

struct UF_DRF_draft_aid_text_s {
    int num_chars;
    char string[MAX_LINE_LENGTH + 1]; /* cut copy */
    int num_ints;
    int full_num_chars; /* bytes */
    char *full_string;  /* the whole line */
};
typedef struct UF_DRF_draft_aid_text_s UF_DRF_draft_aid_text_t;

struct UF_DRF_draft_aid_text_info_s {
    UF_DRF_text_type_t text_type;
    int text_font;
    double size;
    double angle; /* radians */
    double origin[3];
    double length;
    double height;
    double distance;
    double aspect_ratio;
    double gap;
    double line_spacing;
    int num_lines;
    UF_DRF_draft_aid_text_t *text;
};
typedef struct UF_DRF_draft_aid_text_info_s UF_DRF_draft_aid_text_info_t;

enum UF_DRF_id_symbol_type_e {
    UF_DRF_sym_circle = 1,
    UF_DRF_sym_divcir,
    UF_DRF_sym_square,
    UF_DRF_sym_divsqr,
    UF_DRF_sym_hexagon,
    UF_DRF_sym_divhex,
    UF_DRF_sym_triup,
    UF_DRF_sym_tridown,
    UF_DRF_sym_datum,
    UF_DRF_sym_roundbox,
    UF_DRF_sym_underline,
    UF_DRF_sym_nosymbol,
    UF_DRF_sym_maximum
};
typedef enum UF_DRF_id_symbol_type_e UF_DRF_id_symbol_type_t;

enum UF_DRF_leader_mode_e { UF_DRF_without_leader = 1, UF_DRF_with_leader = 2 };
typedef enum UF_DRF_leader_mode_e UF_DRF_leader_mode_t;
enum UF_DRF_leader_attach_type_e {
    UF_DRF_leader_attach_object = 1,
    UF_DRF_leader_attach_screen = 2,
    UF_DRF_leader_attach_triangle = 3
};
typedef enum UF_DRF_leader_attach_type_e UF_DRF_leader_attach_type_t;

struct UF_DRF_object_s {
    tag_t object_tag;
    tag_t object_view_tag;
    int object_assoc_type;
    int object_assoc_modifier;
};
typedef struct UF_DRF_object_s UF_DRF_object_t, *UF_DRF_object_p_t;

/* Notes. Coordinates are the sheet's while a sheet is current. */
DllExport int UF_DRF_create_note(int num_lines_text, char *text_string[], double origin_3d[3],
                                 int orientation, tag_t *note);
DllExport int UF_DRF_set_origin(tag_t annotation, double new_origin[3]);
DllExport int UF_DRF_ask_origin(tag_t annotation, double origin[3]);
/* Replaces the text of a note or ID symbol (text_kind 1). Zero lines leave it without text. */
DllExport int uc5566(tag_t object, int text_kind, int num_lines, char text[][133]);
DllExport int UF_DRF_ask_draft_aid_text_info(tag_t draft_aid, int *num_text,
                                             UF_DRF_draft_aid_text_info_t **text_info);
DllExport int UF_DRF_free_text(int num_text, UF_DRF_draft_aid_text_info_t **text_info);

DllExport int UF_DRF_ask_lettering_preferences(UF_DRF_lettering_preferences_t *preferences);
DllExport int UF_DRF_set_lettering_preferences(UF_DRF_lettering_preferences_p_t preferences);
DllExport int UF_DRF_ask_object_preferences(tag_t object, int mpi[100], double mpr[70],
                                            char radius_val[27], char diameter_val[27]);
DllExport int UF_DRF_set_object_preferences(tag_t object, int mpi[100], double mpr[70],
                                            const char *radius_val, const char *diameter_val);

DllExport int UF_DRF_create_id_symbol(UF_DRF_id_symbol_type_t id_symbol_type,
                                      const char *upper_text, const char *lower_text,
                                      double origin_3d[3], UF_DRF_leader_mode_t leader_mode,
                                      UF_DRF_leader_attach_type_t leader_attach_type,
                                      UF_DRF_object_p_t object, double model_pos_3d[3],
                                      tag_t *id_symbol);
DllExport int UF_DRF_ask_id_symbol_type(tag_t id_symbol, UF_DRF_id_symbol_type_t *type);

DllExport int UF_DRF_set_customer_sbf_file(void);
DllExport int UF_DRF_set_ugdefault_sbf_file(void);

#ifdef __cplusplus
}
#endif
#endif
