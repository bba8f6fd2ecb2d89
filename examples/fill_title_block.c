/* Makes a drawing with one A3 sheet of format ISO, fills its title block, adds a row to the revision table with a
 * symbol at the place of the change, and draws the sheet as a PDF.
 *
 *     fill_title_block OUT.qdraw OUT.pdf
 *
 * The definitions are the installed ones, unless UGII_SITE_DIR names a folder with others. */
#include <trv_fmt.h>

#include <nxhost/picture.h>
#include <uf.h>
#include <uf_draw.h>
#include <uf_part.h>

#include <stdio.h>

/* Both say what failed and answer whether something did. */
static int failed(int status, const char *what)
{
    if (status) fprintf(stderr, "fill_title_block: %s: %s\n", what, TRV_FMT_ask_last_error());
    return status;
}

static int platform_failed(int code, const char *what)
{
    char text[133] = "";
    if (code == 0) return 0;
    UF_get_fail_message(code, text);
    fprintf(stderr, "fill_title_block: %s: %s\n", what, text);
    return 1;
}

static int fill(tag_t sheet, const char *field, char *text)
{
    const TRV_FMT_value_list_t value = {1, &text}; /* one line */
    return failed(TRV_FMT_set_field_value(sheet, "TITLE", field, &value), field);
}

static int fill_title_block(tag_t sheet)
{
    char title[] = "Volute casing", number[] = "NP-080200-02", index[] = "B";
    char material[] = "EN-GJL-250", finish[] = "machined";
    char *lines[2];
    TRV_FMT_value_list_t supplement = {2, NULL}; /* two lines */
    lines[0] = material;
    lines[1] = finish;
    supplement.values = lines;
    return fill(sheet, "title", title) || fill(sheet, "number", number) ||
           fill(sheet, "revision", index) ||
           failed(TRV_FMT_set_field_value(sheet, "TITLE", "supplement", &supplement), "supplement");
}

static int fill_row(tag_t sheet, int row, const char *column, char *text)
{
    const TRV_FMT_value_list_t value = {1, &text};
    return failed(TRV_FMT_set_table_value(sheet, "REVISIONS", "REVISIONS", row, column, &value),
                  column);
}

static int add_revision(tag_t sheet)
{
    const double place[3] = {150.0, 160.0, 0.0}; /* millimetres from the lower left corner */
    char index[] = "B", change[] = "bore enlarged to 32 H7", date[] = "2024-02-27";
    int rows = 0;
    if (failed(TRV_FMT_add_block(sheet, "REVISIONS"), "block REVISIONS") ||
        failed(TRV_FMT_add_entry(sheet, "REVISIONS", "REVISIONS"), "row") ||
        failed(TRV_FMT_ask_number_table_entries(sheet, "REVISIONS", "REVISIONS", &rows), "rows"))
        return 1;
    return fill_row(sheet, rows - 1, "index", index) ||
           fill_row(sheet, rows - 1, "change", change) || fill_row(sheet, rows - 1, "date", date) ||
           failed(TRV_FMT_place_symbol(sheet, "REVISIONS", "REVISIONS", rows - 1, place), "symbol");
}

/* A value is a list of lines that the library allocates and the caller gives back. */
static int print_title(tag_t sheet)
{
    TRV_FMT_value_list_t title = {0, NULL};
    if (failed(TRV_FMT_ask_field_value(sheet, "TITLE", "title", &title), "title")) return 1;
    printf("title: %s\n", title.values[0]);
    TRV_FMT_free_value(&title);
    return 0;
}

static int new_sheet(const char *file, tag_t *sheet)
{
    UF_DRAW_info_t a3 = {0};
    tag_t part;
    a3.size_state = UF_DRAW_METRIC_SIZE;
    a3.size.metric_size_code = UF_DRAW_A3;
    a3.drawing_scale = 1.0;
    a3.units = UF_PART_METRIC;
    a3.projection_angle = UF_DRAW_FIRST_ANGLE_PROJECTION;
    return platform_failed(UF_PART_new(file, UF_PART_METRIC, &part), file) ||
           platform_failed(UF_DRAW_create_drawing("SHEET1", &a3, sheet), "sheet") ||
           platform_failed(UF_DRAW_open_drawing(*sheet), "sheet");
}

static int draw(tag_t sheet, const char *file)
{
    if (nxhost_write_pdf(&sheet, 1, file) == 0) return 0;
    fprintf(stderr, "fill_title_block: %s\n", nxhost_ask_picture_error());
    return 1;
}

static int make_drawing(const char *file, const char *picture)
{
    tag_t sheet;
    return new_sheet(file, &sheet) ||
           failed(TRV_FMT_add_format(sheet, "ISO", "A3"), "format ISO/A3") ||
           fill_title_block(sheet) || add_revision(sheet) || print_title(sheet) ||
           platform_failed(UF_PART_save(), file) || draw(sheet, picture);
}

int main(int argc, char **argv)
{
    int status;
    if (argc != 3) {
        fprintf(stderr, "usage: fill_title_block OUT.qdraw OUT.pdf\n");
        return 2;
    }
    UF_initialize();
    status = failed(TRV_FMT_initialize(), "start") || make_drawing(argv[1], argv[2]);
    TRV_FMT_terminate();
    UF_terminate();
    return status;
}
