#include "uf.h"

#include "model/calls.h"
#include "model/session.h"

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <execinfo.h>
#include <filesystem>
#include <fstream>
#include <unistd.h>
#include <unordered_map>

using host::Session;

// --- session --------------------------------------------------------------------------------------

int UF_initialize(void)
{
    if (const int code = host::enterAnytime("UF_initialize")) return code;
    Session &session = Session::get();
    if (!session.interfaceAvailable) return UF_err_program_not_initialized;
    ++session.initializeCount;
    return 0;
}

int UF_terminate(void)
{
    return host::call("UF_terminate", [] { --Session::get().initializeCount; });
}

int UF_is_initialized(void)
{
    host::enterAnytime("UF_is_initialized");
    return Session::get().initializeCount > 0;
}

// --- memory ---------------------------------------------------------------------------------------

// Memory goes back at any time, after the last UF_terminate too.

void *UF_allocate_memory(unsigned int nbytes, int *error_code)
{
    const int code = host::enterCall("UF_allocate_memory");
    if (error_code) *error_code = code;
    return code || nbytes == 0 ? nullptr : host::allocate(nbytes);
}

void *UF_reallocate_memory(void *data, unsigned int nbytes, int *error_code)
{
    int code = host::enterCall("UF_reallocate_memory");
    const std::size_t stored = data ? host::sizeOfBlock(data) : 0;
    if (!code && data && !stored) code = UF_err_bad_parameter_number_1;
    if (error_code) *error_code = code;
    if (code) return nullptr;
    void *const moved = nbytes ? host::allocate(nbytes) : nullptr;
    if (moved && data) std::memcpy(moved, data, std::min<std::size_t>(stored, nbytes));
    host::release(data);
    return moved;
}

void UF_free(void *block)
{
    host::enterAnytime("UF_free");
    host::release(block);
}

void UF_free_string_array(int n_strings, char **string_array)
{
    host::enterAnytime("UF_free_string_array");
    if (!string_array) return;
    for (int i = 0; i < n_strings; ++i) host::release(string_array[i]);
    host::release(string_array);
}

// --- messages and log -----------------------------------------------------------------------------

int UF_get_fail_message(int fail_code, char message[133])
{
    if (const int code = host::enterAnytime("UF_get_fail_message")) return code;
    if (!message) return UF_err_bad_parameter_number_2;
    const std::string_view text = host::messageOf(fail_code);
    message[text.copy(message, 132)] = '\0';
    return text.empty() ? UF_err_bad_parameter_number_1 : 0;
}

namespace {

// The log lives in memory; a file of it is made when somebody asks for its name.
std::string &syslogFile()
{
    static std::string *const name = new std::string;
    return *name;
}

void appendToFile(std::string_view text)
{
    std::ofstream{syslogFile(), std::ios::app | std::ios::binary} << text;
}

std::string stackTrace()
{
    void *frames[64];
    const int count = backtrace(frames, 64);
    char **const names = backtrace_symbols(frames, count);
    std::string text;
    for (int i = 0; names && i < count; ++i) text.append(names[i]).append("\n");
    std::free(names);
    return text;
}

} // namespace

int UF_print_syslog(char *message, logical trace)
{
    return host::call("UF_print_syslog", [&] {
        host::require(message != nullptr, UF_err_bad_parameter_number_1);
        const std::string text = trace ? message + stackTrace() : std::string(message);
        Session::get().syslog += text;
        if (!syslogFile().empty()) appendToFile(text);
    });
}

int UF_ask_syslog_filename(char **filename)
{
    return host::call("UF_ask_syslog_filename", [&] {
        host::require(filename != nullptr, UF_err_bad_parameter_number_1);
        if (syslogFile().empty()) {
            const std::string name = "nxhost-" + std::to_string(getpid()) + ".syslog";
            syslogFile() = (std::filesystem::temp_directory_path() / name).string();
            std::filesystem::remove(syslogFile());
            appendToFile(Session::get().syslog);
        }
        *filename = host::allocateText(syslogFile());
    });
}

// --- environment ----------------------------------------------------------------------------------

int UF_translate_variable(const char *variable, char **translation)
{
    return host::call("UF_translate_variable", [&] {
        host::require(variable && *variable, UF_err_bad_parameter_number_1);
        host::require(translation != nullptr, UF_err_bad_parameter_number_2);
        *translation = std::getenv(variable);
    });
}

int UF_set_variable(const char *variable, const char *value)
{
    return host::call("UF_set_variable", [&] {
        host::require(variable && *variable && !std::strchr(variable, '='),
                      UF_err_bad_parameter_number_1);
        const int failed = value ? setenv(variable, value, 1) : unsetenv(variable);
        host::require(!failed, UF_err_bad_parameter_number_2);
    });
}

// --- timers ---------------------------------------------------------------------------------------

namespace {

struct Reading {
    double cpu;
    double real;
};

Reading readClocks()
{
    // A clock set by a test stands for both, so that every figure is known.
    if (const auto &clock = Session::get().clock) {
        const double now = clock();
        return {now, now};
    }
    const auto now = std::chrono::steady_clock::now().time_since_epoch();
    return {static_cast<double>(std::clock()) / CLOCKS_PER_SEC,
            std::chrono::duration<double>(now).count()};
}

std::unordered_map<UF_timer_t, Reading> &runningTimers()
{
    static auto *const timers = new std::unordered_map<UF_timer_t, Reading>;
    return *timers;
}

} // namespace

int UF_begin_timer(UF_timer_p_t timer)
{
    return host::call("UF_begin_timer", [&] {
        host::require(timer != nullptr, UF_err_bad_parameter_number_1);
        static UF_timer_t last = 0;
        *timer = ++last;
        runningTimers()[last] = readClocks();
    });
}

int UF_end_timer(UF_timer_t timer, UF_timer_values_p_t values)
{
    return host::call("UF_end_timer", [&] {
        const auto found = runningTimers().find(timer);
        host::require(found != runningTimers().end(), UF_err_bad_parameter_number_1);
        host::require(values != nullptr, UF_err_bad_parameter_number_2);
        const Reading now = readClocks();
        values->cpu_time = now.cpu - found->second.cpu;
        values->real_time = now.real - found->second.real;
        runningTimers().erase(found);
    });
}
