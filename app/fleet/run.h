// A command over many items: shared out to workers, resumable, with what became of each in the end.
#pragma once

#include "app/fleet/journal.h"
#include "app/fleet/journal_lock.h"
#include "app/fleet/worker_pool.h"
#include "app/options.h"

#include <CLI/CLI.hpp>

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace app::fleet {

struct RunArguments {
    int jobs = 0; // 0: one a processor
    std::string journal;
    bool resume = false;
};

void addRunOptions(CLI::App *verb, RunArguments &arguments);

struct RunEnd {
    std::size_t failed = 0;
    bool interrupted = false;

    // 3 when an item failed, 130 after an interrupt, else 0.
    int status() const;
};

class Run {
public:
    // `keys` name the items, each once. `command` is the verb with all that its results depend on; it
    // must be the same for a run to be resumed. `keeping` in batches is for what only reads or may be
    // done twice: a process that is killed forgets the last of them.
    Run(const Options &options, const RunArguments &arguments, const std::string &command,
        std::vector<std::string> keys, Journal::Keeping keeping = Journal::Keeping::each);
    // A journal that was not asked for goes when there is nothing left to resume.
    ~Run();
    Run(const Run &) = delete;
    Run &operator=(const Run &) = delete;

    const std::vector<std::string> &keys() const { return m_keys; }
    std::string journalPath() const; // empty: there is none
    // What an earlier run, which was killed while it was at the item, had noted of it; else empty.
    std::string noteOf(std::size_t item);

    // Does what is left to do and says on the standard error what failed. An interrupt (Ctrl-C) ends it
    // after the items in work.
    // `note` is asked before an item is given to a worker, and its answer kept until the item is ended.
    RunEnd execute(std::function<Handler()> startWorker,
                   const std::function<std::string(std::size_t)> &note = {});
    // In the order of the keys, also those of the runs before that this one resumed.
    void each(const std::function<void(const ItemRow &)> &take);

private:
    void openJournal(const std::string &command, Journal::Keeping keeping);
    void makeJournal(const std::string &command, Journal::Keeping keeping);

    const Options &m_options;
    RunArguments m_arguments;
    std::vector<std::string> m_keys;
    std::string m_path;
    JournalLock m_lock;
    std::unique_ptr<Journal> m_journal; // none without items
    bool m_interrupted = false;
};

} // namespace app::fleet
