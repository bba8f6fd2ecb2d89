#include "openc/transformation.h"

#include "uf_defs.h"

#include <algorithm>
#include <cmath>

namespace host {

namespace {

// Products of rotations drift by a few bits; a wrong matrix is wrong by more.
constexpr double kTolerance = 1e-9;

bool near(double a, double b) { return std::abs(a - b) <= kTolerance; }

struct SineCosine {
    double sine;
    double cosine;
};

SineCosine sineCosine(double degrees)
{
    const double turn = std::fmod(degrees, 360.0);
    if (turn == 0.0) return {0.0, 1.0};
    if (turn == 90.0 || turn == -270.0) return {1.0, 0.0};
    if (turn == 180.0 || turn == -180.0) return {0.0, -1.0};
    if (turn == 270.0 || turn == -90.0) return {-1.0, 0.0};
    return {std::sin(turn * DEGRA), std::cos(turn * DEGRA)};
}

struct Apply {
    const Transformation &by;

    std::optional<Body> operator()(const Point &point) const
    {
        return Point{by.appliedTo(point.position)};
    }
    std::optional<Body> operator()(const Line &line) const
    {
        const Line moved{by.appliedTo(line.start), by.appliedTo(line.end)};
        if (moved.start == moved.end) return std::nullopt;
        return moved;
    }
    std::optional<Body> operator()(Arc arc) const
    {
        if (!by.isRotationInPlane()) return std::nullopt;
        arc.centre = by.appliedTo(arc.centre);
        arc.startAngle += by.degreesInPlane();
        arc.endAngle += by.degreesInPlane();
        return arc;
    }
    std::optional<Body> operator()(Area area) const
    {
        for (auto &outline : area.outlines)
            for (Vec3 &point : outline) point = by.appliedTo(point);
        return area;
    }
    std::optional<Body> operator()(Note note) const
    {
        if (!by.isRotationInPlane()) return std::nullopt;
        note.origin = by.appliedTo(note.origin);
        note.lettering.angle += by.degreesInPlane();
        return note;
    }
    // A balloon keeps upright.
    std::optional<Body> operator()(IdSymbol symbol) const
    {
        if (!by.isRotationInPlane()) return std::nullopt;
        symbol.origin = by.appliedTo(symbol.origin);
        return symbol;
    }
    std::optional<Body> operator()(Pattern pattern) const
    {
        if (!by.isRotation()) return std::nullopt;
        const Vec3 zero = by.appliedTo(Vec3{});
        std::array<double, 9> &axes = pattern.rotation;
        for (std::size_t column = 0; column < 3; ++column) {
            const Vec3 axis = by.appliedTo(Vec3{axes[column], axes[3 + column], axes[6 + column]});
            axes[column] = axis.x - zero.x;
            axes[3 + column] = axis.y - zero.y;
            axes[6 + column] = axis.z - zero.z;
        }
        pattern.origin = by.appliedTo(pattern.origin);
        return pattern;
    }
    template <class Other> std::optional<Body> operator()(const Other &) const
    {
        return std::nullopt; // records, sheets, views and fonts stand nowhere
    }
};

} // namespace

Transformation::Transformation(const double matrix[12])
{
    std::copy_n(matrix, m_rows.size(), m_rows.begin());
}

Transformation Transformation::translation(const Vec3 &by)
{
    const double rows[12] = {1, 0, 0, by.x, 0, 1, 0, by.y, 0, 0, 1, by.z};
    return Transformation(rows);
}

Transformation Transformation::rotation(const Vec3 &origin, const Vec3 &axis, double degrees)
{
    const double length = std::hypot(axis.x, axis.y, axis.z);
    const double x = axis.x / length, y = axis.y / length, z = axis.z / length;
    const auto [s, c] = sineCosine(degrees);
    const double t = 1.0 - c;
    const double rows[12] = {t * x * x + c,     t * x * y - s * z, t * x * z + s * y, 0,
                             t * x * y + s * z, t * y * y + c,     t * y * z - s * x, 0,
                             t * x * z - s * y, t * y * z + s * x, t * z * z + c,     0};
    Transformation made(rows);
    const Vec3 turned = made.appliedTo(origin);
    made.m_rows[3] = origin.x - turned.x;
    made.m_rows[7] = origin.y - turned.y;
    made.m_rows[11] = origin.z - turned.z;
    return made;
}

void Transformation::copyTo(double matrix[12]) const
{
    std::copy(m_rows.begin(), m_rows.end(), matrix);
}

bool Transformation::isFinite() const
{
    return std::all_of(m_rows.begin(), m_rows.end(), [](double at) { return std::isfinite(at); });
}

bool Transformation::isRotation() const
{
    const auto &m = m_rows;
    for (std::size_t i = 0; i < 12; i += 4) {
        for (std::size_t j = i; j < 12; j += 4) {
            const double dot = m[i] * m[j] + m[i + 1] * m[j + 1] + m[i + 2] * m[j + 2];
            if (!near(dot, i == j ? 1.0 : 0.0)) return false;
        }
    }
    const double volume = m[0] * (m[5] * m[10] - m[6] * m[9]) -
                          m[1] * (m[4] * m[10] - m[6] * m[8]) + m[2] * (m[4] * m[9] - m[5] * m[8]);
    return volume > 0.0;
}

bool Transformation::isRotationInPlane() const { return isRotation() && near(m_rows[10], 1.0); }

double Transformation::degreesInPlane() const { return std::atan2(m_rows[4], m_rows[0]) * RADEG; }

Vec3 Transformation::appliedTo(const Vec3 &at) const
{
    const auto &m = m_rows;
    return {m[0] * at.x + m[1] * at.y + m[2] * at.z + m[3],
            m[4] * at.x + m[5] * at.y + m[6] * at.z + m[7],
            m[8] * at.x + m[9] * at.y + m[10] * at.z + m[11]};
}

std::optional<Body> Transformation::appliedTo(const Body &body) const
{
    return visitBody(Apply{*this}, body);
}

} // namespace host
