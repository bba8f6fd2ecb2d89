// Enumerations as callers pass them: C callers may bring any number, and C++ must not look at one
// that is outside the enumeration's range before it was checked.
#pragma once

#include <cstring>
#include <type_traits>

namespace host {

template <class Enum> int rawValue(const Enum &value)
{
    static_assert(std::is_enum_v<Enum> && sizeof(Enum) == sizeof(int));
    int number = 0;
    std::memcpy(&number, &value, sizeof number);
    return number;
}

} // namespace host
