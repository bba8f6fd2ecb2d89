#include "drawing/zone.h"

#include <algorithm>
#include <cmath>
#include <stdexcept>

std::string zoneLabel(int type, int index)
{
    constexpr int kLetters = 1;
    if (type != kLetters) return std::to_string(index + 1);
    int code = 'A' + index;
    if (code >= 'I') ++code; // I is too much like 1; no other letter is left out
    if (code < '!' || code > '~') return std::to_string(index + 1); // no character has this code
    return std::string(1, static_cast<char>(code));
}

double zoneLength(double length, int count, double sheet)
{
    if (length != 0.0) return length;
    return count != 0 ? sheet / count : 0.0;
}

int zoneIndex(double distance, double zone)
{
    constexpr double kMost = 1e9; // points far off the sheet stay within an int
    const double zones = std::trunc(distance / zone);
    if (!std::isfinite(distance) || std::isnan(zones))
        throw std::runtime_error("A point without finite coordinates lies in no zone.");
    return static_cast<int>(std::clamp(zones, -kMost, kMost));
}
