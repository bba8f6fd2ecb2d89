// The stored layout of a record as a table: every persistent class declares its slots once, in
// stored order, and accessors, comparison, copying and listings speak in these names.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <tuple>
#include <type_traits>
#include <vector>

namespace LumUg {

// One element of a record's ints, doubles or strings. An int that is not stored reads as `fallback`,
// a double as 0.0, a string as empty.
struct IntSlot {
    unsigned index;
    const char *name;
    int fallback = 0;
};
struct DoubleSlot {
    unsigned index;
    const char *name;
};
struct StringSlot {
    unsigned index;
    const char *name;
};
// Every string from `index` to the end.
struct StringTail {
    unsigned index;
    const char *name;
};
// The doubles first, first + stride, ...: one for each element of a parallel list.
struct DoubleFamily {
    unsigned first;
    unsigned stride;
    const char *name;
};
// A value kept as a string attribute of the record; empty when absent.
struct AttributeSlot {
    const char *title;
    const char *name;
};
// The linked object at `index` among the links of one type.
struct LinkSlot {
    unsigned linkType;
    unsigned index;
    const char *name;
};
// The linked records of one type that are of class Child, in link order. Children of several classes
// share a link type and are told apart by class.
template <class Child> struct ChildList {
    unsigned linkType;
    const char *name;
};

namespace detail {

template <class Slot> constexpr bool inInts = std::is_same_v<Slot, IntSlot>;
template <class Slot> constexpr bool inDoubles = std::is_same_v<Slot, DoubleSlot>;
template <class Slot>
constexpr bool inStrings = std::is_same_v<Slot, StringSlot> || std::is_same_v<Slot, StringTail>;

} // namespace detail

// No gap and no index used twice, in each array. Families of doubles are not judged.
template <class... Slots> constexpr bool isDense(const std::tuple<Slots...> &layout)
{
    unsigned ints = 0, doubles = 0, strings = 0;
    bool dense = true;
    auto check = [&](const auto &slot) {
        using Slot = std::remove_cvref_t<decltype(slot)>;
        if constexpr (detail::inInts<Slot>)
            dense = dense && slot.index == ints++;
        else if constexpr (detail::inDoubles<Slot>)
            dense = dense && slot.index == doubles++;
        else if constexpr (detail::inStrings<Slot>)
            dense = dense && slot.index == strings++;
    };
    std::apply([&](const auto &...slot) { (check(slot), ...); }, layout);
    return dense;
}

} // namespace LumUg
