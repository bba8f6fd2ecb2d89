#include "tests/host/drawing_host.h"

#include "uf_curve.h"

#include <cmath>

namespace {

using Sheets = DrawingHost;

std::vector<tag_t> sheetsOfWorkPart()
{
    int count = -1;
    tag_t *tags = nullptr;
    EXPECT_EQ(UF_DRAW_ask_drawings(&count, &tags), 0);
    const std::vector<tag_t> sheets(tags, tags + count);
    UF_free(tags);
    return sheets;
}

TEST_F(Sheets, NoSheetIsCurrentBeforeOneIsOpened)
{
    tag_t current = 5;
    EXPECT_EQ(UF_DRAW_ask_current_drawing(&current), 0);
    EXPECT_EQ(current, NULL_TAG);
    const tag_t sheet = addSheet("S1");
    EXPECT_EQ(UF_DRAW_open_drawing(sheet), 0);
    EXPECT_EQ(UF_DRAW_ask_current_drawing(&current), 0);
    EXPECT_EQ(current, sheet);
}

TEST_F(Sheets, AllSheetsOfTheWorkPartInOrderOfCreation)
{
    EXPECT_TRUE(sheetsOfWorkPart().empty());
    const tag_t b = addSheet("B"), a = addSheet("A");
    EXPECT_EQ(sheetsOfWorkPart(), (std::vector{b, a}));
    int count = 0;
    EXPECT_EQ(UF_DRAW_ask_num_drawings(&count), 0);
    EXPECT_EQ(count, 2);
    newPart("other", UF_PART_METRIC);
    EXPECT_TRUE(sheetsOfWorkPart().empty());
}

TEST_F(Sheets, EachHasAViewOfItsOwnThatKnowsIt)
{
    const tag_t a = addSheet("A"), b = addSheet("B");
    EXPECT_NE(viewOf(a), viewOf(b));
    tag_t sheet = NULL_TAG;
    EXPECT_EQ(UF_DRAW_ask_drawing_of_view(viewOf(b), &sheet), 0);
    EXPECT_EQ(sheet, b);
    int members = 3;
    tag_t *views = nullptr;
    EXPECT_EQ(UF_DRAW_ask_views(a, &members, &views), 0);
    EXPECT_EQ(members, 0);
}

TEST_F(Sheets, InformationComesBackAsItWasSet)
{
    const tag_t sheet = addSheet("A");
    UF_DRAW_info_t info = a3();
    info.size_state = UF_DRAW_CUSTOM_SIZE;
    info.size.custom_size[0] = 297.0; // height
    info.size.custom_size[1] = 420.0; // length
    info.drawing_scale = 0.5;
    info.projection_angle = UF_DRAW_THIRD_ANGLE_PROJECTION;
    ASSERT_EQ(UF_DRAW_set_drawing_info(sheet, &info), 0);
    UF_DRAW_info_t read{};
    ASSERT_EQ(UF_DRAW_ask_drawing_info(sheet, &read), 0);
    EXPECT_EQ(read.size_state, UF_DRAW_CUSTOM_SIZE);
    EXPECT_EQ(read.size.custom_size[0], 297.0);
    EXPECT_EQ(read.size.custom_size[1], 420.0);
    EXPECT_EQ(read.drawing_scale, 0.5);
    EXPECT_EQ(read.projection_angle, UF_DRAW_THIRD_ANGLE_PROJECTION);
}

TEST_F(Sheets, NullMeansTheCurrentSheet)
{
    UF_DRAW_info_t info{};
    EXPECT_EQ(UF_DRAW_ask_drawing_info(NULL_TAG, &info), UF_DRAW_err_null_object);
    openNewSheet("A");
    EXPECT_EQ(UF_DRAW_ask_drawing_info(NULL_TAG, &info), 0);
    EXPECT_EQ(info.size.metric_size_code, UF_DRAW_A3);
}

TEST_F(Sheets, ASheetThatIsNotCurrentCanBeSizedUnlessTheHostIsStrict)
{
    const tag_t a = openNewSheet("A"), b = addSheet("B");
    UF_DRAW_info_t info = a3();
    info.size.metric_size_code = UF_DRAW_A1;
    EXPECT_EQ(UF_DRAW_set_drawing_info(b, &info), 0);
    nxhost::setStrictDrawingInfo(true);
    info.size.metric_size_code = UF_DRAW_A2;
    EXPECT_EQ(UF_DRAW_set_drawing_info(b, &info), UF_DRAW_err_not_current);
    EXPECT_EQ(UF_DRAW_set_drawing_info(a, &info), 0);
    ASSERT_EQ(UF_DRAW_ask_drawing_info(b, &info), 0);
    EXPECT_EQ(info.size.metric_size_code, UF_DRAW_A1);
}

TEST_F(Sheets, SizesScalesAndUnitsThatDoNotExistAreRefused)
{
    const tag_t sheet = addSheet("A");
    std::vector<UF_DRAW_info_t> wrong(7, a3());
    wrong[0].size.metric_size_code = static_cast<UF_DRAW_metric_size_t>(6);
    wrong[1].size.metric_size_code = static_cast<UF_DRAW_metric_size_t>(0);
    wrong[2].size_state = static_cast<UF_DRAW_size_state_t>(3);
    wrong[3].drawing_scale = 0.0;
    wrong[4].units = 3;
    wrong[5].size_state = UF_DRAW_CUSTOM_SIZE;
    wrong[5].size.custom_size[0] = 100.0;
    wrong[5].size.custom_size[1] = -1.0;
    wrong[6].size_state = UF_DRAW_CUSTOM_SIZE;
    wrong[6].size.custom_size[0] = std::nan("");
    wrong[6].size.custom_size[1] = 100.0;
    for (UF_DRAW_info_t &info : wrong)
        EXPECT_EQ(UF_DRAW_set_drawing_info(sheet, &info), UF_DRAW_err_invalid_parameter);
    UF_DRAW_info_t english = a3();
    english.size_state = UF_DRAW_ENGLISH_SIZE;
    english.size.english_size_code = UF_DRAW_J;
    english.units = UF_PART_ENGLISH;
    EXPECT_EQ(UF_DRAW_set_drawing_info(sheet, &english), 0);
}

TEST_F(Sheets, NamesAreUniqueAndAtMostThirtyCharacters)
{
    UF_DRAW_info_t info = a3();
    tag_t sheet = NULL_TAG;
    EXPECT_EQ(UF_DRAW_create_drawing(std::string(30, 'n').c_str(), &info, &sheet), 0);
    EXPECT_EQ(UF_DRAW_create_drawing(std::string(30, 'n').c_str(), &info, &sheet),
              UF_DRAW_err_name_in_use);
    EXPECT_EQ(sheet, NULL_TAG);
    EXPECT_EQ(UF_DRAW_create_drawing(std::string(31, 'n').c_str(), &info, &sheet),
              UF_DRAW_err_invalid_parameter);
    EXPECT_EQ(UF_DRAW_create_drawing("", &info, &sheet), UF_DRAW_err_invalid_parameter);
    EXPECT_EQ(sheetsOfWorkPart().size(), 1u);
}

TEST_F(Sheets, DeletingOneTakesItsViewAndWhatStandsInIt)
{
    const tag_t a = openNewSheet("A");
    const tag_t inA = addNote({"a"});
    const tag_t b = openNewSheet("B");
    const tag_t inB = addNote({"b"});
    const tag_t viewA = viewOf(a);
    EXPECT_EQ(UF_OBJ_delete_object(a), UF_OBJ_err_cannot_delete);
    EXPECT_EQ(UF_DRAW_delete_drawing(a), 0);
    for (const tag_t gone : {a, viewA, inA}) EXPECT_EQ(UF_OBJ_ask_status(gone), UF_OBJ_DELETED);
    EXPECT_EQ(UF_OBJ_ask_status(inB), UF_OBJ_ALIVE);
    EXPECT_EQ(sheetsOfWorkPart(), std::vector{b});
}

TEST_F(Sheets, AfterTheCurrentSheetIsDeletedNoneIsCurrent)
{
    const tag_t sheet = openNewSheet("A");
    ASSERT_EQ(UF_DRAW_delete_drawing(sheet), 0);
    tag_t current = 5;
    EXPECT_EQ(UF_DRAW_ask_current_drawing(&current), 0);
    EXPECT_EQ(current, NULL_TAG);
    EXPECT_EQ(UF_DRAW_open_drawing(sheet), UF_err_unknown_tag);
}

TEST_F(Sheets, OnlySheetsHaveDrawingInformation)
{
    UF_DRAW_info_t info = a3();
    const tag_t note = addNote({"a"});
    EXPECT_EQ(UF_DRAW_ask_drawing_info(note, &info), UF_DRAW_err_invalid_parameter);
    EXPECT_EQ(UF_DRAW_set_drawing_info(note, &info), UF_DRAW_err_invalid_parameter);
    tag_t tag = NULL_TAG;
    EXPECT_EQ(UF_DRAW_ask_drawing_of_view(note, &tag), UF_DRAW_err_invalid_parameter);
    EXPECT_EQ(UF_DRAW_delete_drawing(NULL_TAG), UF_DRAW_err_null_object);
}

TEST_F(Sheets, WithoutAWorkPartTheCallsFail)
{
    ASSERT_EQ(UF_PART_close(part(), 0, 1), 0);
    tag_t current = NULL_TAG;
    EXPECT_EQ(UF_DRAW_ask_current_drawing(&current), UF_err_no_work_part);
}

} // namespace
