#include "app/authoring/field_words.h"

#include "app/authoring/scalars.h"
#include "app/authoring/words.h"

#include <fmt/format.h>

#include <cmath>

namespace app::authoring {

namespace {

// `from`, or `value`.
void putSource(const RecordTree &field, FlowMapping &keys)
{
    const int type = field.integer("default_type");
    const auto texts = field.texts("default_string");
    const std::string site = field.text("registry_string");
    if (type == kSizeLabel && texts.empty()) {
        keys.put("from", "size");
    } else if (type == kOwnText && texts.empty() && !site.empty()) {
        keys.putText("from", "site " + site);
    } else if (type == kOwnText && texts.size() == 1) {
        keys.putText("value", texts[0]);
    } else if (type == kOwnText && !texts.empty()) {
        keys.put("value", flowList(texts));
    } else if (texts.size() == 1 && !texts[0].empty()) {
        const char *kind = type == kPartAttribute    ? "part "
                           : type == kSheetAttribute ? "sheet "
                           : type == kEnvironment    ? "environment "
                                                     : nullptr;
        if (kind) keys.putText("from", kind + texts[0]);
    }
}

void putKeeping(const RecordTree &field, FlowMapping &keys)
{
    const int keep = field.integer("use_default_initially");
    const int usual = field.integer("default_type") == kSizeLabel ? 0 : 1;
    if (keep != usual && (keep == 0 || keep == 1))
        keys.put("keep", keep == 1 ? "typed" : "recompute");
    const std::string share = field.text("broadcast_string");
    const int target = field.integer("broadcast_type");
    if (!share.empty() && (target == 0 || target == 1))
        keys.putText("share", (target == 1 ? "part " : "sheet ") + share);
    if (field.integer("sync_all_drawings") == 1) keys.put("all-sheets", "yes");
}

template <class Fits> std::optional<double> shortestNear(double value, Fits fits)
{
    for (int digits = 0; digits <= 15; ++digits) {
        const double scale = std::pow(10.0, digits);
        const double rounded = std::round(value * scale) / scale;
        if (fits(rounded)) return rounded;
    }
    return fits(value) ? std::optional(value) : std::nullopt;
}

} // namespace

std::optional<double> addendOf(double sum, double part)
{
    return shortestNear(sum - part, [&](double value) { return value + part == sum; });
}

std::optional<double> subtrahendOf(double whole, double result)
{
    return shortestNear(whole - result, [&](double value) { return whole - value == result; });
}

std::optional<Box> cellOf(const RecordTree &field)
{
    Box box{field.real("location_x"), field.real("location_y"), field.real("width"),
            field.real("height")};
    if (field.integer("text_site") >= 1 && field.integer("text_site") <= 3) {
        const auto low = addendOf(box.y, box.height);
        if (!low) return {};
        box.y = *low;
    }
    const bool finite = std::isfinite(box.x) && std::isfinite(box.y) && std::isfinite(box.width) &&
                        std::isfinite(box.height);
    if (!finite || !(box.width > 0 && box.height > 0)) return {};
    return box;
}

void putFieldWords(const Fold &field, const StyleBook &styles, int units, bool column,
                   FlowMapping &keys)
{
    styles.describe(styleOf(*field.record, units, column), column, keys);
    putSource(*field.record, keys);
    putKeeping(*field.record, keys);
    putSlots(field, keys);
}

void putSlots(const Fold &fold, FlowMapping &keys)
{
    for (const auto &[key, value] : fold.slots) keys.put(key, value);
}

std::string keyOf(const Fold &fold, std::set<std::string> &taken)
{
    const std::string id = fold.record->text("id");
    const std::string key = quoted(id);
    if (!id.empty() && !key.starts_with('!') && taken.insert(key).second) return key;
    for (std::size_t n = 1;; ++n) {
        const std::string other = fmt::format("{}-{}", fold.record->kind->word, n);
        if (taken.insert(other).second) return other;
    }
}

} // namespace app::authoring
