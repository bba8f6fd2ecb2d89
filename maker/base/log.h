// Named loggers. A logger that is off costs one test: nothing is formatted for it.
#pragma once

#include "uf_defs.h"

#include <functional>
#include <initializer_list>
#include <optional>
#include <ostream>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

namespace Base::log {

// Off at first, unless the environment variable QELFMT_LOG lists the name, its part after the last
// dot, or "all" (separated by commas). What is logged then goes to the standard error, or to the
// file that QELFMT_LOG_FILE names.
class DllExport Logger {
public:
    explicit Logger(const std::string &name);
    ~Logger();
    Logger(const Logger &) = delete;
    Logger &operator=(const Logger &) = delete;

    const std::string &name() const { return m_name; }
    bool isOn() const { return m_on; }
    void setOn(bool on) { m_on = on; }

private:
    std::string m_name;
    bool m_on;
};

DllExport std::vector<Logger *> loggers(); // all that exist, in order of construction

// One message. It is a record of its own when the stream is closed, by close() or the destructor.
class DllExport LoggerStream {
public:
    explicit LoggerStream(Logger &logger)
    {
        if (!logger.isOn()) return;
        m_logger = &logger;
        m_text.emplace();
    }
    ~LoggerStream();
    LoggerStream(const LoggerStream &) = delete;
    LoggerStream &operator=(const LoggerStream &) = delete;

    // Ask before writing: an inactive stream drops what it is given, yet its arguments have been
    // evaluated by then.
    bool isActive() const { return m_logger != nullptr; }
    void close(); // inactive afterwards

    template <class T> LoggerStream &operator<<(const T &part)
    {
        if (isActive()) *m_text << part;
        return *this;
    }
    LoggerStream &operator<<(std::ostream &(*manipulator)(std::ostream &))
    {
        if (isActive()) *m_text << manipulator;
        return *this;
    }

private:
    Logger *m_logger = nullptr;
    std::optional<std::ostringstream>
        m_text; // a stream is dear to make: none for a logger that is off
};

struct Record {
    std::string logger;
    std::string text; // without its line end; line breaks inside stay

    bool operator==(const Record &) const = default;
};

// Where records go. Without a sink they are kept in memory until cleared.
using Sink = std::function<void(const Record &)>;
DllExport void setSink(Sink sink); // an empty one: memory
DllExport const std::vector<Record> &records();
DllExport void clearRecords();

// Switches the loggers on and keeps the records in memory, starting from none; at the end of its
// life switches and sink are as they were.
class DllExport Recording {
public:
    explicit Recording(std::initializer_list<Logger *> loggers);
    ~Recording();
    Recording(const Recording &) = delete;
    Recording &operator=(const Recording &) = delete;

    const std::vector<Record> &records() const { return log::records(); }
    std::vector<std::string> texts() const;
    std::vector<std::string> texts(const Logger &logger) const;
    bool has(const std::string &text) const; // a record of exactly this text

private:
    std::vector<std::pair<Logger *, bool>> m_before;
    Sink m_sink;
};

} // namespace Base::log
