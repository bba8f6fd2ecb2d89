#include "drawing/zone.h"

#include <algorithm>
#include <cmath>

std::string zoneLabel(int type, int index)
{
    constexpr int kLetters = 1;
    if (type != kLetters) return std::to_string(index + 1);
    int code = 'A' + index;
    if (code >= 'I') ++code; // I is too much like 1; no other letter is left out
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
    return static_cast<int>(std::clamp(std::trunc(distance / zone), -kMost, kMost));
}
