// Records filled and changed slot by slot, as their layouts say.
#pragma once

#include "udo/udo.h"

#include <cctype>
#include <cmath>
#include <string>
#include <tuple>
#include <type_traits>
#include <vector>

template <class... Slots, class Visit>
void forEachSlot(const std::tuple<Slots...> &layout, Visit visit)
{
    std::apply([&](const auto &...slot) { (visit(slot), ...); }, layout);
}

// Each slot gets a value of its own, none of them 0 or empty.
template <class... Slots> void fill(LumUg::UDO &record, const std::tuple<Slots...> &layout)
{
    LumUg::Record values(record);
    forEachSlot(layout, [&](const auto &slot) {
        using Slot = std::remove_cvref_t<decltype(slot)>;
        if constexpr (std::is_same_v<Slot, LumUg::IntSlot>)
            values.put(slot, 100 + static_cast<int>(slot.index));
        else if constexpr (std::is_same_v<Slot, LumUg::DoubleSlot>)
            values.put(slot, 0.1 + slot.index);
        else if constexpr (std::is_same_v<Slot, LumUg::StringTail>)
            values.put(slot, std::vector<std::string>{"first", "second"});
        else
            values.put(slot, std::string("text of ") + slot.name);
    });
    values.write(record);
}

inline void change(LumUg::UDO &record, const LumUg::IntSlot &slot)
{
    record.SetInt(slot.index, record.GetInt(slot.index, slot.fallback) + 1);
}
inline void change(LumUg::UDO &record, const LumUg::DoubleSlot &slot)
{
    // The smallest change there is: no comparison may round.
    record.SetDouble(slot.index, std::nextafter(record.GetDouble(slot.index), 1e9));
}
inline void change(LumUg::UDO &record, const LumUg::StringSlot &slot)
{
    std::string text = record.GetString(slot.index);
    for (char &c : text) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    record.SetString(slot.index, text);
}
inline void change(LumUg::UDO &record, const LumUg::StringTail &)
{
    record.SetString(record.GetNumberOfStrings(), "one more");
}
inline void change(LumUg::UDO &record, const LumUg::AttributeSlot &slot)
{
    UgUDO &object = *record.GetUdoObject();
    object.setStringAttributeValue(slot.title, object.getStringAttributeValue(slot.title) + "!");
}

// The whole record as raw arrays.
struct RawSlots {
    explicit RawSlots(const LumUg::UDO &record)
        : ints(record.GetInts()), doubles(record.GetDoubles()), strings(record.GetStrings())
    {}
    bool operator==(const RawSlots &) const = default;

    std::vector<int> ints;
    std::vector<double> doubles;
    std::vector<std::string> strings;
};
