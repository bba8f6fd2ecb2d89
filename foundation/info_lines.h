// The text that an object shows in the information window.
#pragma once

#include <sstream>
#include <string>
#include <string_view>

namespace QelFmt {

// Lines are collected and written in one piece:
//
//     InfoLines info;
//     info.line("Frame Layer", GetFrameLayer());   // "Frame Layer             1\n"
//     info.text("Field Definitions:");
//     info.flush();
class InfoLines {
public:
    // Label padded to 24 characters, then the value; numbers as a stream writes them by default.
    template <class T> InfoLines &line(std::string_view label, const T &value)
    {
        m_text << padded(label) << value << '\n';
        return *this;
    }
    InfoLines &text(std::string_view whole_line)
    {
        m_text << whole_line << '\n';
        return *this;
    }

    std::string str() const { return m_text.str(); }
    void flush(); // opens the window, writes what was collected, and starts anew

private:
    static std::string padded(std::string_view label);
    std::ostringstream m_text;
};

} // namespace QelFmt
