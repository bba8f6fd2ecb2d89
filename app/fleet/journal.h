// What a command over many items has done so far: kept on disk while it runs, so that an interrupted one
// goes on where it stopped, and its results take no memory.
#pragma once

#include "app/fleet/statement.h"

#include <chrono>
#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace app::fleet {

enum class ItemState { open = 0, begun = 1, done = 2, failed = 3 };

struct ItemRow {
    std::string key; // the path of a drawing, or of an output
    ItemState state = ItemState::open;
    std::string text; // the result, or why there is none
};

// Items are numbered from 0 in the order of the list.
class Journal {
public:
    static constexpr std::int64_t kApplicationId = 0x716c6f67; // "qlog", in the head of the file

    enum class Start { fresh, resume };
    // What is done can be kept one by one, or a few at a time where doing an item twice does no harm.
    enum class Keeping { each, inBatches };

    // `command` is what must be the same for a run to be continued. A fresh journal takes the place of
    // what stood at `path`; resuming one of another command is a Problem. An empty path: nobody can
    // resume.
    Journal(const std::string &path, const std::string &command, Start start, Keeping keeping,
            const std::vector<std::string> &keys);
    ~Journal();

    // Failed items are tried again.
    std::vector<std::size_t> remaining();
    std::size_t resumed() const { return m_resumed; } // done in an earlier run
    // What was noted of an item that an earlier run, or this one, began and did not end; else empty.
    std::string noteOf(std::size_t item);

    void begin(std::size_t item, const std::string &note); // nothing when kept in batches
    // Who was killed in the middle has not ended it: its note stays.
    enum class Ended { yes, no };
    void end(std::size_t item, ItemState state, const std::string &text, Ended ended = Ended::yes);
    void each(const std::function<void(const ItemRow &)> &take);
    void discard(); // the file is removed next: it need not be made whole
    const std::string &path() const { return m_connection.path(); }

private:
    void takeOver(const std::string &command);
    void list(const std::vector<std::string> &keys);
    void openBatch();
    void closeBatch();

    Connection m_connection;
    Keeping m_keeping;
    bool m_inBatch = false;
    std::chrono::steady_clock::time_point m_batchEnd;
    std::unique_ptr<Statement> m_begin;
    std::unique_ptr<Statement> m_end;
    std::size_t m_resumed = 0;
};

// Where a command's journal is when none is named: under the user's state folder ("XDG_STATE_HOME"), one
// a folder and command. Empty when no such folder can be made.
std::string usualJournal(const std::string &command);
void removeJournal(const std::string &path);

} // namespace app::fleet
