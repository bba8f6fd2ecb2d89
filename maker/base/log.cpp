#include "base/log.h"

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <memory>
#include <string_view>

namespace Base::log {

namespace {

// What the environment asks for.
struct Wanted {
    std::vector<std::string> names;
    std::string file;

    bool covers(std::string_view logger) const
    {
        const std::string_view last = logger.substr(logger.rfind('.') + 1);
        return std::any_of(names.begin(), names.end(), [&](const std::string &name) {
            return name == "all" || name == logger || name == last;
        });
    }
};

Wanted fromEnvironment()
{
    Wanted wanted;
    const char *names = std::getenv("QELFMT_LOG");
    std::istringstream list(names ? names : "");
    for (std::string name; std::getline(list, name, ',');) {
        if (!name.empty()) wanted.names.push_back(name);
    }
    if (const char *file = std::getenv("QELFMT_LOG_FILE")) wanted.file = file;
    return wanted;
}

// A file that cannot be written must not cost the caller its messages: they go to the standard error.
Sink writerTo(const std::string &file)
{
    auto out = std::make_shared<std::ofstream>();
    if (!file.empty()) {
        out->open(file, std::ios::app);
        if (!*out) std::cerr << file << ": cannot be written; logging to the standard error\n";
    }
    return [out](const Record &record) {
        std::ostream &to = out->is_open() ? static_cast<std::ostream &>(*out) : std::cerr;
        to << record.logger << ": " << record.text << std::endl;
    };
}

struct State {
    Wanted wanted = fromEnvironment();
    Sink sink = wanted.names.empty() ? Sink() : writerTo(wanted.file);
    std::vector<Logger *> loggers;
    std::vector<Record> records;
};

// Never destroyed: static objects may log from their destructors.
State &state()
{
    static State &the_state = *new State;
    return the_state;
}

} // namespace

Logger::Logger(const std::string &name) : m_name(name), m_on(state().wanted.covers(name))
{
    state().loggers.push_back(this);
}

Logger::~Logger() { std::erase(state().loggers, this); }

std::vector<Logger *> loggers() { return state().loggers; }

LoggerStream::~LoggerStream() { close(); }

void LoggerStream::close()
{
    if (!isActive()) return;
    Record record{m_logger->name(), m_text->str()};
    m_logger = nullptr;
    if (record.text.ends_with('\n')) record.text.pop_back();
    if (state().sink)
        state().sink(record);
    else
        state().records.push_back(std::move(record));
}

void setSink(Sink sink) { state().sink = std::move(sink); }

const std::vector<Record> &records() { return state().records; }

void clearRecords() { state().records.clear(); }

Recording::Recording(std::initializer_list<Logger *> wanted) : m_sink(std::move(state().sink))
{
    state().sink = nullptr;
    clearRecords();
    for (Logger *logger : wanted) {
        m_before.emplace_back(logger, logger->isOn());
        logger->setOn(true);
    }
}

Recording::~Recording()
{
    for (const auto &[logger, on] : m_before) logger->setOn(on);
    state().sink = std::move(m_sink);
    clearRecords();
}

std::vector<std::string> Recording::texts() const
{
    std::vector<std::string> texts;
    for (const Record &record : records()) texts.push_back(record.text);
    return texts;
}

std::vector<std::string> Recording::texts(const Logger &logger) const
{
    std::vector<std::string> texts;
    for (const Record &record : records()) {
        if (record.logger == logger.name()) texts.push_back(record.text);
    }
    return texts;
}

bool Recording::has(const std::string &text) const
{
    return std::any_of(records().begin(), records().end(),
                       [&](const Record &record) { return record.text == text; });
}

} // namespace Base::log
