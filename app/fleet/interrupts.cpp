#include "app/fleet/interrupts.h"

namespace app::fleet {

namespace {

volatile std::sig_atomic_t interrupts = 0;

} // namespace

InterruptGuard::InterruptGuard()
{
    interrupts = 0;
    struct sigaction action {};
    action.sa_handler = [](int) {
        interrupts = interrupts + 1;
        if (interrupts > 1) std::signal(SIGINT, SIG_DFL);
    };
    sigaction(SIGINT, &action, &m_before);
}

InterruptGuard::~InterruptGuard() { sigaction(SIGINT, &m_before, nullptr); }

bool InterruptGuard::interrupted() { return interrupts > 0; }

} // namespace app::fleet
