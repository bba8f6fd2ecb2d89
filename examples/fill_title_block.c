/* Makes a drawing with one A3 sheet, places the format ISO and fills its title block.
 *
 *     fill_title_block DEFINITIONS OUT.qdraw
 *
 * DEFINITIONS is the folder that `qelfmt defs build formats/iso.yaml -o DEFINITIONS` made. */
#include "api/trv_fmt.h"

#include "uf.h"
#include "uf_draw.h"
#include "uf_part.h"

#include <stdio.h>

static int failed(const char *what)
{
    fprintf(stderr, "fill_title_block: %s: %s\n", what, TRV_FMT_ask_last_error());
    return 1;
}

static int set(tag_t sheet, const char *field, char *text)
{
    const TRV_FMT_value_list_t value = {1, &text};
    return TRV_FMT_set_field_value(sheet, "TITLE", field, &value) ? failed(field) : 0;
}

static int fill(tag_t sheet)
{
    TRV_FMT_value_list_t title;
    if (TRV_FMT_add_format(sheet, "ISO", "A3")) return failed("format ISO/A3");
    if (set(sheet, "title", "Volute casing") || set(sheet, "number", "NP-080200-02")) return 1;
    if (TRV_FMT_ask_field_value(sheet, "TITLE", "title", &title)) return failed("title");
    printf("title: %s\n", title.values[0]);
    TRV_FMT_free_value(&title);
    return 0;
}

static int make_drawing(const char *file)
{
    UF_DRAW_info_t a3 = {0};
    tag_t part, sheet;
    a3.size_state = UF_DRAW_METRIC_SIZE;
    a3.size.metric_size_code = UF_DRAW_A3;
    a3.drawing_scale = 1.0;
    a3.units = UF_PART_METRIC;
    a3.projection_angle = UF_DRAW_FIRST_ANGLE_PROJECTION;
    if (UF_PART_new(file, UF_PART_METRIC, &part) || UF_DRAW_create_drawing("SHEET1", &a3, &sheet) ||
        UF_DRAW_open_drawing(sheet)) {
        fprintf(stderr, "fill_title_block: %s: cannot be made: does it exist?\n", file);
        return 1;
    }
    return fill(sheet) || UF_PART_save();
}

int main(int argc, char **argv)
{
    char patterns[1024];
    int status;
    if (argc != 3) {
        fprintf(stderr, "usage: fill_title_block DEFINITIONS OUT.qdraw\n");
        return 2;
    }
    /* Where definitions and their patterns stand. */
    UF_initialize();
    snprintf(patterns, sizeof patterns, "%s/patterns", argv[1]);
    UF_set_variable("UGII_SITE_DIR", argv[1]);
    UF_set_variable("UGII_PATDIR", patterns);

    if (TRV_FMT_initialize()) return failed("start");
    status = make_drawing(argv[2]);
    TRV_FMT_terminate();
    UF_terminate();
    return status;
}
