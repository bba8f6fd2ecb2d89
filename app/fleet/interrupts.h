// Ctrl-C while many drawings are worked on.
#pragma once

#include <csignal>

namespace app::fleet {

// As shells tell the end by an interrupt.
inline constexpr int kInterruptedStatus = 130;

// While it stands the first interrupt is only counted, so that a command ends in order; the second one ends
// the process at once.
class InterruptGuard {
public:
    InterruptGuard();
    ~InterruptGuard();
    InterruptGuard(const InterruptGuard &) = delete;
    InterruptGuard &operator=(const InterruptGuard &) = delete;

    static bool interrupted();

private:
    struct sigaction m_before {};
};

} // namespace app::fleet
