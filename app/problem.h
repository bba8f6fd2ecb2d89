// What ends a command: the message names the thing and the remedy, the kind gives the exit status.
#pragma once

#include <stdexcept>
#include <string>

namespace app {

enum ExitStatus { kFine = 0, kFindings = 1, kUsage = 2, kInput = 3 };

class Problem : public std::runtime_error {
public:
    explicit Problem(const std::string &message, ExitStatus status = kInput)
        : std::runtime_error(message), m_status(status)
    {}
    // A part call failed with the code: what the host knows of the reason, with the file's name.
    static Problem ofPart(const std::string &path, int code);

    ExitStatus status() const { return m_status; }

private:
    ExitStatus m_status;
};

} // namespace app
