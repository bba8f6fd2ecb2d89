#include "app/library_output.h"

#include <fcntl.h>
#include <unistd.h>

#include <iostream>
#include <set>
#include <sstream>
#include <string>

namespace app {

namespace {

std::FILE *g_results = nullptr;
bool g_silent = false;

void flush()
{
    std::cout.flush();
    std::fflush(stdout);
}

void sendTo(int file)
{
    if (file < 0) return;
    dup2(file, STDOUT_FILENO);
    close(file);
}

// The standard output goes to a file of no name while this stands.
class Captured {
public:
    Captured() : m_file(std::tmpfile())
    {
        if (!m_file) return; // a full disk: what is printed goes where it would have gone
        flush();
        m_before = dup(STDOUT_FILENO);
        dup2(fileno(m_file), STDOUT_FILENO);
    }
    ~Captured()
    {
        if (!m_file) return;
        flush();
        dup2(m_before, STDOUT_FILENO);
        close(m_before);
        passOn();
        std::fclose(m_file);
    }
    Captured(const Captured &) = delete;
    Captured &operator=(const Captured &) = delete;

private:
    void passOn() const
    {
        std::string text;
        std::rewind(m_file);
        for (int c = std::getc(m_file); c != EOF; c = std::getc(m_file))
            text += static_cast<char>(c);
        std::istringstream lines(text);
        static std::set<std::string> told; // also by what started this process
        for (std::string line; std::getline(lines, line);)
            if (told.insert(line).second && !g_silent) std::fprintf(stderr, "%s\n", line.c_str());
    }

    std::FILE *m_file;
    int m_before = -1;
};

} // namespace

std::FILE *results() { return g_results ? g_results : stdout; }

void divertLibraryOutput(bool quiet)
{
    if (g_results) return;
    flush();
    if (const int own = dup(STDOUT_FILENO); own >= 0) g_results = fdopen(own, "w");
    if (g_results) sendTo(quiet ? open("/dev/null", O_WRONLY | O_CLOEXEC) : dup(STDERR_FILENO));
}

void silenceLibrary()
{
    g_silent = true;
    divertLibraryOutput(true);
    flush();
    sendTo(open("/dev/null", O_WRONLY | O_CLOEXEC)); // also when it was diverted before
}

void tellingOnce(const std::function<void()> &start)
{
    const Captured captured;
    start();
}

} // namespace app
