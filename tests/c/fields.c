/* Values and editability of fields. */
#include "world.h"

#include "claims.h"

#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#define BIG (64 * 1024)
#define MANY 10000

static TRV_FMT_value_list_t list_of(int number, char **lines)
{
    TRV_FMT_value_list_t list;
    list.num_values = number;
    list.values = lines;
    return list;
}

static unsigned int sheet_with_format(void)
{
    SUCCEEDS(TRV_FMT_add_format(world_sheet(), "F", "A3"));
    return world_sheet();
}

static void value_is(unsigned int sheet, const char *field, int number, const char *const *lines)
{
    TRV_FMT_value_list_t list = {0, NULL};
    int i;
    SUCCEEDS(TRV_FMT_ask_field_value(sheet, "TITLE", field, &list));
    HOLDS(list.num_values == number);
    for (i = 0; i < list.num_values && i < number; ++i) TEXT_IS(list.values[i], lines[i]);
    TRV_FMT_free_value(&list);
}

void c_FieldValuesComeBackAsTheyWereGiven(void)
{
    static const char *const english[] = {"en"}, *const empty[] = {""},
                             *const three[] = {"one", "", "three"};
    unsigned int sheet = sheet_with_format();
    char one[] = "one", none[] = "", last[] = "three";
    char *lines[3];
    TRV_FMT_value_list_t list;
    lines[0] = one;
    lines[1] = none;
    lines[2] = last;
    list = list_of(3, lines);
    value_is(sheet, "LANG", 1, english);
    SUCCEEDS(TRV_FMT_set_field_value(sheet, "TITLE", "NAME", &list));
    memset(one, '#', 3); /* the caller's texts are the caller's again */
    value_is(sheet, "NAME", 3, three);
    sheet = world_reopen();
    value_is(sheet, "NAME", 3, three);
    list = list_of(0, NULL);
    SUCCEEDS(TRV_FMT_set_field_value(sheet, "TITLE", "NAME", &list));
    value_is(sheet, "NAME", 1, empty);
}

void c_FieldErrorsNameWhatIsMissing(void)
{
    const unsigned int sheet = sheet_with_format(), other = world_other_sheet();
    char line[] = "line", editable = 9;
    char *lines[1];
    TRV_FMT_value_list_t in, out = {0, NULL};
    lines[0] = line;
    in = list_of(1, lines);
    FAILS(TRV_FMT_ask_field_value(other, "TITLE", "NAME", &out), "No format found on drawing");
    FAILS(TRV_FMT_set_field_value(other, "TITLE", "NAME", &in), "No format found on drawing");
    FAILS(QEL_FMT_get_field_editable(other, "TITLE", "NAME", &editable),
          "No format found on drawing");
    FAILS(QEL_FMT_set_field_editable(other, "TITLE", "NAME", 1), "No format found on drawing");
    FAILS(TRV_FMT_ask_field_value(sheet, "TITL", "NAME", &out), "No block with ID TITL on format.");
    FAILS(TRV_FMT_set_field_value(sheet, "title", "NAME", &in),
          "No block with ID title on format.");
    FAILS(QEL_FMT_get_field_editable(sheet, "TITLES", "NAME", &editable),
          "No block with ID TITLES on format.");
    FAILS(QEL_FMT_set_field_editable(sheet, "", "NAME", 1), "No block with ID  on format.");
    FAILS(TRV_FMT_ask_field_value(sheet, "TITLE", "NAM", &out), "No field with ID NAM on block.");
    FAILS(TRV_FMT_set_field_value(sheet, "TITLE", "name", &in), "No field with ID name on block.");
    FAILS(QEL_FMT_get_field_editable(sheet, "TITLE", "REV", &editable),
          "No field with ID REV on block.");
    FAILS(QEL_FMT_set_field_editable(sheet, "TITLE", "", 1), "No field with ID  on block.");
    HOLDS(editable == 9);
    HOLDS(out.num_values == 0);
    TRV_FMT_free_value(&out);
}

