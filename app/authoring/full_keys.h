// Keys of the full form: every slot of a record by its accessor's name in snake case ("text_color"),
// taken from the slot tables of the definition classes.
#pragma once

#include "app/authoring/model.h"
#include "app/authoring/record_kinds.h"
#include "app/authoring/yaml_reader.h"

#include "udo/slots.h"

#include <string>
#include <tuple>
#include <type_traits>

namespace app::authoring {

// Slots that the mapping names in snake case, of one record's layout. A key that was asked for before has
// the cell form's meaning.
template <class... Slots>
void readFullKeys(Mapping &mapping, const std::tuple<Slots...> &layout, SlotValues &values)
{
    const auto read = [&](const auto &slot) {
        using Slot = std::remove_cvref_t<decltype(slot)>;
        const std::string key = snakeCase(slot.name);
        if (mapping.wasAsked(key) || !mapping.has(key)) return;
        values.origins[key] = mapping.origin(key);
        if constexpr (std::is_same_v<Slot, LumUg::IntSlot>) {
            if (const auto value = mapping.integer(key)) values.ints[slot.name] = *value;
        } else if constexpr (std::is_same_v<Slot, LumUg::DoubleSlot>) {
            if (const auto value = mapping.real(key)) values.doubles[slot.name] = *value;
        } else if constexpr (std::is_same_v<Slot, LumUg::StringTail>) {
            if (const auto value = mapping.texts(key)) values.lists[slot.name] = *value;
        } else {
            if (const auto value = mapping.text(key)) values.strings[slot.name] = *value;
        }
    };
    std::apply([&](const auto &...slot) { (read(slot), ...); }, layout);
}

void readFullFieldKeys(Mapping &mapping, SlotValues &values);
void readFullTableKeys(Mapping &mapping, SlotValues &values);
void readFullBlockKeys(Mapping &mapping, SlotValues &values);
void readFullFormatKeys(Mapping &mapping, SlotValues &values);
void readFullSizeKeys(Mapping &mapping, SlotValues &values);

} // namespace app::authoring
