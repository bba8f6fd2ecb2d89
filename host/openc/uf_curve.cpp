#include "uf_curve.h"

#include "openc/vec3_args.h"

#include "model/calls.h"
#include "model/session.h"

#include "uf.h"

using host::Line;
using host::Point;
using host::Session;

namespace {

// Compared exactly: however short, a line has two ends.
Line checkedLine(const UF_CURVE_line_t &from)
{
    const Line line{host::toVec3(from.start_point), host::toVec3(from.end_point)};
    if (line.start == line.end) {
        ++Session::get().zeroLengthRefusals;
        throw host::Failure{UF_err_zero_length, {}};
    }
    return line;
}

} // namespace

extern "C" int UF_CURVE_create_point(double point_coords[3], tag_t *point)
{
    return host::call("UF_CURVE_create_point", [&] {
        host::require(point, UF_err_bad_parameter_number_2);
        *point = NULL_TAG;
        host::require(point_coords, UF_err_bad_parameter_number_1);
        host::Part &part = Session::get().workPart();
        *point = Session::get().create(part, Point{host::toVec3(point_coords)}).tag;
    });
}

extern "C" int UF_CURVE_ask_point_data(tag_t point, double point_coords[3])
{
    return host::call("UF_CURVE_ask_point_data", [&] {
        host::require(point_coords, UF_err_bad_parameter_number_2);
        const Point &data = Session::get().requireBody<Point>(point, UF_CURVE_err_not_a_point);
        host::copyTo(point_coords, data.position);
    });
}

extern "C" int UF_CURVE_create_line(UF_CURVE_line_p_t line_coords, tag_t *line)
{
    return host::call("UF_CURVE_create_line", [&] {
        host::require(line, UF_err_bad_parameter_number_2);
        *line = NULL_TAG;
        host::require(line_coords, UF_err_bad_parameter_number_1);
        const Line checked = checkedLine(*line_coords);
        *line = Session::get().create(Session::get().workPart(), checked).tag;
    });
}

extern "C" int UF_CURVE_ask_line_data(tag_t line, UF_CURVE_line_p_t line_coords)
{
    return host::call("UF_CURVE_ask_line_data", [&] {
        host::require(line_coords, UF_err_bad_parameter_number_2);
        const Line &data = Session::get().requireBody<Line>(line, UF_CURVE_err_not_a_line);
        host::copyTo(line_coords->start_point, data.start);
        host::copyTo(line_coords->end_point, data.end);
    });
}

extern "C" int UF_CURVE_edit_line_data(tag_t line, UF_CURVE_line_p_t line_coords)
{
    return host::call("UF_CURVE_edit_line_data", [&] {
        host::require(line_coords, UF_err_bad_parameter_number_2);
        Line &data = Session::get().requireBody<Line>(line, UF_CURVE_err_not_a_line);
        const Line edited = checkedLine(*line_coords);
        if (edited == data) return;
        Session::get().changing(Session::get().require(line), "ends");
        data = edited;
    });
}