void c_NullAndEmptyFieldArgumentsAreRefused(void)
{
    const unsigned int sheet = sheet_with_format();
    char *holes[2] = {NULL, NULL};
    static const char *const two_empty[] = {"", ""};
    char editable = 9;
    TRV_FMT_value_list_t list = {0, NULL};
    FAILS(TRV_FMT_ask_field_value(sheet, "TITLE", "NAME", NULL), "Invalid argument");
    FAILS(TRV_FMT_set_field_value(sheet, "TITLE", "NAME", NULL), "Invalid argument");
    FAILS(QEL_FMT_get_field_editable(sheet, "TITLE", "NAME", NULL), "Invalid argument");
    FAILS(TRV_FMT_ask_field_value(sheet, NULL, "NAME", &list), "No block with ID  on format.");
    FAILS(TRV_FMT_ask_field_value(sheet, "TITLE", NULL, &list), "No field with ID  on block.");
    FAILS(QEL_FMT_set_field_editable(sheet, NULL, NULL, 1), "No block with ID  on format.");
    FAILS(QEL_FMT_get_field_editable(sheet, "TITLE", NULL, &editable),
          "No field with ID  on block.");
    list = list_of(-1, holes);
    FAILS(TRV_FMT_set_field_value(sheet, "TITLE", "NAME", &list), "Invalid argument");
    list = list_of(1, NULL);
    FAILS(TRV_FMT_set_field_value(sheet, "TITLE", "NAME", &list), "Invalid argument");
    list = list_of(2, holes); /* a null text is an empty line */
    SUCCEEDS(TRV_FMT_set_field_value(sheet, "TITLE", "NAME", &list));
    value_is(sheet, "NAME", 2, two_empty);
}

static char *big_text(void)
{
    char *text = malloc(BIG + 1);
    memset(text, 'x', BIG);
    text[BIG] = '\0';
    return text;
}

void c_LongTextsAreKeptWhole(void)
{
    unsigned int sheet = sheet_with_format();
    char *lines[1];
    const char *expected[1];
    TRV_FMT_value_list_t list;
    lines[0] = big_text();
    expected[0] = lines[0];
    list = list_of(1, lines);
    SUCCEEDS(TRV_FMT_set_field_value(sheet, "TITLE", "NAME", &list));
    value_is(sheet, "NAME", 1, expected);
    sheet = world_reopen();
    value_is(sheet, "NAME", 1, expected);
    free(lines[0]);
}

void c_ManyLinesAreKeptInOrder(void)
{
    const unsigned int sheet = sheet_with_format();
    static char texts[MANY][8];
    static char *lines[MANY];
    TRV_FMT_value_list_t in, out = {0, NULL};
    int i, right = 0;
    for (i = 0; i < MANY; ++i) {
        sprintf(texts[i], "%d", i);
        lines[i] = texts[i];
    }
    in = list_of(MANY, lines);
    SUCCEEDS(TRV_FMT_set_field_value(sheet, "TITLE", "NAME", &in));
    SUCCEEDS(TRV_FMT_ask_field_value(sheet, "TITLE", "NAME", &out));
    HOLDS(out.num_values == MANY);
    for (i = 0; i < out.num_values; ++i) right += strcmp(out.values[i], texts[i]) == 0;
    HOLDS(right == MANY);
    TRV_FMT_free_value(&out);
}

void c_EditabilityOfFieldsIsOneOrZero(void)
{
    unsigned int sheet = sheet_with_format();
    char editable = 9;
    SUCCEEDS(QEL_FMT_get_field_editable(sheet, "TITLE", "NAME", &editable));
    HOLDS(editable == 1);
    SUCCEEDS(QEL_FMT_set_field_editable(sheet, "TITLE", "NAME", 0));
    sheet = world_reopen();
    SUCCEEDS(QEL_FMT_get_field_editable(sheet, "TITLE", "NAME", &editable));
    HOLDS(editable == 0);
    SUCCEEDS(QEL_FMT_set_field_editable(sheet, "TITLE", "NAME", -128));
    SUCCEEDS(QEL_FMT_get_field_editable(sheet, "TITLE", "NAME", &editable));
    HOLDS(editable == 1);
}
