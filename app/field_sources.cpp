#include "app/field_sources.h"

#include "content/field.h"
#include "definitions/field_def.h"

namespace app {

namespace {

enum DefaultType { kText = 0, kPart = 1, kSheet = 2, kSize = 3, kEnvironment = 4 };

std::string attributeOf(const TrFieldDefV1 &def)
{
    const Lines names = def.GetDefaultString();
    return names.empty() || names.front().empty() ? def.GetPartAttrString() : names.front();
}

// In the order in which the library looks.
std::vector<std::string> sourcesOf(const TrFieldDefV1 &def)
{
    std::vector<std::string> sources;
    const auto add = [&](const std::string &kind, const std::string &name) {
        if (!name.empty()) sources.push_back(kind + " " + name);
    };
    const int type = def.GetDefaultType();
    if (def.GetSyncAllDrawings() != 0) sources.push_back("other sheets");
    if (type == kPart) add("part", attributeOf(def));
    if (type == kSheet) add("sheet", attributeOf(def));
    if (type == kSize) sources.push_back("size");
    if (type != kSize) add("site", def.GetRegistryString());
    if (type == kText) sources.push_back("definition");
    if (type == kEnvironment)
        for (const std::string &name : def.GetDefaultString()) add("environment", name);
    return sources;
}

std::string shareOf(const TrFieldDefV1 &def)
{
    if (def.GetBroadcastString().empty()) return {};
    return (def.GetBroadcastType() == 1 ? "part " : "sheet ") + def.GetBroadcastString();
}

} // namespace

FieldSource sourceOf(const TrFieldBase &field)
{
    FieldSource source;
    source.value = field.GetValue();
    source.fresh = source.value;
    const TrFieldDefV1 def = field.GetDefinition();
    if (def.IsNull()) return source;
    source.from = sourcesOf(def);
    source.share = shareOf(def);
    source.allSheets = def.GetSyncAllDrawings() != 0;
    source.recompute = def.GetUseDefaultInitially() == 0;
    source.fresh = field.defaultValue();
    return source;
}

Json toJson(const FieldSource &source)
{
    return {{"from", source.from},
            {"share", source.share},
            {"all_sheets", source.allSheets},
            {"keep", source.recompute ? "recompute" : "typed"},
            {"value", toJson(source.value)},
            {"would_be", toJson(source.fresh)}};
}

} // namespace app
