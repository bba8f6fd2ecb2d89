#include "app/fleet/worker_pool.h"

#include "app/library_output.h"
#include "app/problem.h"

#include "ug_exception.hxx"

#include <fmt/format.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <deque>
#include <memory>
#include <optional>
#include <string_view>
#include <thread>

namespace app::fleet {

namespace {

using Clock = std::chrono::steady_clock;

// A worker has its next item before it has answered the last, and never waits for one. Of items that take
// no time it has more, and what it answers meanwhile is taken at once: to wake up for each would cost more
// than the items do.
constexpr std::size_t kAhead = 2, kMostAhead = 64, kManyAhead = 8;
constexpr std::chrono::duration<double> kAheadTime = std::chrono::milliseconds(4);
constexpr auto kPause = std::chrono::milliseconds(1);
constexpr int kWaitMilliseconds = 100;

// What has come so far, at least something; 0 when nothing will come any more.
std::size_t readSome(int socket, void *to, std::size_t size)
{
    for (;;) {
        const ssize_t got = read(socket, to, size);
        if (got >= 0) return static_cast<std::size_t>(got);
        if (errno != EINTR) return 0;
    }
}

bool readAll(int socket, void *to, std::size_t size)
{
    for (char *at = static_cast<char *>(to); size > 0;) {
        const std::size_t got = readSome(socket, at, size);
        if (got == 0) return false;
        at += got;
        size -= got;
    }
    return true;
}

bool writeAll(int socket, const void *from, std::size_t size)
{
    for (const char *at = static_cast<const char *>(from); size > 0;) {
        const ssize_t put = send(socket, at, size, MSG_NOSIGNAL);
        if (put < 0 && errno == EINTR) continue;
        if (put <= 0) return false;
        at += put;
        size -= static_cast<std::size_t>(put);
    }
    return true;
}

struct Header {
    std::uint32_t kind;
    std::uint32_t length;
};

bool writeReply(int socket, const Reply &reply)
{
    const Header header{static_cast<std::uint32_t>(reply.kind),
                        static_cast<std::uint32_t>(reply.text.size())};
    std::string whole(reinterpret_cast<const char *>(&header), sizeof header);
    whole += reply.text;
    return writeAll(socket, whole.data(), whole.size());
}

// Replies out of whatever pieces they come in.
class Replies {
public:
    // False when the other end is closed.
    bool receive(int socket)
    {
        m_bytes.erase(0, m_taken);
        m_taken = 0;
        const std::size_t before = m_bytes.size();
        m_bytes.resize(before + kPiece);
        const std::size_t got = readSome(socket, m_bytes.data() + before, kPiece);
        m_bytes.resize(before + got);
        return got > 0;
    }
    // The next that is complete.
    std::optional<Reply> take()
    {
        Header header{};
        const std::string_view left = std::string_view(m_bytes).substr(m_taken);
        if (left.size() < sizeof header) return {};
        std::memcpy(&header, left.data(), sizeof header);
        if (left.size() - sizeof header < header.length) return {};
        m_taken += sizeof header + header.length;
        return Reply{static_cast<Reply::Kind>(header.kind),
                     std::string(left.substr(sizeof header, header.length))};
    }

private:
    static constexpr std::size_t kPiece = 64 << 10;
    std::string m_bytes;
    std::size_t m_taken = 0;
};

// The items given to a worker, read as many at a time as there are.
class Items {
public:
    explicit Items(int socket) : m_socket(socket) {}

    bool next(std::uint64_t &item)
    {
        if (m_at == m_size && !receive()) return false;
        item = m_items[m_at++];
        return true;
    }

private:
    bool receive()
    {
        const std::size_t got = readSome(m_socket, m_items, sizeof m_items);
        const std::size_t cut = (sizeof *m_items - got % sizeof *m_items) % sizeof *m_items;
        m_at = 0;
        m_size = (got + cut) / sizeof *m_items;
        return got > 0 && readAll(m_socket, reinterpret_cast<char *>(m_items) + got, cut);
    }

