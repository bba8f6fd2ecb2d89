#include "uf_curve.h"

#include "tests/host/drawing_host.h"

#include <cmath>

namespace {

using Curves = DrawingHost;

UF_CURVE_line_t line(double x0, double y0, double x1, double y1)
{
    return {{x0, y0, 0}, {x1, y1, 0}};
}

TEST_F(Curves, APointKeepsItsCoordinates)
{
    double at[3] = {1.0 / 3.0, -2.5, 7};
    tag_t point = NULL_TAG;
    ASSERT_EQ(UF_CURVE_create_point(at, &point), 0);
    double read[3] = {};
    EXPECT_EQ(UF_CURVE_ask_point_data(point, read), 0);
    for (int i = 0; i < 3; ++i) EXPECT_EQ(read[i], at[i]);
}

TEST_F(Curves, BothEndsOfALineAreEditedAtOnce)
{
    UF_CURVE_line_t ends = line(0, 0, 10, 0);
    tag_t tag = NULL_TAG;
    ASSERT_EQ(UF_CURVE_create_line(&ends, &tag), 0);
    ends = line(10, 0, 20, 5);
    EXPECT_EQ(UF_CURVE_edit_line_data(tag, &ends), 0);
    UF_CURVE_line_t read{};
    EXPECT_EQ(UF_CURVE_ask_line_data(tag, &read), 0);
    EXPECT_EQ(read.start_point[0], 10.0);
    EXPECT_EQ(read.end_point[1], 5.0);
}

TEST_F(Curves, ALineWithoutLengthIsRefusedAndCounted)
{
    UF_CURVE_line_t none = line(1, 1, 1, 1);
    tag_t tag = 4;
    EXPECT_EQ(UF_CURVE_create_line(&none, &tag), UF_err_zero_length);
    EXPECT_EQ(tag, NULL_TAG);
    UF_CURVE_line_t good = line(1, 1, 1, 2);
    ASSERT_EQ(UF_CURVE_create_line(&good, &tag), 0);
    EXPECT_EQ(UF_CURVE_edit_line_data(tag, &none), UF_err_zero_length);
    EXPECT_EQ(nxhost::zeroLengthRefusals(), 2u);
}

TEST_F(Curves, TheShortestLineThereIsIsALine)
{
    UF_CURVE_line_t shortest = line(1, 1, std::nextafter(1.0, 2.0), 1);
    tag_t tag = NULL_TAG;
    EXPECT_EQ(UF_CURVE_create_line(&shortest, &tag), 0);
}

TEST_F(Curves, AskingTheWrongKindHasItsOwnCode)
{
    const tag_t note = addNote({"a"});
    double at[3];
    UF_CURVE_line_t ends;
    EXPECT_EQ(UF_CURVE_ask_point_data(note, at), UF_CURVE_err_not_a_point);
    EXPECT_EQ(UF_CURVE_ask_line_data(note, &ends), UF_CURVE_err_not_a_line);
    EXPECT_EQ(UF_CURVE_ask_point_data(NULL_TAG, at), UF_err_unknown_tag);
}

} // namespace
