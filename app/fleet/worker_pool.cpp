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
#include <csignal>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <deque>
#include <memory>

namespace app::fleet {

namespace {

// A worker has its next item before it has answered the last, and never waits for one.
constexpr std::size_t kAhead = 2;
constexpr int kWaitMilliseconds = 100;

bool readAll(int socket, void *to, std::size_t size)
{
    for (char *at = static_cast<char *>(to); size > 0;) {
        const ssize_t got = read(socket, at, size);
        if (got < 0 && errno == EINTR) continue;
        if (got <= 0) return false;
        at += got;
        size -= static_cast<std::size_t>(got);
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

bool readReply(int socket, Reply &reply)
{
    Header header{};
    if (!readAll(socket, &header, sizeof header)) return false;
    reply.kind = static_cast<Reply::Kind>(header.kind);
    reply.text.resize(header.length);
    return readAll(socket, reply.text.data(), reply.text.size());
}

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
    for (std::uint64_t item = 0; readAll(socket, &item, sizeof item);) {
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

    void give(std::size_t item)
    {
        const std::uint64_t number = item;
        writeAll(m_socket, &number, sizeof number); // its death shows when the reply is read
        m_waiting.push_back(item);
        ++m_given;
    }

    // The reply to the item given first; `died` when there will be none.
    std::pair<std::size_t, Reply> take()
    {
        const std::size_t item = m_waiting.front();
        m_waiting.pop_front();
        Reply reply;
        if (readReply(m_socket, reply)) return {item, std::move(reply)};
        const std::string cause = causeOfDeath(m_process);
        m_process = 0;
        return {item, {Reply::Kind::died, cause}};
    }

private:
    pid_t m_process = 0;
    int m_socket = -1;
    std::size_t m_given = 0;
    std::deque<std::size_t> m_waiting;
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
            if (worker->waiting().size() >= kAhead) return;
            // The last items are shared out, not stacked up behind one of the workers.
            if (!worker->waiting().empty() && open.size() < workers.size()) return;
            given(open.front());
            worker->give(open.front());
            open.pop_front();
        }
    };

    for (;;) {
        std::vector<pollfd> sockets;
        std::vector<std::size_t> owners;
        for (std::size_t i = 0; i < workers.size(); ++i) {
            fill(workers[i]);
            if (!workers[i] || workers[i]->waiting().empty()) continue;
            sockets.push_back({workers[i]->socket(), POLLIN, 0});
            owners.push_back(i);
        }
        if (sockets.empty()) return;
        if (poll(sockets.data(), sockets.size(), kWaitMilliseconds) <= 0) {
            wait();
            continue;
        }
        for (std::size_t i = 0; i < sockets.size(); ++i) {
            if (sockets[i].revents == 0) continue;
            std::unique_ptr<Worker> &worker = workers[owners[i]];
            auto [item, reply] = worker->take();
            if (reply.kind == Reply::Kind::died) { // what it had not begun goes to others
                open.insert(open.begin(), worker->waiting().begin(), worker->waiting().end());
                worker.reset();
            }
            take(item, std::move(reply));
        }
    }
}

} // namespace app::fleet
