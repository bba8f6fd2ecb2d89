// Objects: types, names, cycling, display properties.
#include "host_fixture.h"

#include "nxhost/authoring.h"
#include "uf_disp.h"
#include "uf_drf.h"
#include "uf_ui.h"

using namespace host_test;

namespace {

class Obj : public HostTest {};

tag_t newNote(const std::string &text)
{
    std::string line = text;
    char *lines[] = {line.data()};
    double origin[3] = {10.0, 20.0, 0.0};
    tag_t note = NULL_TAG;
    EXPECT_EQ(UF_DRF_create_note(1, lines, origin, 0, &note), 0);
    return note;
}

tag_t newSymbol()
{
    double origin[3] = {0.0, 0.0, 0.0};
    tag_t symbol = NULL_TAG;
    EXPECT_EQ(UF_DRF_create_id_symbol(UF_DRF_sym_circle, "1", "", origin, UF_DRF_without_leader,
                                      UF_DRF_leader_attach_screen, nullptr, origin, &symbol),
              0);
    return symbol;
}

tag_t newLine()
{
    UF_CURVE_line_t ends{{0, 0, 0}, {10, 0, 0}};
    tag_t line = NULL_TAG;
    EXPECT_EQ(UF_CURVE_create_line(&ends, &line), 0);
    return line;
}

std::pair<int, int> typeOf(tag_t object)
{
    int type = -1;
    int subtype = -1;
    EXPECT_EQ(UF_OBJ_ask_type_and_subtype(object, &type, &subtype), 0);
    return {type, subtype};
}

Tags cycle(tag_t part, int type)
{
    Tags found;
    tag_t object = NULL_TAG;
    while (UF_OBJ_cycle_objs_in_part(part, type, &object) == 0 && object != NULL_TAG)
        found.push_back(object);
    return found;
}

UF_OBJ_disp_props_t displayOf(tag_t object)
{
    UF_OBJ_disp_props_t properties{};
    EXPECT_EQ(UF_OBJ_ask_display_properties(object, &properties), 0);
    return properties;
}

} // namespace

TEST_F(Obj, EveryKindHasItsTypeAndSubtype)
{
    const tag_t sheet = newSheet("SH1");
    tag_t view = NULL_TAG;
    ASSERT_EQ(UF_DRAW_ask_view_of_drawing(sheet, &view), 0);
    using Numbers = std::pair<int, int>;
    EXPECT_EQ(typeOf(newPoint()), (Numbers{2, 0}));
    EXPECT_EQ(typeOf(newLine()), (Numbers{3, 0}));
    EXPECT_EQ(typeOf(nxhost::createArc(0, 0, 5, 0, 360)), (Numbers{5, 0}));
    EXPECT_EQ(typeOf(newNote("x")), (Numbers{25, 1}));
    EXPECT_EQ(typeOf(newSymbol()), (Numbers{25, 3}));
    EXPECT_EQ(typeOf(sheet), (Numbers{62, 0}));
    EXPECT_EQ(typeOf(view), (Numbers{60, 0}));
    EXPECT_EQ(typeOf(newUdo()), (Numbers{UF_user_defined_object_type, 0}));
    EXPECT_EQ(typeOf(part), (Numbers{UF_part_type, 0}));
    EXPECT_EQ(UF_pattern_type, 10);
    int type = 0;
    EXPECT_EQ(UF_OBJ_ask_type_and_subtype(NULL_TAG, &type, &type), UF_err_unknown_tag);
}

TEST_F(Obj, StatusIsAValueAndNoCode)
{
    const tag_t point = newPoint();
    EXPECT_EQ(UF_OBJ_ask_status(point), UF_OBJ_ALIVE);
    EXPECT_EQ(UF_OBJ_ask_status(part), UF_OBJ_ALIVE);
    EXPECT_EQ(UF_OBJ_ask_status(NULL_TAG), UF_OBJ_DELETED);
    ASSERT_EQ(UF_OBJ_delete_object(point), 0);
    EXPECT_EQ(UF_OBJ_ask_status(point), UF_OBJ_DELETED);
    EXPECT_EQ(UF_OBJ_DELETED, 0);
    EXPECT_EQ(UF_OBJ_CONDEMNED, 2);
    EXPECT_EQ(UF_OBJ_ALIVE, 3);
}

