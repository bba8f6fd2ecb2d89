#include "drawing/sheet_size.h"

#include "tests/support/story.h"

namespace {

UF_DRAW_info_t metric(int code)
{
    UF_DRAW_info_t info{};
    info.size_state = UF_DRAW_METRIC_SIZE;
    info.size.metric_size_code = static_cast<UF_DRAW_metric_size_t>(code);
    return info;
}

UF_DRAW_info_t english(int code)
{
    UF_DRAW_info_t info{};
    info.size_state = UF_DRAW_ENGLISH_SIZE;
    info.size.english_size_code = static_cast<UF_DRAW_english_size_t>(code);
    return info;
}

struct Row {
    int code;
    double width, height;
};

} // namespace

TEST(SheetSize, MetricCodesAreA0ToA4LandscapeInMillimetres)
{
    for (const Row &row :
         {Row{1, 1189, 841}, {2, 841, 594}, {3, 594, 420}, {4, 420, 297}, {5, 297, 210}}) {
        SCOPED_TRACE(row.code);
        EXPECT_EQ(sheetSize(metric(row.code))[0], row.width);
        EXPECT_EQ(sheetSize(metric(row.code))[1], row.height);
    }
}

TEST(SheetSize, EnglishCodesAreInInches)
{
    for (const Row &row : {Row{1, 11, 8.5},
                           {2, 17, 11},
                           {3, 22, 17},
                           {4, 34, 22},
                           {5, 44, 34},
                           {6, 40, 28},
                           {7, 44, 28},
                           {8, 55, 34}}) {
        SCOPED_TRACE(row.code);
        EXPECT_EQ(sheetSize(english(row.code))[0], row.width);
        EXPECT_EQ(sheetSize(english(row.code))[1], row.height);
    }
}

TEST(SheetSize, ACustomSizeHasItsHeightFirst)
{
    UF_DRAW_info_t info{};
    info.size_state = UF_DRAW_CUSTOM_SIZE;
    info.size.custom_size[0] = 200;
    info.size.custom_size[1] = 900;
    EXPECT_EQ(sheetSize(info)[0], 900);
    EXPECT_EQ(sheetSize(info)[1], 200);
}

TEST(SheetSize, AnyStateThatIsNeitherEnglishNorCustomIsMetric)
{
    UF_DRAW_info_t info = metric(4);
    info.size_state = static_cast<UF_DRAW_size_state_t>(3);
    EXPECT_EQ(sheetSize(info)[0], 420);
    EXPECT_EQ(sheetSize(info)[1], 297);
}

TEST(SheetSize, AnUnknownCodeIsRefusedWithItsNumberAndTheRemedy)
{
    EXPECT_EQ(
        textThrownBy([] { sheetSize(metric(6)); }),
        "The drawing sheet has size code 6, metric sizes have codes 1 to 5. Give the sheet one "
        "of these sizes or a custom size.");
    EXPECT_EQ(textThrownBy([] { sheetSize(english(9)); }),
              "The drawing sheet has size code 9, English sizes have codes 1 to 8. Give the sheet "
              "one of these sizes or a custom size.");
    EXPECT_THROW(sheetSize(metric(0)), std::runtime_error);
}
