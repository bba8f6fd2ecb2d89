// Points as the C interface passes them.
#pragma once

#include "model/object.h"

namespace host {

inline Vec3 toVec3(const double at[3]) { return {at[0], at[1], at[2]}; }

inline void copyTo(double at[3], const Vec3 &from)
{
    at[0] = from.x;
    at[1] = from.y;
    at[2] = from.z;
}

} // namespace host
