// The standard output is the command's own: what the library prints goes to the standard error.
#pragma once

#include <cstdio>
#include <functional>

namespace app {

// The standard output as the command was given it.
std::FILE *results();

// From here on what the library and the host print goes to the standard error, or nowhere when the
// command is to be quiet. Asked for again, nothing changes.
void divertLibraryOutput(bool quiet);

// The same for a process whose results go another way: it prints nothing of its own.
void silenceLibrary();

// Runs what reads the settings, and passes on each line that it printed to the standard error, unless
// this process has done so before: settings are read more than once, and their mistakes told each time.
void tellingOnce(const std::function<void()> &start);

} // namespace app
