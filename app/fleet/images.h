// Drawings as they were before a command changed them, inside the command's journal: what undo puts back.
#pragma once

#include "app/fleet/statement.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

namespace app::fleet {

// Tells one content of a file from any other; not made to withstand forgery.
using ContentSum = std::string;
ContentSum sumOf(const std::string &bytes);
std::string readFile(const std::string &path); // a Problem when it cannot be read

struct Image {
    std::string path; // absolute
    std::string before;
    ContentSum beforeSum;
    ContentSum afterSum; // empty: the change was not completed, or its end was not recorded
};

// One a process: workers keep images in the same journal, one after the other.
class Images {
public:
    // For the update whose journal it is: images can be kept in it from then on.
    static std::unique_ptr<Images> toKeep(const std::string &journal);
    // For whoever puts them back. A Problem, and nothing is changed, unless an update has kept images there.
    static std::unique_ptr<Images> toPutBack(const std::string &journal);

    // What the drawing holds now, durable when this returns, before it is changed.
    void keep(const std::string &path, const std::string &bytes);
    void changed(const std::string &path, const ContentSum &after);
    // Whether the drawing, which holds `now`, was changed by a run that was killed before its result was
    // kept; recorded then.
    bool wasChanged(const std::string &path, const ContentSum &now);

    void each(const std::function<void(const Image &)> &take);
    // Recorded: it is undone once, and the command has it before it again when it is resumed.
    void putBack(const std::string &path);

private:
    explicit Images(const std::string &journal) : m_connection(journal, Connection::Access::change)
    {
        m_connection.run("PRAGMA synchronous=FULL");
    }

    Connection m_connection;
};

std::string absolutePath(const std::string &path);

} // namespace app::fleet
