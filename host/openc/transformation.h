// Three rows of four: x' = m0 x + m1 y + m2 z + m3.
#pragma once

#include "model/object.h"

#include <array>
#include <optional>

namespace host {

class Transformation {
public:
    explicit Transformation(const double matrix[12]);
    static Transformation translation(const Vec3 &by);
    // About an axis that is not null; in degrees. Quarter turns are exact.
    static Transformation rotation(const Vec3 &origin, const Vec3 &axis, double degrees);

    void copyTo(double matrix[12]) const;
    bool isFinite() const;
    bool isRotation() const;        // of any axis, with any translation: no scale, no mirror
    bool isRotationInPlane() const; // of the z axis
    double degreesInPlane() const;

    Vec3 appliedTo(const Vec3 &point) const;
    // Nothing when a body of that kind cannot be transformed so: a circle does not become an
    // ellipse, a note stays in the plane of its sheet, a line keeps a length.
    std::optional<Body> appliedTo(const Body &body) const;

private:
    std::array<double, 12> m_rows;
};

} // namespace host
