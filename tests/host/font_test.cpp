#include "uf_ugfont.h"

#include "tests/host/drawing_host.h"

namespace {

class Fonts : public DrawingHost {
protected:
    static tag_t tableOf(tag_t part)
    {
        tag_t table = NULL_TAG;
        EXPECT_EQ(UF_OBJ_cycle_objs_in_part(part, UF_font_table_type, &table), 0);
        EXPECT_NE(table, NULL_TAG);
        return table;
    }

    static int add(tag_t table, std::string name, int *index)
    {
        return UF_UGFONT_add_font(table, index, name.data());
    }

    static std::string nameAt(tag_t table, int index)
    {
        char *name = nullptr;
        EXPECT_EQ(UF_UGFONT_ask_font_name(table, index, &name), 0);
        const std::string copy = name ? name : "";
        UF_free(name);
        return copy;
    }
};

TEST_F(Fonts, APartHasOneTableWhoseFirstFontIsTheDefault)
{
    tag_t table = tableOf(part());
    EXPECT_EQ(nameAt(table, 1), "blockfont");
    EXPECT_EQ(UF_OBJ_cycle_objs_in_part(part(), UF_font_table_type, &table), 0);
    EXPECT_EQ(table, NULL_TAG);
}

TEST_F(Fonts, AKnownFontKeepsItsIndexANewOneIsAppended)
{
    const tag_t table = tableOf(part());
    int leroy = 0, again = 0, first = 0;
    EXPECT_EQ(add(table, "leroy", &leroy), 0);
    EXPECT_EQ(add(table, "leroy", &again), 0);
    EXPECT_EQ(add(table, "blockfont", &first), 0);
    EXPECT_EQ(leroy, 2);
    EXPECT_EQ(again, 2);
    EXPECT_EQ(first, 1);
    int count = 0;
    EXPECT_EQ(UF_UGFONT_ask_number_of_fonts(table, &count), 0);
    EXPECT_EQ(count, 2);
}

TEST_F(Fonts, IndexesBelongToAPart)
{
    int index = 0;
    ASSERT_EQ(add(tableOf(part()), "leroy", &index), 0);
    const tag_t other = newPart("other", UF_PART_METRIC);
    ASSERT_EQ(add(tableOf(other), "romand", &index), 0);
    EXPECT_EQ(index, 2);
    EXPECT_EQ(nameAt(tableOf(part()), 2), "leroy");
}

TEST_F(Fonts, NamesHaveAtMostSixteenCharacters)
{
    int index = 9;
    const tag_t table = tableOf(part());
    EXPECT_EQ(add(table, std::string(16, 'f'), &index), 0);
    EXPECT_EQ(add(table, std::string(17, 'f'), &index), UF_err_bad_parameter_number_3);
    EXPECT_EQ(add(table, "", &index), UF_err_bad_parameter_number_3);
    EXPECT_EQ(index, 0);
}

TEST_F(Fonts, UnknownFontsAreRefusedOnDemand)
{
    int index = 0;
    const tag_t table = tableOf(part());
    EXPECT_EQ(add(table, "no_such_font", &index), 0);
    nxhost::setRejectUnknownFonts(true);
    EXPECT_NE(add(table, "nor_this_one", &index), 0);
    EXPECT_EQ(add(table, "no_such_font", &index), 0);
}

TEST_F(Fonts, OnlyATableHasFonts)
{
    int index = 0;
    EXPECT_EQ(add(addSheet("A"), "leroy", &index), UF_err_wrong_class);
    char *name = nullptr;
    EXPECT_EQ(UF_UGFONT_ask_font_name(tableOf(part()), 2, &name), UF_err_bad_parameter_number_2);
    EXPECT_EQ(UF_UGFONT_ask_font_name(tableOf(part()), 0, &name), UF_err_bad_parameter_number_2);
}

} // namespace
