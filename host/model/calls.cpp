#include "calls.h"

#include "session.h"
#include "uf.h"

#include <unordered_map>

namespace host {

namespace {

struct Fault {
    std::string function;
    unsigned callsLeft;
    int code;
    std::function<void()> action;
};

struct Calls {
    // By the address of the name: counting must cost next to nothing. One name can have several
    // addresses, one a translation unit.
    std::unordered_map<const char *, std::size_t> counts;
    std::size_t total = 0;
    std::vector<Fault> faults;
    bool recording = false;
    std::vector<std::string> record;
};

Calls &calls()
{
    static Calls *const state = new Calls; // outlives every static object
    return *state;
}

// The fault that this call meets, taken off the list: one call meets one fault.
bool takeFault(Calls &state, std::string_view function, Fault &met)
{
    bool found = false;
    for (auto fault = state.faults.begin(); fault != state.faults.end();) {
        if (fault->function != function || --fault->callsLeft > 0) {
            ++fault;
        } else if (found) {
            fault->callsLeft = 1; // waits for the next call
            ++fault;
        } else {
            met = std::move(*fault);
            fault = state.faults.erase(fault);
            found = true;
        }
    }
    return found;
}

} // namespace

int enterAnytime(const char *function)
{
    Calls &state = calls();
    ++state.total;
    ++state.counts[function];
    if (state.recording) state.record.emplace_back(function);
    if (state.faults.empty()) return 0;
    Fault met;
    if (!takeFault(state, function, met)) return 0;
    if (met.action) met.action();
    return met.code;
}

int enterCall(const char *function)
{
    if (const int code = enterAnytime(function)) return code;
    return Session::get().initializeCount > 0 ? 0 : UF_err_program_not_initialized;
}

void require(bool condition, int code)
{
    if (!condition) throw Failure{code, {}};
}

void failNextCall(const std::string &function, int code, std::function<void()> action, unsigned nth)
{
    calls().faults.push_back({function, nth == 0 ? 1 : nth, code, std::move(action)});
}

void forgetFaults() { calls().faults.clear(); }

bool anyFaultPending() { return !calls().faults.empty(); }

std::size_t timesCalled(std::string_view function)
{
    std::size_t times = 0;
    for (const auto &[name, count] : calls().counts)
        if (function == name) times += count;
    return times;
}

std::size_t timesAnyCalled() { return calls().total; }

void forgetCallCounts()
{
    calls().counts.clear();
    calls().total = 0;
}

void keepCallRecord(bool on)
{
    calls().recording = on;
    if (!on) calls().record.clear();
}

const std::vector<std::string> &callRecord() { return calls().record; }

} // namespace host
