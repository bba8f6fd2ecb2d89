// From an object's own coordinates to millimetres on the sheet: inches, and the placing of patterns.
#pragma once

#include "display/display_list.h"
#include "model/object.h"

namespace host::display {

class Frame {
public:
    explicit Frame(double millimetresPerUnit)
        : m_length(millimetresPerUnit), m_xx(m_length), m_yy(m_length)
    {}
    // Of what a pattern shows, on a sheet with this frame.
    Frame placed(const Pattern &pattern) const;

    Place operator()(const Vec3 &point) const
    {
        return {m_x + m_xx * point.x + m_xy * point.y, m_y + m_yx * point.x + m_yy * point.y};
    }
    double length(double own) const { return own * m_length; }
    // Degrees by which a direction turns.
    double turn() const;
    bool mirrors() const { return m_xx * m_yy < m_xy * m_yx; }

private:
    double m_length;
    double m_xx;
    double m_yy;
    double m_xy = 0.0;
    double m_yx = 0.0;
    double m_x = 0.0;
    double m_y = 0.0;
};

} // namespace host::display