TEST_F(Obj, ObjectsOfATypeAreCycledInOrderOfCreationOverAllSubtypes)
{
    const tag_t first = newNote("1");
    const tag_t symbol = newSymbol();
    const tag_t point = newPoint();
    const tag_t second = newNote("2");
    EXPECT_EQ(cycle(part, UF_drafting_entity_type), (Tags{first, symbol, second}));
    EXPECT_EQ(cycle(part, UF_point_type), Tags{point});
    EXPECT_EQ(cycle(part, UF_circle_type), Tags{});
    EXPECT_EQ(cycle(part, UF_font_table_type).size(), 1u) << "one font table a part";
}

TEST_F(Obj, AllObjectsAreCycledWithoutTheCondemned)
{
    const tag_t point = newPoint();
    const tag_t udo = newUdo();
    const tag_t condemned = newPoint();
    ASSERT_EQ(addLink(udo, 2, condemned), 0);
    ASSERT_EQ(UF_OBJ_delete_object(condemned), 0);
    ASSERT_EQ(statusOf(condemned), UF_OBJ_CONDEMNED);
    const tag_t fonts = UF_OBJ_cycle_all(part, NULL_TAG);
    EXPECT_EQ(typeOf(fonts).first, UF_font_table_type);
    EXPECT_EQ(UF_OBJ_cycle_all(part, fonts), point);
    EXPECT_EQ(UF_OBJ_cycle_all(part, point), udo);
    EXPECT_EQ(UF_OBJ_cycle_all(part, udo), NULL_TAG);
}

TEST_F(Obj, NamesAreKeptAsGivenUpTo30Characters)
{
    const tag_t point = newPoint();
    char name[UF_OBJ_NAME_LEN + 1] = "untouched";
    EXPECT_EQ(UF_OBJ_ask_name(point, name), UF_OBJ_err_no_name);
    EXPECT_EQ(UF_OBJ_err_no_name, 1155001);
    EXPECT_STREQ(name, "");
    ASSERT_EQ(UF_OBJ_set_name(point, "dwg_Attr"), 0);
    ASSERT_EQ(UF_OBJ_ask_name(point, name), 0);
    EXPECT_STREQ(name, "dwg_Attr");
    const std::string longest(30, 'n');
    EXPECT_EQ(UF_OBJ_set_name(point, (longest + "n").c_str()), UF_err_bad_parameter_number_2);
    EXPECT_EQ(UF_OBJ_set_name(point, ""), UF_err_bad_parameter_number_2);
    ASSERT_EQ(UF_OBJ_set_name(point, longest.c_str()), 0);
    ASSERT_EQ(UF_OBJ_ask_name(point, name), 0);
    EXPECT_EQ(name, longest);
    ASSERT_EQ(UF_OBJ_delete_name(point), 0);
    EXPECT_EQ(UF_OBJ_delete_name(point), UF_OBJ_err_no_name);
}

TEST_F(Obj, NamedObjectsAreFoundInOrderOfCreationCaseAndAll)
{
    const tag_t a = newPoint();
    const tag_t b = newLine();
    const tag_t c = newPoint();
    for (const tag_t object : {c, a, b}) ASSERT_EQ(UF_OBJ_set_name(object, "DWG_ATTR"), 0);
    Tags found;
    tag_t object = NULL_TAG;
    while (UF_OBJ_cycle_by_name("DWG_ATTR", &object) == 0 && object) found.push_back(object);
    EXPECT_EQ(found, (Tags{a, b, c}));
    ASSERT_EQ(UF_OBJ_cycle_by_name("dwg_attr", &object), 0);
    EXPECT_EQ(object, NULL_TAG);
    ASSERT_EQ(UF_OBJ_cycle_by_name_and_type(part, "DWG_ATTR", UF_line_type, FALSE, &object), 0);
    EXPECT_EQ(object, b);
    ASSERT_EQ(UF_OBJ_cycle_by_name_and_type(part, "DWG_ATTR", UF_line_type, FALSE, &object), 0);
    EXPECT_EQ(object, NULL_TAG);
    ASSERT_EQ(UF_OBJ_set_name(a, "OTHER"), 0);
    ASSERT_EQ(UF_OBJ_cycle_by_name("DWG_ATTR", &object), 0);
    EXPECT_EQ(object, b);
}

