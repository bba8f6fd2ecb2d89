// A file that is the old one or the whole new one.
#pragma once

#include <cstdio>
#include <string>

namespace app::fleet {

// Written under a name of its own beside the file that `path` leads to; finish() puts it in the place of what
// was there, with its owner and permissions; links stay. Without it nothing happens. What is no file (a
// pipe, a device) is written into as it is. Errors are Problems with the path.
class OutputFile {
public:
    explicit OutputFile(const std::string &path);
    ~OutputFile();
    OutputFile(const OutputFile &) = delete;
    OutputFile &operator=(const OutputFile &) = delete;

    std::FILE *stream() const { return m_stream; }
    void finish(); // on disk to stay

private:
    void openBeside();
    void keepOwner() const;
    void syncFolder() const;
    [[noreturn]] void fail(int number) const; // of the system

    std::string m_path;
    std::string m_target;    // where links lead to
    std::string m_temporary; // empty: there is none
    std::FILE *m_stream = nullptr;
};

} // namespace app::fleet
