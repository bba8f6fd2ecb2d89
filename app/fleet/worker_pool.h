// Processes that each do one thing after another: the library works on one drawing at a time, and what
// kills a process takes down its own drawing only.
#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

namespace app::fleet {

// Runs in a worker. What it raises comes back as a failure with the text; a text may be of any length.
using Handler = std::function<std::string(std::size_t item)>;

struct Reply {
    enum class Kind { done, failed, died };
    Kind kind;
    std::string text; // the result, or why there is none
};

class WorkerPool {
public:
    // `start` runs once in every new worker and makes its handler; raising fails each item that the
    // worker gets. Workers are replaced after `itemsPerWorker` items, so that nothing adds up.
    WorkerPool(std::size_t workers, std::function<Handler()> start, std::size_t itemsPerWorker);

    // Hands out the items in order, with a call of `given` before, and calls `take` for each in the
    // order in which they end. `stopped` is asked before an item is handed out; `wait` runs whenever
    // nothing came for a while.
    void run(const std::vector<std::size_t> &items,
             const std::function<void(std::size_t item)> &given,
             const std::function<void(std::size_t item, Reply reply)> &take,
             const std::function<bool()> &stopped, const std::function<void()> &wait);

private:
    class Worker;

    std::size_t m_workers;
    std::function<Handler()> m_start;
    std::size_t m_itemsPerWorker;
};

} // namespace app::fleet
