#pragma once

#include <ctime>

// Of the processor: what else the machine does counts for little, and waiting for the disk for nothing.
template <class Body> double processorSecondsOf(Body &&body)
{
    const std::clock_t start = std::clock();
    body();
    return static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
}