    int m_socket;
    std::uint64_t m_items[kMostAhead];
    std::size_t m_at = 0, m_size = 0;
};

template <class Body> Reply attempt(const Body &body)
{
    try {
        return {Reply::Kind::done, body()};
    } catch (const UgException &failure) {
        return {Reply::Kind::failed,
                fmt::format("{} ({})", failure.askErrorText(), failure.askErrorCode())};
    } catch (const std::exception &failure) {
        return {Reply::Kind::failed, failure.what()};
    }
}

// The life of a worker; it ends when the other end of the socket does.
[[noreturn]] void serve(int socket, const std::function<Handler()> &start)
{
    std::signal(SIGINT, SIG_IGN); // the first process decides what an interrupt ends
    // What the library prints on its own is no result: those go back through the socket.
    silenceLibrary();
    Handler handler;
    const Reply begun = attempt([&] {
        handler = start();
        return std::string();
    });
    Items items(socket);
    for (std::uint64_t item = 0; items.next(item);) {
        const Reply reply =
            handler ? attempt([&] { return handler(static_cast<std::size_t>(item)); }) : begun;
        if (!writeReply(socket, reply)) break;
    }
    handler = nullptr;
    std::fflush(stderr);
    _exit(0); // nothing of the first process is to be undone twice
}

std::string causeOfDeath(pid_t worker)
{
    int status = 0;
    while (waitpid(worker, &status, 0) < 0 && errno == EINTR) {
    }
    if (WIFSIGNALED(status))
        return fmt::format("the process that worked on it was ended by signal {} ({})",
                           WTERMSIG(status), strsignal(WTERMSIG(status)));
    return fmt::format("the process that worked on it ended with status {}", WEXITSTATUS(status));
}

} // namespace

class WorkerPool::Worker {
public:
    Worker(const std::function<Handler()> &start, const std::vector<int> &others)
    {
        int sockets[2];
        if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, sockets) != 0)
            throw Problem(
                fmt::format("no worker process can be started: {}", std::strerror(errno)));
        std::fflush(nullptr); // else both processes would print what is waiting
        m_process = fork();
        if (m_process < 0) {
            close(sockets[0]), close(sockets[1]);
            throw Problem(
                fmt::format("no worker process can be started: {}", std::strerror(errno)));
        }
        if (m_process == 0) {
            close(sockets[0]);
            for (const int other : others) close(other); // each ends when its own is closed
            serve(sockets[1], start);
        }
        close(sockets[1]);
        m_socket = sockets[0];
    }
    ~Worker()
    {
        close(m_socket);
        if (m_process > 0) causeOfDeath(m_process);
    }
    Worker(const Worker &) = delete;
    Worker &operator=(const Worker &) = delete;

    int socket() const { return m_socket; }
    std::size_t given() const { return m_given; }
    const std::deque<std::size_t> &waiting() const { return m_waiting; }

    // It gets them with send().
    void give(std::size_t item)
    {
        m_sending.push_back(item);
        m_waiting.push_back(item);
        ++m_given;
    }
    void send()
    {
        if (m_sending.empty()) return;
        // Its death shows when the reply is read.
        writeAll(m_socket, m_sending.data(), m_sending.size() * sizeof m_sending.front());
        m_sending.clear();
    }

    // How many items it should have, by the time that the last ones took.
    std::size_t ahead() const { return m_ahead; }

    // The replies that have come, each to the item given first; `died` when there will be no more.
    template <class Take> void take(const Take &takeReply)
    {
        const std::size_t before = m_waiting.size();
        const bool alive = m_replies.receive(m_socket);
        while (auto reply = m_replies.take()) takeReply(nextAnswered(), std::move(*reply));
        const Clock::time_point now = Clock::now();
        if (const std::size_t answered = before - m_waiting.size()) {
            const std::chrono::duration<double> took = now - m_last;
            const double quick = kAheadTime / (took / static_cast<double>(answered));
            m_ahead =
                static_cast<std::size_t>(std::clamp(quick, double{kAhead}, double{kMostAhead}));
            m_last = now;
        }
        if (alive) return;
        const std::string cause = causeOfDeath(m_process);
        m_process = 0;
        takeReply(nextAnswered(), {Reply::Kind::died, cause});
    }

private:
    std::size_t nextAnswered()
    {
        const std::size_t item = m_waiting.front();
        m_waiting.pop_front();
        return item;
    }

    pid_t m_process = 0;
    int m_socket = -1;
    std::size_t m_given = 0;
    std::size_t m_ahead = kAhead;
    Clock::time_point m_last = Clock::now(); // when it answered last
    std::deque<std::size_t> m_waiting;
    std::vector<std::uint64_t> m_sending;
    Replies m_replies;
};

WorkerPool::WorkerPool(std::size_t workers, std::function<Handler()> start,
                       std::size_t itemsPerWorker)
    : m_workers(std::max<std::size_t>(workers, 1)), m_start(std::move(start)),
      m_itemsPerWorker(itemsPerWorker)
{}

void WorkerPool::run(const std::vector<std::size_t> &items,
                     const std::function<void(std::size_t)> &given,
                     const std::function<void(std::size_t, Reply)> &take,
                     const std::function<bool()> &stopped, const std::function<void()> &wait)
{
    std::deque<std::size_t> open(items.begin(), items.end());
    std::vector<std::unique_ptr<Worker>> workers(std::min(m_workers, items.size()));

    const auto fill = [&](std::unique_ptr<Worker> &worker) {
        while (!open.empty() && !stopped()) {
            if (worker && worker->given() >= m_itemsPerWorker) {
                if (!worker->waiting().empty()) return;
                worker.reset();
            }
            if (!worker) {
                std::vector<int> others;
                for (const auto &one : workers)
                    if (one) others.push_back(one->socket());
                worker = std::make_unique<Worker>(m_start, others);
            }
            if (worker->waiting().size() >= worker->ahead()) return;
            // The last items are shared out, not stacked up behind one of the workers.
            if (worker->waiting().size() > open.size() / workers.size()) return;
            given(open.front());
            worker->give(open.front());
            open.pop_front();
        }
    };

    for (;;) {
        std::vector<pollfd> sockets;
        std::vector<std::size_t> owners;
        bool busy = true; // all of them, for a while
        for (std::size_t i = 0; i < workers.size(); ++i) {
            fill(workers[i]);
            if (!workers[i] || workers[i]->waiting().empty()) continue;
            workers[i]->send();
            busy = busy && workers[i]->waiting().size() >= kManyAhead;
            sockets.push_back({workers[i]->socket(), POLLIN, 0});
            owners.push_back(i);
        }
        if (sockets.empty()) return;
        if (busy) std::this_thread::sleep_for(kPause);
        if (poll(sockets.data(), sockets.size(), kWaitMilliseconds) <= 0) {
            wait();
            continue;
        }
        for (std::size_t i = 0; i < sockets.size(); ++i) {
            if (sockets[i].revents == 0) continue;
            std::unique_ptr<Worker> &worker = workers[owners[i]];
            bool died = false;
            worker->take([&](std::size_t item, Reply reply) {
                died = reply.kind == Reply::Kind::died;
                take(item, std::move(reply));
            });
            if (!died) continue;
            // What it had not begun goes to others.
            open.insert(open.begin(), worker->waiting().begin(), worker->waiting().end());
            worker.reset();
        }
    }
}

} // namespace app::fleet
