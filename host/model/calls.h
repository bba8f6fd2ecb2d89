// The frame of every platform function: counts the call, applies injected faults, refuses calls
// before the session is initialised, and turns model failures into codes.
#pragma once

#include "object.h"

#include <functional>
#include <string>
#include <string_view>

namespace host {

// Counts and records the call; runs an injected action; answers the injected code or 0.
int enterCall(const char *function);

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

void require(bool condition, int code); // throws Failure{code}

// Text of a code; empty when unknown. Every code that the host returns has one.
std::string_view messageOf(int code);

// Memory handed out to callers, tracked until it is given back with UF_free.
void *allocate(std::size_t bytes);
char *allocateText(std::string_view text);
void release(void *block); // foreign and double frees are counted, not executed
void dataBlockTaken(const void *block);
void dataBlockReturned(const void *block);

} // namespace host
