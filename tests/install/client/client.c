/* Stamps a sheet with the definitions that were installed, through the C interface alone. */
#include <trv_fmt.h>

#include <uf.h>
#include <uf_draw.h>
#include <uf_part.h>

#include <stdio.h>
#include <string.h>

static int failed(const char *what)
{
    fprintf(stderr, "client_c: %s: %s\n", what, TRV_FMT_ask_last_error());
    return 1;
}

int main(int argc, char **argv)
{
    UF_DRAW_info_t a3 = {0};
    tag_t part, sheet;
    char title[] = "Volute casing";
    char *lines[1];
    TRV_FMT_value_list_t value = {1, NULL};
    if (argc != 2) return 2;
    lines[0] = title;
    value.values = lines;
    a3.size_state = UF_DRAW_METRIC_SIZE;
    a3.size.metric_size_code = UF_DRAW_A3;
    a3.drawing_scale = 1.0;
    a3.units = UF_PART_METRIC;
    a3.projection_angle = UF_DRAW_FIRST_ANGLE_PROJECTION;
    UF_initialize();
    if (TRV_FMT_initialize()) return failed("initialize");
    if (UF_PART_new(argv[1], UF_PART_METRIC, &part) || UF_DRAW_create_drawing("S1", &a3, &sheet) ||
        UF_DRAW_open_drawing(sheet)) {
        fprintf(stderr, "client_c: %s: no sheet\n", argv[1]);
        return 1;
    }
    if (TRV_FMT_add_format(sheet, "ISO", "A3")) return failed("add_format");
    if (TRV_FMT_set_field_value(sheet, "TITLE", "title", &value)) return failed("set");
    if (UF_PART_save()) return failed("save");
    if (TRV_FMT_terminate()) return failed("terminate");
    UF_terminate();
    return 0;
}
