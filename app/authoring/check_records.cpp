#include "app/authoring/check_records.h"

#include "app/authoring/scalars.h"
#include "app/authoring/stored_order.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <set>

namespace app::authoring {

namespace {

constexpr double kLongest = 10000.0, kInch = 25.4; // mm: no sheet is longer than ten metres

// Those that are measured on the sheet.
const std::set<std::string> kLengths{"location_x",
                                     "location_y",
                                     "width",
                                     "height",
                                     "x",
                                     "y",
                                     "length",
                                     "right_offset",
                                     "text_size",
                                     "margin_width",
                                     "size_x_loc",
                                     "size_y_loc",
                                     "margin_height",
                                     "symbol_size",
                                     "symbol_text_size",
                                     "alt_text_size",
                                     "horz_zone_length",
                                     "vert_zone_length"};

std::vector<double> numbersOf(const RecordTree &record, const SlotInfo &slot)
{
    std::vector<double> values;
    if (slot.shape == SlotShape::real && slot.index < record.doubles.size())
        values.push_back(record.doubles[slot.index]);
    if (slot.shape == SlotShape::reals)
        for (std::size_t i = slot.index; i < record.doubles.size(); i += slot.stride)
            values.push_back(record.doubles[i]);
    return values;
}

} // namespace

void checkRecord(const RecordTree &record, const std::string &where, int units, Findings &findings)
{
    const double most = units == 2 ? kLongest / kInch : kLongest;
    for (const SlotInfo &slot : record.kind->slots) {
        for (const double value : numbersOf(record, slot)) {
            if (!std::isfinite(value))
                findings.add(where, record, slot.key,
                             fmt::format("is {}: write a number", realText(value)));
            else if (kLengths.contains(slot.key) && std::abs(value) > most)
                findings.add(
                    where, record, slot.key,
                    fmt::format("is {:.6g}: more than ten metres; check the units", value));
        }
    }
    if (record.kind->slot("id") && record.text("id").find('/') != std::string::npos &&
        record.kind->word != "field" && record.kind->word != "table")
        findings.add(where, record, "id",
                     "holds a \"/\", which stands between format and size: use a \"-\" instead");
    const auto &kinds = record.kind->children;
    for (const RecordTree &child : record.children) {
        const std::string here = where + ", " + identityOf(child);
        if (std::find(kinds.begin(), kinds.end(), child.kind->word) == kinds.end())
            findings.add(here, child, "kind",
                         fmt::format("a {} owns no {}: nothing uses it; remove it, or put it where "
                                     "it belongs",
                                     record.kind->word, child.kind->word));
        checkRecord(child, here, units, findings);
    }
}

} // namespace app::authoring
