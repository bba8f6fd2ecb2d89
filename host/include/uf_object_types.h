/* Type and subtype numbers of objects. */
#ifndef UF_OBJECT_TYPES_H_INCLUDED
#define UF_OBJECT_TYPES_H_INCLUDED

#define UF_point_type 2
#define UF_line_type 3
#define UF_circle_type 5
#define UF_pattern_type 10
#define UF_drafting_entity_type 25
#define UF_draft_note_subtype 1
#define UF_draft_label_subtype 2
#define UF_draft_id_symbol_subtype 3
#define UF_draft_fpt_subtype 4
#define UF_draft_crosshatch_subtype 6
#define UF_view_type 60
#define UF_drawing_type 62

/* Numbers of this host alone: nothing compares them. */
#define UF_part_type 9000
#define UF_font_table_type 9001
#define UF_user_defined_object_type 9002

#endif
