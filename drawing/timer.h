// The platform's timer, stopped on every way out.
#pragma once

#include "uf.h"
#include "ug_exception.hxx"

class Timer {
public:
    Timer() { UgException::throwOnFailure(UF_begin_timer(&m_timer)); }
    ~Timer()
    {
        UF_timer_values_t unused;
        if (m_running) UF_end_timer(m_timer, &unused); // left through an exception
    }
    Timer(Timer &&) = delete;

    double end() // elapsed real time in seconds
    {
        m_running = false;
        UF_timer_values_t values{};
        UgException::throwOnFailure(UF_end_timer(m_timer, &values));
        return values.real_time;
    }

private:
    UF_timer_t m_timer = 0;
    bool m_running = true;
};