TEST_F(Obj, NewObjectsLookAsTheHostSays)
{
    ASSERT_EQ(UF_LAYER_set_status(40, UF_LAYER_WORK_LAYER), 0);
    const UF_OBJ_disp_props_t look = displayOf(newPoint());
    EXPECT_EQ(look.layer, 40);
    EXPECT_EQ(look.color, 7);
    EXPECT_EQ(look.font, UF_OBJ_FONT_SOLID);
    EXPECT_EQ(look.line_width, UF_OBJ_WIDTH_NORMAL);
    EXPECT_EQ(look.blank_status, UF_OBJ_NOT_BLANKED);
    EXPECT_FALSE(look.highlight_status);
}

TEST_F(Obj, DisplayPropertiesAreSetOneByOneOnOwnedObjectsToo)
{
    const tag_t line = newLine();
    ASSERT_EQ(own(newUdo(), {line}), 0);
    ASSERT_EQ(UF_OBJ_set_layer(line, 256), 0);
    ASSERT_EQ(UF_OBJ_set_color(line, 130), 0);
    ASSERT_EQ(UF_OBJ_set_font(line, 0), 0);
    ASSERT_EQ(UF_OBJ_set_line_width(line, UF_OBJ_WIDTH_NINE), 0);
    ASSERT_EQ(UF_OBJ_set_blank_status(line, UF_OBJ_BLANKED), 0);
    ASSERT_EQ(UF_DISP_set_highlight(line, 1), 0);
    UF_OBJ_disp_props_t look = displayOf(line);
    EXPECT_EQ(look.layer, 256);
    EXPECT_EQ(look.color, 130);
    EXPECT_EQ(look.font, 0) << "kept as given";
    EXPECT_EQ(look.line_width, 13);
    EXPECT_EQ(look.blank_status, UF_OBJ_BLANKED);
    EXPECT_TRUE(look.highlight_status);
    ASSERT_EQ(UF_DISP_add_item_to_display(line), 0);
    ASSERT_EQ(UF_DISP_set_highlight(line, 0), 0);
    look = displayOf(line);
    EXPECT_EQ(look.blank_status, UF_OBJ_NOT_BLANKED);
    EXPECT_FALSE(look.highlight_status);
}

TEST_F(Obj, LayersOutsideOneTo256AndObjectsWithoutALookAreRefused)
{
    const tag_t line = newLine();
    EXPECT_EQ(UF_OBJ_set_layer(line, 0), UF_err_layer_range);
    EXPECT_EQ(UF_OBJ_set_layer(line, 257), UF_err_layer_range);
    const tag_t sheet = newSheet("SH1");
    EXPECT_EQ(UF_OBJ_set_layer(sheet, 5), UF_err_wrong_class);
    logical displayable = TRUE;
    ASSERT_EQ(UF_OBJ_is_displayable(sheet, &displayable), 0);
    EXPECT_FALSE(displayable);
    ASSERT_EQ(UF_OBJ_is_displayable(line, &displayable), 0);
    EXPECT_TRUE(displayable);
}

TEST_F(Obj, TheFontTableAndViewsCannotBeDeleted)
{
    const tag_t fonts = cycle(part, UF_font_table_type).at(0);
    EXPECT_EQ(UF_OBJ_delete_object(fonts), UF_OBJ_err_cannot_delete);
    newSheet("SH1");
    const tag_t view = cycle(part, UF_view_type).at(0);
    EXPECT_EQ(UF_OBJ_delete_object(view), UF_OBJ_err_cannot_delete);
}

TEST_F(Obj, TheInformationWindowCollectsTextWithoutLineEndsOfItsOwn)
{
    EXPECT_FALSE(nxhost::infoWindowOpened());
    ASSERT_EQ(UF_UI_open_listing_window(), 0);
    EXPECT_TRUE(nxhost::infoWindowOpened());
    ASSERT_EQ(UF_UI_write_listing_window("a"), 0);
    ASSERT_EQ(UF_UI_write_listing_window("b\n"), 0);
    ASSERT_EQ(UF_UI_close_listing_window(), 0);
    EXPECT_FALSE(nxhost::infoWindowOpened());
    EXPECT_EQ(nxhost::takeInfoWindow(), "ab\n");
    EXPECT_EQ(nxhost::takeInfoWindow(), "");
}
