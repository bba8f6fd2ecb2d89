#pragma once

#include <cstdlib>

// The share of a long test to run, 0 to 1.
inline double soakShare()
{
    const char *share = std::getenv("QELFMT_SOAK_SHARE");
    return share ? std::atof(share) : 0.05;
}
