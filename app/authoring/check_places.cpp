#include "app/authoring/check_places.h"

#include "app/authoring/stored_order.h"

#include <fmt/format.h>

#include <algorithm>

namespace app::authoring {

namespace {

bool inSuite(const RecordTree &format, const std::string &name)
{
    if (name == "Default" || name == format.text("id")) return true;
    if (name.empty()) return false;
    if (name == format.text("suite_name")) return true;
    for (const RecordTree *size : format.childrenOf("size"))
        if (name == size->text("suite_name")) return true;
    return false;
}

bool fitsSize(const std::string &name, const RecordTree &format, const RecordTree &size)
{
    const std::string suite = size.text("suite_name");
    return name == "Default" || name == size.text("id") ||
           (!name.empty() && name == (suite.empty() ? format.text("suite_name") : suite));
}

bool isSize(const std::string &name, const RecordTree &format)
{
    const auto sizes = format.childrenOf("size");
    return std::any_of(sizes.begin(), sizes.end(),
                       [&](const RecordTree *size) { return fitsSize(name, format, *size); });
}

bool hasPlace(const RecordTree &location, const RecordTree &format, const RecordTree &size)
{
    if (location.kind->word == "block_location_v1") {
        const auto names = location.texts("size_names");
        return std::any_of(names.begin(), names.end(),
                           [&](const std::string &name) { return fitsSize(name, format, size); });
    }
    for (const RecordTree *one : location.childrenOf("size_location"))
        if (fitsSize(one->text("size_id"), format, size))
            return !one->childrenOf("location").empty();
    return false;
}

void checkHiddenSizes(const RecordTree &location, const std::string &where, Findings &findings)
{
    bool all = false;
    for (const RecordTree *size : location.childrenOf("size_location")) {
        if (all)
            findings.add(where, *size, "size_id",
                         fmt::format("the places for \"{}\" stand behind those for Default, which "
                                     "always fit: they are never used; put them first",
                                     size->text("size_id")));
        all = all || size->text("size_id") == "Default";
    }
}

void checkSizes(const RecordTree &block, const RecordTree &format, const std::string &where,
                Findings &findings)
{
    const RecordTree *location = locationFor(block, format);
    const auto required = format.texts("required_block_ids");
    if (!location) {
        if (std::count(required.begin(), required.end(), block.text("id")))
            findings.add(where, block, "place",
                         fmt::format("the format {} requires it, and it has no place there: add "
                                     "one for it",
                                     format.text("id")));
        return;
    }
    for (const RecordTree *size : format.childrenOf("size"))
        if (!hasPlace(*location, format, *size))
            findings.add(where, *location, "place",
                         fmt::format("there is none on size {} of format {}: the block would come "
                                     "to the sheet's corner; add {}: {{corner: ..., inset: "
                                     "[x, y]}}",
                                     size->text("id"), format.text("id"), size->text("id")));
}

// Names of sizes that none of the formats has for which the places are.
void checkSizeNames(const RecordTree &location, const std::vector<const RecordTree *> &formats,
                    const std::string &where, Findings &findings)
{
    std::vector<const RecordTree *> mine;
    for (const RecordTree *format : formats)
        if (inSuite(*format, location.text("format_id"))) mine.push_back(format);
    if (mine.empty()) return; // said of the format
    const auto tell = [&](const RecordTree &at, const std::string &slot, const std::string &name) {
        if (name.empty() || std::any_of(mine.begin(), mine.end(), [&](const RecordTree *format) {
                return isSize(name, *format);
            }))
            return;
        std::vector<std::string> sizes;
        for (const RecordTree *size : mine.front()->childrenOf("size"))
            sizes.push_back(size->text("id"));
        findings.add(where, at, slot,
                     fmt::format("\"{}\" is no size and no suite of the format {}, which has {}: "
                                 "the places for it are never used",
                                 name, mine.front()->text("id"), fmt::join(sizes, ", ")));
    };
    for (const RecordTree *size : location.childrenOf("size_location"))
        tell(*size, "size_id", size->text("size_id"));
    if (location.kind->word == "block_location_v1")
        for (const std::string &name : location.texts("size_names"))
            tell(location, "size_names", name);
}

std::vector<double> family(const RecordTree &record, const char *key)
{
    const SlotInfo &slot = *record.kind->slot(key);
    std::vector<double> values;
    for (std::size_t i = slot.index; i < record.doubles.size(); i += slot.stride)
        values.push_back(record.doubles[i]);
    return values;
}

ArtPoint fromCorner(int offsetType, ArtPoint stored, const RecordTree &sheet)
{
    const bool fromRight = offsetType == 2 || offsetType == 3;
    const bool fromTop = offsetType == 1 || offsetType == 3;
    return {fromRight ? sheet.real("length") - stored.x : stored.x,
            fromTop ? sheet.real("height") - stored.y : stored.y};
}

} // namespace

bool isLocation(const RecordTree &record)
{
    return record.kind->word == "block_location" || record.kind->word == "block_location_v1";
}

// The first location that is for the format decides.
const RecordTree *locationFor(const RecordTree &block, const RecordTree &format)
{
    for (const RecordTree &location : block.children)
        if (isLocation(location) && inSuite(format, location.text("format_id"))) return &location;
    return nullptr;
}

std::optional<ArtPoint> placeOn(const RecordTree &location, const RecordTree &format,
                                const RecordTree &size)
{
    if (location.kind->word == "block_location_v1") {
        const auto names = location.texts("size_names");
        const auto xs = family(location, "size_x_loc"), ys = family(location, "size_y_loc");
        for (std::size_t i = 0; i < std::min({names.size(), xs.size(), ys.size()}); ++i)
            if (fitsSize(names[i], format, size))
                return fromCorner(location.integer("offset_type"), {xs[i], ys[i]}, size);
        return {};
    }
    for (const RecordTree *one : location.childrenOf("size_location")) {
        if (!fitsSize(one->text("size_id"), format, size)) continue;
        const auto places = one->childrenOf("location");
        if (places.empty()) return {};
        const RecordTree &place = *places.front();
        return fromCorner(place.integer("offset_type"), {place.real("x"), place.real("y")}, size);
    }
    return {};
}

void checkPlaces(const RecordTree &block, const std::vector<const RecordTree *> &formats,
                 const std::string &where, Findings &findings)
{
    bool any = false;
    for (const RecordTree &location : block.children) {
        if (!isLocation(location)) continue;
        any = true;
        const std::string id = location.text("format_id");
        if (std::none_of(formats.begin(), formats.end(),
                         [&](const RecordTree *format) { return inSuite(*format, id); }))
            findings.add(where, location, "format_id",
                         fmt::format("\"{}\" is no format and no suite of the files: name one, or "
                                     "the file that defines it too",
                                     id));
        checkSizeNames(location, formats, where, findings);
        checkHiddenSizes(location, where + ", " + identityOf(location), findings);
    }
    if (!any)
        findings.add(where, block, "place",
                     "is missing: the block cannot be placed; place: {corner: ..., inset: [x, y]}");
    for (const RecordTree *format : formats) checkSizes(block, *format, where, findings);
}

} // namespace app::authoring
