#include "display/frame.h"

#include <cmath>
#include <numbers>

namespace host::display {

Frame Frame::placed(const Pattern &pattern) const
{
    const auto &r = pattern.rotation;
    Frame inner = *this;
    const Place origin = (*this)(pattern.origin);
    inner.m_x = origin.x;
    inner.m_y = origin.y;
    inner.m_xx = pattern.scale * (m_xx * r[0] + m_xy * r[3]);
    inner.m_xy = pattern.scale * (m_xx * r[1] + m_xy * r[4]);
    inner.m_yx = pattern.scale * (m_yx * r[0] + m_yy * r[3]);
    inner.m_yy = pattern.scale * (m_yx * r[1] + m_yy * r[4]);
    inner.m_length = m_length * pattern.scale;
    return inner;
}

double Frame::turn() const
{
    if (m_yx == 0.0 && m_xx > 0.0) return 0.0; // exact for all that is not turned
    return std::atan2(m_yx, m_xx) * 180.0 / std::numbers::pi;
}

} // namespace host::display
