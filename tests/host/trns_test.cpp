#include "uf_trns.h"

#include "tests/host/drawing_host.h"

#include "nxhost/authoring.h"
#include "uf_curve.h"
#include "uf_layer.h"
#include "uf_udobj.h"
#include "uf_view.h"

#include <cmath>

namespace {

using Matrix = std::array<double, 12>;

Matrix translation(double x, double y, double z = 0)
{
    double by[3] = {x, y, z};
    Matrix matrix{};
    FTN(uf5943)(by, matrix.data());
    return matrix;
}

Matrix rotation(double x, double y, double degrees)
{
    double origin[3] = {x, y, 0}, axis[3] = {0, 0, 1};
    Matrix matrix{};
    int status = -1;
    FTN(uf5945)(origin, axis, &degrees, matrix.data(), &status);
    EXPECT_EQ(status, 0);
    return matrix;
}

int transformed(const Matrix &matrix, std::vector<tag_t> objects, int mode = 1, int layer = 0,
                tag_t *copies = nullptr)
{
    const int count = static_cast<int>(objects.size());
    int trace = 2, status = -1;
    FTN(uf5947)
    (matrix.data(), objects.data(), &count, &mode, &layer, &trace, copies, nullptr, &status);
    return status;
}

class Transformations : public DrawingHost {
protected:
    static tag_t addPoint(double x, double y)
    {
        double at[3] = {x, y, 0};
        tag_t point = NULL_TAG;
        EXPECT_EQ(UF_CURVE_create_point(at, &point), 0);
        return point;
    }
    static tag_t addLine(double x0, double y0, double x1, double y1)
    {
        UF_CURVE_line_t ends{{x0, y0, 0}, {x1, y1, 0}};
        tag_t line = NULL_TAG;
        EXPECT_EQ(UF_CURVE_create_line(&ends, &line), 0);
        return line;
    }
    static Coordinates at(tag_t point)
    {
        Coordinates read{};
        EXPECT_EQ(UF_CURVE_ask_point_data(point, read.data()), 0);
        return read;
    }
};

TEST_F(Transformations, ATranslationHasItsNumbersInTheFourthColumn)
{
    EXPECT_EQ(translation(4, 5, 6), (Matrix{1, 0, 0, 4, 0, 1, 0, 5, 0, 0, 1, 6}));
}

TEST_F(Transformations, ARotationIsInDegreesAndExactAtQuarterTurns)
{
    // About (10, 0): (12, 0) goes to (10, 2).
    EXPECT_EQ(rotation(10, 0, 90), (Matrix{0, -1, 0, 10, 1, 0, 0, -10, 0, 0, 1, 0}));
    EXPECT_EQ(rotation(3, 4, 180), (Matrix{-1, 0, 0, 6, 0, -1, 0, 8, 0, 0, 1, 0}));
    double position[3] = {12, 0, 0};
    Matrix half = rotation(10, 0, 30);
    FTN(uf5941)(position, half.data());
    EXPECT_NEAR(position[0], 10 + 2 * std::cos(PI / 6), 1e-12);
    EXPECT_NEAR(position[1], 1.0, 1e-12);
}

TEST_F(Transformations, ARotationAboutNoDirectionHasStatusOne)
{
    double origin[3] = {0, 0, 0}, none[3] = {0, 0, 0}, degrees = 90, matrix[12] = {};
    int status = 0;
    FTN(uf5945)(origin, none, &degrees, matrix, &status);
    EXPECT_EQ(status, 1);
}

TEST_F(Transformations, MovingPointsAndLinesKeepsTheirTags)
{
    const tag_t point = addPoint(1, 2), line = addLine(0, 0, 10, 0);
    EXPECT_EQ(transformed(translation(5, -3), {point, line}), 0);
    EXPECT_EQ(at(point), (Coordinates{6, -1, 0}));
    UF_CURVE_line_t ends{};
    EXPECT_EQ(UF_CURVE_ask_line_data(line, &ends), 0);
    EXPECT_EQ(ends.start_point[0], 5.0);
    EXPECT_EQ(ends.end_point[0], 15.0);
    EXPECT_EQ(ends.end_point[1], -3.0);
}

TEST_F(Transformations, FlippingANoteAboutItsOriginTurnsItByHalfATurn)
{
    const tag_t note = addNote({"a"}, 0.1, 123.456789);
    Preferences all = preferencesOf(note);
    all.mpr[UF_DRF_MPR_text_angle] = 30.0;
    ASSERT_EQ(setPreferences(note, all), 0);
    EXPECT_EQ(transformed(rotation(0.1, 123.456789, 180.0), {note}), 0);
    EXPECT_EQ(originOf(note), (Coordinates{0.1, 123.456789, 0}));
    EXPECT_DOUBLE_EQ(preferencesOf(note).mpr[UF_DRF_MPR_text_angle], 210.0);
}

TEST_F(Transformations, ASymbolIsMovedAndStaysUpright)
{
    double origin[3] = {2, 0, 0};
    tag_t symbol = NULL_TAG;
    ASSERT_EQ(UF_DRF_create_id_symbol(UF_DRF_sym_circle, "1", "", origin, UF_DRF_without_leader,
                                      UF_DRF_leader_attach_screen, nullptr, origin, &symbol),
              0);
    EXPECT_EQ(transformed(rotation(0, 0, 90), {symbol}), 0);
    EXPECT_EQ(originOf(symbol), (Coordinates{0, 2, 0}));
    EXPECT_EQ(preferencesOf(symbol).mpr[UF_DRF_MPR_text_angle], 0.0);
}

TEST_F(Transformations, ArcsAndAreasAreTurnedWithTheRest)
{
    const tag_t sheet = openNewSheet("A");
    const tag_t arc = nxhost::createArc(10, 0, 2, 0, 90);
    const tag_t area = nxhost::createFilledArea({{{0, 0}, {4, 0}, {4, 3}}});
    const std::string before = nxhost::listSheet(sheet);
    EXPECT_EQ(transformed(rotation(0, 0, 90), {arc, area}), 0);
    const std::string turned = nxhost::listSheet(sheet);
    EXPECT_NE(turned, before);
    EXPECT_EQ(transformed(rotation(0, 0, -90), {arc, area}), 0);
    EXPECT_EQ(nxhost::listSheet(sheet), before);
}

TEST_F(Transformations, ACopyStandsInTheSameViewWithTheSameLook)
{
    const tag_t a = openNewSheet("A");
    const tag_t point = addPoint(1, 1);
    ASSERT_EQ(UF_OBJ_set_layer(point, 77), 0);
    ASSERT_EQ(UF_OBJ_set_color(point, 4), 0);
    ASSERT_EQ(UF_OBJ_set_name(point, "MARK"), 0);
    openNewSheet("B");
    tag_t copies[1] = {NULL_TAG};
    EXPECT_EQ(transformed(translation(1, 0), {point}, 2, 0, copies), 0);
    EXPECT_EQ(at(point), (Coordinates{1, 1, 0}));
    EXPECT_EQ(at(copies[0]), (Coordinates{2, 1, 0}));
    EXPECT_EQ(displayOf(copies[0]).layer, 77);
    EXPECT_EQ(displayOf(copies[0]).color, 4);
    tag_t in = NULL_TAG;
    EXPECT_EQ(UF_VIEW_cycle_objects(viewOf(a), UF_VIEW_VISIBLE_OBJECTS, &in), 0);
    EXPECT_EQ(in, point);
    EXPECT_EQ(UF_VIEW_cycle_objects(viewOf(a), UF_VIEW_VISIBLE_OBJECTS, &in), 0);
    EXPECT_EQ(in, copies[0]);
    char name[UF_OBJ_NAME_LEN + 1];
    EXPECT_EQ(UF_OBJ_ask_name(copies[0], name), 0);
    EXPECT_STREQ(name, "MARK");
}

TEST_F(Transformations, TheDestinationLayerIsTheOldOneTheWorkLayerOrTheOneGiven)
{
    const tag_t point = addPoint(1, 1);
    ASSERT_EQ(UF_OBJ_set_layer(point, 77), 0);
    EXPECT_EQ(transformed(translation(1, 0), {point}, 1, 0), 0);
    EXPECT_EQ(displayOf(point).layer, 77);
    EXPECT_EQ(transformed(translation(1, 0), {point}, 1, 256), 0);
    EXPECT_EQ(displayOf(point).layer, 256);
    EXPECT_EQ(transformed(translation(1, 0), {point}, 1, -1), 0);
    EXPECT_EQ(displayOf(point).layer, 1);
    EXPECT_EQ(transformed(translation(1, 0), {point}, 1, 257), 2);
}

TEST_F(Transformations, OwnedObjectsMayBeMoved)
{
    const tag_t udo = addRecord();
    tag_t point = addPoint(1, 1);
    ASSERT_EQ(UF_UDOBJ_add_owning_links(udo, 1, &point), 0);
    EXPECT_EQ(transformed(translation(1, 0), {point}), 0);
    EXPECT_EQ(at(point), (Coordinates{2, 1, 0}));
    EXPECT_EQ(transformed(translation(1, 0), {udo}), 3);
}

TEST_F(Transformations, OneWrongObjectStopsAll)
{
    const tag_t point = addPoint(1, 1), gone = addPoint(2, 2);
    ASSERT_EQ(UF_OBJ_delete_object(gone), 0);
    EXPECT_EQ(transformed(translation(1, 0), {point, gone}), 3);
    EXPECT_EQ(at(point), (Coordinates{1, 1, 0}));
}

TEST_F(Transformations, WhatWouldDeformIsRefused)
{
    const Matrix stretch{2, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0};
    const Matrix mirror{-1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0};
    const Matrix flat{0, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0};
    const tag_t arc = nxhost::createArc(0, 0, 1, 0, 360);
    const tag_t note = addNote({"a"});
    const tag_t line = addLine(0, 0, 1, 0);
    for (const Matrix &matrix : {stretch, mirror}) {
        EXPECT_EQ(transformed(matrix, {arc}), 3);
        EXPECT_EQ(transformed(matrix, {note}), 3);
        EXPECT_EQ(transformed(matrix, {line}), 0);
    }
    EXPECT_EQ(transformed(flat, {line}), 3); // both ends would be one point
}

TEST_F(Transformations, WrongCountsModesAndTraceOptionsHaveTheirStatus)
{
    const tag_t point = addPoint(1, 1);
    EXPECT_EQ(transformed(translation(1, 0), {}), 1);
    EXPECT_EQ(transformed(translation(1, 0), std::vector<tag_t>(32768, point)), 1);
    EXPECT_EQ(transformed(translation(1, 0), {point}, 3), 2);
    EXPECT_EQ(transformed(translation(1, 0), {point}, 2, 0, nullptr), 2);
    EXPECT_EQ(transformed(translation(std::nan(""), 0), {point}), 2);
    int count = 1, mode = 1, layer = 0, trace = 1, status = 0;
    FTN(uf5947)
    (translation(1, 0).data(), &point, &count, &mode, &layer, &trace, nullptr, nullptr, &status);
    EXPECT_EQ(status, 2);
    EXPECT_EQ(at(point), (Coordinates{1, 1, 0}));
}

TEST_F(Transformations, AnInjectedFaultIsTheStatusAndNothingMoves)
{
    const tag_t point = addPoint(1, 1);
    nxhost::failCall("uf5947", 12);
    EXPECT_EQ(transformed(translation(1, 0), {point}), 12);
    EXPECT_EQ(at(point), (Coordinates{1, 1, 0}));
    EXPECT_EQ(nxhost::callCount("uf5947"), 1u);
}

} // namespace
