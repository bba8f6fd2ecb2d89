// Points and lines.
#include "opencpp/member.h"
#include "opencpp/wrapper_table.h"

#include "ug_line.hxx"
#include "ug_point.hxx"

namespace {

host::Vec3 toVec3(const Point3 &point) { return {point[0], point[1], point[2]}; }
Point3 toPoint3(const host::Vec3 &at) { return {at.x, at.y, at.z}; }

template <class Wrapper> Wrapper *createIn(const UgPart *owner, host::Body body)
{
    host::Part &part = host::partOrWorkPart(owner);
    const host::Object &object = host::Session::get().create(part, std::move(body));
    return dynamic_cast<Wrapper *>(UgWrapperTable::get().find(object.tag));
}

// Compared exactly: however short, a line has two ends.
void refuseZeroLength(const host::Line &line)
{
    if (!(line.start == line.end)) return;
    ++host::Session::get().zeroLengthRefusals;
    throw host::Failure{UF_err_zero_length, {}};
}

void edit(const UgLine &wrapper, host::Vec3 host::Line::*end, const Point3 &to)
{
    host::Line &line = host::bodyOf<host::Line>(wrapper);
    host::Line edited = line;
    edited.*end = toVec3(to);
    refuseZeroLength(edited);
    if (edited == line) return;
    host::Session::get().changing(host::objectOf(wrapper), "ends");
    line = edited;
}

} // namespace

UgPoint::UgPoint() = default;
UgPoint::~UgPoint() = default;

UgPoint *UgPoint::create(const Point3 &position, UgPart *owner)
{
    return host::member("UgPoint::create",
                        [&] { return createIn<UgPoint>(owner, host::Point{toVec3(position)}); });
}

Point3 UgPoint::getPosition() const
{
    return host::member("UgPoint::getPosition",
                        [&] { return toPoint3(host::bodyOf<host::Point>(*this).position); });
}

UgLine::~UgLine() = default;

UgLine *UgLine::create(const Point3 &start, const Point3 &end, UgPart *owner)
{
    return host::member("UgLine::create", [&] {
        const host::Line line{toVec3(start), toVec3(end)};
        refuseZeroLength(line);
        return createIn<UgLine>(owner, line);
    });
}

Point3 UgLine::getStartPoint() const
{
    return host::member("UgLine::getStartPoint",
                        [&] { return toPoint3(host::bodyOf<host::Line>(*this).start); });
}

Point3 UgLine::getEndPoint() const
{
    return host::member("UgLine::getEndPoint",
                        [&] { return toPoint3(host::bodyOf<host::Line>(*this).end); });
}

void UgLine::setStartPoint(const Point3 &start)
{
    host::member("UgLine::setStartPoint", [&] { edit(*this, &host::Line::start, start); });
}

void UgLine::setEndPoint(const Point3 &end)
{
    host::member("UgLine::setEndPoint", [&] { edit(*this, &host::Line::end, end); });
}
