// The frame of every C function: failures become status 1 and the last-error text.
#pragma once

#include "ug_exception.hxx"

#include <exception>
#include <stdexcept>
#include <string>

namespace QelFmt::api {

std::string &lastError(); // never destroyed: callers may ask at process exit

// Catches exactly the two kinds that the interface promises to report; any other passes through.
template <class Body> int guarded(Body &&body)
{
    try {
        body();
        return 0;
    } catch (const UgException &failure) {
        lastError() = failure.askErrorText();
    } catch (const std::exception &failure) {
        lastError() = failure.what();
    }
    return 1;
}

inline void requireArgument(const void *argument)
{
    if (!argument) throw std::runtime_error("Invalid argument");
}

// A null identifier is an empty one.
inline std::string text(const char *argument) { return argument ? argument : ""; }

} // namespace QelFmt::api
