// How far a long command is, on the standard error: a bar on a terminal, now and then a line elsewhere.
#pragma once

#include "app/options.h"

#include <chrono>
#include <cstddef>
#include <string>

namespace app::fleet {

class Progress {
public:
    // Nothing with --quiet, nor when there is a single item.
    Progress(const Options &options, std::size_t total, std::size_t alreadyDone);
    ~Progress();
    Progress(const Progress &) = delete;
    Progress &operator=(const Progress &) = delete;

    void ended(const std::string &item);
    void refresh(); // time passed without an end
    void clear();   // before something else is printed

private:
    using Clock = std::chrono::steady_clock;
    void show(const std::string &item);
    std::string remaining() const;

    bool m_enabled;
    bool m_terminal;
    bool m_shown = false;
    std::size_t m_total;
    std::size_t m_before;
    std::size_t m_done;
    std::string m_last;
    Clock::time_point m_start = Clock::now();
    Clock::time_point m_next;
};

} // namespace app::fleet
