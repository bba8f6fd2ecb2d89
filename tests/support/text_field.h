// A field definition as an editor writes it: every slot stored.
#pragma once

#include "tests/support/definitions.h"

#include <string>
#include <tuple>
#include <type_traits>

// Every number stored as 0: what a single write past the end puts before it would count up.
inline TrFieldDefV1 blankField(const std::string &id)
{
    TrFieldDefV1 field = makeField(id);
    LumUg::Record record(field);
    const auto blank = [&](const auto &slot) {
        using Slot = std::remove_cvref_t<decltype(slot)>;
        if constexpr (std::is_same_v<Slot, LumUg::IntSlot>) record.put(slot, 0);
        if constexpr (std::is_same_v<Slot, LumUg::DoubleSlot>) record.put(slot, 0.0);
    };
    std::apply([&](const auto &...slot) { (blank(slot), ...); }, TrFieldDefV1::kLayout);
    record.write(field);
    return field;
}

// Text 2.5 high at the left bottom of a cell 20 wide that begins at x, 1 from its lines.
inline TrFieldDefV1 makeTextField(const std::string &id, double x)
{
    TrFieldDefV1 field = blankField(id);
    field.SetUseDefaultInitially(1);
    field.SetLocationX(x);
    field.SetWidth(20.0);
    field.SetMarginHeight(1.0);
    field.SetMarginWidth(1.0);
    field.SetTextSize(2.5);
    field.SetTextAspect(1.0);
    field.SetLineSpace(1.0);
    field.SetTextSite(7);
    field.SetTextJustification(1);
    field.SetTextFontName("osifont");
    return field;
}
