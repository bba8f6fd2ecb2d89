// A file that is the old one or the whole new one.
#pragma once

#include <cstdio>
#include <string>

namespace app::fleet {

// Written under a name of its own beside `path`; finish() puts it in the place of what was there.
// Without it nothing happens. Errors are Problems with the path.
class OutputFile {
public:
    explicit OutputFile(const std::string &path);
    ~OutputFile();
    OutputFile(const OutputFile &) = delete;
    OutputFile &operator=(const OutputFile &) = delete;

    std::FILE *stream() const { return m_stream; }
    void finish(); // on disk to stay

private:
    [[noreturn]] void fail() const;

    std::string m_path;
    std::string m_temporary;
    std::FILE *m_stream = nullptr;
};

} // namespace app::fleet
