// One run at a time works with a journal, and one that goes on with another's waits until the last of its
// processes is gone: two of them in one drawing would each report what the other one has done.
#pragma once

#include <chrono>
#include <string>

namespace app::fleet {

// Held by this process and by those it forks, until all of them have ended. Made before the journal is
// opened and kept until it is closed: closing any descriptor of the file drops SQLite's own locks.
class JournalLock {
public:
    JournalLock() = default;
    ~JournalLock();
    JournalLock(const JournalLock &) = delete;
    JournalLock &operator=(const JournalLock &) = delete;

    // False when somebody else still has it at the end of `patience`. The file is made when there is
    // none; where it cannot be, SQLite will say why.
    bool take(const std::string &path, std::chrono::milliseconds patience);

private:
    bool tryOnce(const std::string &path);

    int m_file = -1;
};

} // namespace app::fleet
