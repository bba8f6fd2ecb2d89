// The frame of every platform function: counts the call, applies injected faults, refuses calls
// before the session is initialised, and turns model failures into codes.
#pragma once

#include "object.h"

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace host {

// Counts and records the call; runs an injected action; answers the injected code or 0.
int enterCall(const char *function);
// The same for the few calls that work before the session is initialised.
int enterAnytime(const char *function);

// For C functions: the code of a failure, 0 when body returned. Exceptions that are no Failure pass.
template <class F> int call(const char *function, F &&body)
{
    if (const int code = enterCall(function)) return code;
    try {
        body();
        return 0;
    } catch (const Failure &failure) {
        return failure.code;
    }
}

// For calls that answer a value and no code: `otherwise` on any failure.
template <class T, class F> T callForValue(const char *function, T otherwise, F &&body)
{
    if (enterCall(function)) return otherwise;
    try {
        return body();
    } catch (const Failure &) {
        return otherwise;
    }
}

void require(bool condition, int code); // throws Failure{code}

// Text of a code; empty when unknown. Every code that the host returns has one.
std::string_view messageOf(int code);

// Memory handed out to callers, tracked until it is given back with UF_free.
void *allocate(std::size_t bytes);
char *allocateText(std::string_view text);
std::size_t sizeOfBlock(const void *block); // 0 for a foreign one
void release(void *block);                  // foreign and double frees are counted, not executed
// A block of UF_UDOBJ_ask_udo_data; its return answers false, and counts a bad free, when the block
// was not taken or was returned before.
void dataBlockTaken(const void *block);
bool dataBlockReturned(const void *block);

// What nxhost/control.h offers over the calls.
void failNextCall(const std::string &function, int code, std::function<void()> action,
                  unsigned nth);
void forgetFaults();
bool anyFaultPending();
std::size_t timesCalled(std::string_view function);
std::size_t timesAnyCalled();
void forgetCallCounts();
void keepCallRecord(bool on);
const std::vector<std::string> &callRecord();
struct MemoryState {
    std::size_t allocations = 0;
    std::size_t dataBlocks = 0;
    std::size_t badFrees = 0;
};
MemoryState memoryState();
void forgetBadFrees();

} // namespace host
