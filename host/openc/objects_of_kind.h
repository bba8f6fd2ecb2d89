// A part's objects of one kind, in order of creation.
#pragma once

#include "model/object.h"

#include <type_traits>

namespace host {

template <class T, std::size_t I = 0> constexpr std::size_t kindIndex()
{
    if constexpr (std::is_same_v<std::variant_alternative_t<I, Body>, InBody<T>>)
        return I;
    else
        return kindIndex<T, I + 1>();
}

template <class T> const Ordered &objectsOfKind(const Part &part)
{
    static const Ordered none;
    const auto found = part.byKind.find(kindIndex<T>());
    return found == part.byKind.end() ? none : found->second;
}

} // namespace host
