#include "calls.h"

#include "session.h"
#include "uf.h"

#include <cstdint>

namespace host {

namespace {

struct Fault {
    std::string function;
    unsigned callsLeft;
    int code;
    std::function<void()> action;
};

// By the address of the name: counting must cost next to nothing. One name can have several addresses,
// one a translation unit. Some hundred names share a table that is twice as large, so that a name is
// where its address says or close behind.
class Counts {
public:
    void add(const char *name)
    {
        Slot &slot = slotOf(name);
        if (!slot.name) {
            if (2 * (m_used + 1) > m_slots.size()) return grow(), add(name);
            slot.name = name;
            ++m_used;
        }
        ++slot.count;
    }
    std::size_t of(std::string_view name) const
    {
        std::size_t sum = 0;
        for (const Slot &slot : m_slots)
            if (slot.name && name == slot.name) sum += slot.count;
        return sum;
    }
    void clear()
    {
        for (Slot &slot : m_slots) slot.count = 0;
    }

private:
    struct Slot {
        const char *name = nullptr;
        std::size_t count = 0;
    };

    // The name's own, or the free one where it belongs. The multiplier spreads addresses that lie side
    // by side.
    Slot &slotOf(const char *name)
    {
        const std::size_t mask = m_slots.size() - 1;
        std::size_t at = reinterpret_cast<std::uintptr_t>(name) * 0x9e3779b97f4a7c15u >> 32 & mask;
        while (m_slots[at].name && m_slots[at].name != name) at = (at + 1) & mask;
        return m_slots[at];
    }
    void grow()
    {
        std::vector<Slot> old(2 * m_slots.size());
        old.swap(m_slots);
        for (const Slot &slot : old)
            if (slot.name) slotOf(slot.name) = slot;
    }

    std::vector<Slot> m_slots = std::vector<Slot>(1024); // always a power of two
    std::size_t m_used = 0;
};

struct Calls {
    Counts counts;
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
    state.counts.add(function);
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

std::size_t timesCalled(std::string_view function) { return calls().counts.of(function); }

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
