#include "nxhost/authoring.h"

#include "opencpp/member.h"

#include "uf.h"
#include "uf_curve.h"

#include <cmath>

namespace {

tag_t createInWorkPart(host::Body body)
{
    host::Session &session = host::Session::get();
    return session.create(session.workPart(), std::move(body)).tag;
}

std::vector<host::Vec3> outlineOf(const std::vector<nxhost::AuthoringPoint> &points)
{
    host::require(points.size() >= 3, UF_err_bad_parameter_number_1);
    std::vector<host::Vec3> outline;
    outline.reserve(points.size());
    for (const nxhost::AuthoringPoint &point : points) {
        host::require(std::isfinite(point.x) && std::isfinite(point.y),
                      UF_err_bad_parameter_number_1);
        outline.push_back({point.x, point.y, 0.0});
    }
    return outline;
}

} // namespace

namespace nxhost {

tag_t createArc(double x, double y, double radius, double start_angle, double end_angle)
{
    return host::member("nxhost::createArc", [&] {
        host::require(std::isfinite(x), UF_err_bad_parameter_number_1);
        host::require(std::isfinite(y), UF_err_bad_parameter_number_2);
        host::require(std::isfinite(radius) && radius > 0.0, UF_err_bad_parameter_number_3);
        host::require(std::isfinite(start_angle), UF_err_bad_parameter_number_4);
        // Counter-clockwise from start to end: an end below the start lies one turn further on.
        if (end_angle < start_angle) end_angle += 360.0;
        host::require(end_angle > start_angle && end_angle <= start_angle + 360.0,
                      UF_err_bad_parameter_number_5);
        return createInWorkPart(host::Arc{{x, y, 0.0}, radius, start_angle, end_angle});
    });
}

tag_t createFilledArea(const std::vector<std::vector<AuthoringPoint>> &outlines)
{
    return host::member("nxhost::createFilledArea", [&] {
        host::require(!outlines.empty(), UF_err_bad_parameter_number_1);
        host::Area area;
        for (const auto &points : outlines) area.outlines.push_back(outlineOf(points));
        return createInWorkPart(std::move(area));
    });
}

AuthoredArc askArc(tag_t arc)
{
    return host::member("nxhost::askArc", [&] {
        const auto &data =
            host::Session::get().requireBody<host::Arc>(arc, UF_CURVE_err_not_an_arc);
        return AuthoredArc{
            {data.centre.x, data.centre.y}, data.radius, data.startAngle, data.endAngle};
    });
}

std::vector<std::vector<AuthoringPoint>> askFilledArea(tag_t area)
{
    return host::member("nxhost::askFilledArea", [&] {
        const auto &data = host::Session::get().requireBody<host::Area>(area, UF_err_wrong_class);
        std::vector<std::vector<AuthoringPoint>> outlines;
        for (const auto &outline : data.outlines) {
            auto &points = outlines.emplace_back();
            for (const host::Vec3 &point : outline) points.push_back({point.x, point.y});
        }
        return outlines;
    });
}

void setPatternDataSaved(tag_t part_tag, bool on)
{
    host::member("nxhost::setPatternDataSaved", [&] {
        host::Part &part = host::Session::get().requirePart(part_tag);
        if (part.patternDataSaved == on) return;
        host::Session::get().changing(part, on ? "pattern data saved" : "pattern data not saved");
        part.patternDataSaved = on;
    });
}

bool isPatternDataSaved(tag_t part)
{
    return host::member("nxhost::isPatternDataSaved",
                        [&] { return host::Session::get().requirePart(part).patternDataSaved; });
}

} // namespace nxhost
