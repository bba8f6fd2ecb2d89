#include "app/fleet/progress.h"

#include <fmt/chrono.h>
#include <fmt/format.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>

namespace app::fleet {

namespace {

constexpr auto kBarEvery = std::chrono::milliseconds(100);
constexpr auto kLineEvery = std::chrono::seconds(10);
constexpr std::size_t kBarLength = 24;

std::size_t terminalWidth()
{
    winsize size{};
    return ioctl(STDERR_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0 ? size.ws_col : 80;
}

// The end of a path says more than its beginning. Bytes count as columns: long names come out shorter.
std::string shortened(const std::string &path, std::size_t columns)
{
    if (path.size() <= columns) return path;
    if (columns < 8) return {};
    std::size_t from = path.size() - (columns - 3);
    while (from < path.size() && (static_cast<unsigned char>(path[from]) & 0xC0) == 0x80) ++from;
    return "..." + path.substr(from);
}

} // namespace

Progress::Progress(const Options &options, std::size_t total, std::size_t alreadyDone)
    : m_enabled(!options.quiet && total > 1), m_terminal(isatty(STDERR_FILENO) != 0),
      m_total(total), m_before(alreadyDone), m_done(alreadyDone),
      m_next(m_start + (m_terminal ? Clock::duration(kBarEvery) : Clock::duration(kLineEvery)))
{}

Progress::~Progress() { clear(); }

void Progress::ended(const std::string &item)
{
    ++m_done;
    m_last = item;
    refresh();
}

void Progress::refresh()
{
    if (!m_enabled || Clock::now() < m_next) return;
    show(m_last);
    m_next = Clock::now() + (m_terminal ? Clock::duration(kBarEvery) : Clock::duration(kLineEvery));
}

void Progress::clear()
{
    if (!m_shown || !m_terminal) return;
    fmt::print(stderr, "\r\033[K");
    m_shown = false;
}

std::string Progress::remaining() const
{
    const double seconds = std::chrono::duration<double>(Clock::now() - m_start).count();
    const double rate = static_cast<double>(m_done - m_before) / std::max(seconds, 1e-3);
    if (rate <= 0) return "";
    const auto left = static_cast<long>(static_cast<double>(m_total - m_done) / rate + 0.5);
    return fmt::format("{:.{}f}/s, {}:{:02} left", rate, rate < 10 ? 1 : 0, left / 60, left % 60);
}

void Progress::show(const std::string &item)
{
    const std::string count = fmt::format("{} of {}", m_done, m_total);
    if (!m_terminal) {
        fmt::print(stderr, "{}, {}, {}\n", count, remaining(), item);
        return;
    }
    const std::size_t full = kBarLength * m_done / m_total;
    const std::string head = fmt::format("[{}{}] {}  {}  ", std::string(full, '#'),
                                         std::string(kBarLength - full, '.'), count, remaining());
    const std::size_t width = terminalWidth();
    const std::string tail =
        head.size() + 1 < width ? shortened(item, width - head.size() - 1) : std::string();
    fmt::print(stderr, "\r\033[K{}{}", head.substr(0, width - 1), tail);
    std::fflush(stderr);
    m_shown = true;
}

} // namespace app::fleet
