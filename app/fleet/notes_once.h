// Notes that many drawings give rise to: each is told once.
#pragma once

#include "app/output.h"

#include <set>
#include <string>

namespace app::fleet {

class NotesOnce {
public:
    explicit NotesOnce(const Options &options) : m_options(options) {}

    void print(const Json &notes) // a list of texts
    {
        for (const Json &note : notes)
            if (m_told.insert(note.get<std::string>()).second)
                printNote(m_options, note.get<std::string>());
    }

private:
    const Options &m_options;
    std::set<std::string> m_told;
};

} // namespace app::fleet
