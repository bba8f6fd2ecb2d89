#include "app/update_plan.h"

#include "content/entry.h"
#include "content/field.h"
#include "content/table.h"
#include "definitions/block_def.h"
#include "definitions/field_def.h"
#include "definitions/table_def.h"
#include "drawing/block.h"

#include <algorithm>
#include <set>

namespace app {

namespace {

using Names = std::vector<std::string>;

// What the library carries over to a field that stands already. Any other slot of a field that changes
// needs a field made anew.
const std::set<std::string> kCarriedByFields{"location_x",
                                             "location_y",
                                             "default_string",
                                             "registry_string",
                                             "part_attr_string",
                                             "text_angle",
                                             "text_aspect",
                                             "line_space",
                                             "margin_height",
                                             "margin_width",
                                             "text_color",
                                             "text_justification",
                                             "text_width_type",
                                             "alt_text_size",
                                             "alt_text_size_num_chars",
                                             "alt_text_aspect",
                                             "alt_text_aspect_num_chars",
                                             "char_space_factor",
                                             "relative_offset_type"};
// Those of which it carries every value but "none given".
const std::set<std::string> kCarriedUnlessEmpty{"text_size", "text_font_name", "text_site", "width",
                                                "height"};
const std::set<std::string> kLayers{"pattern_layer", "text_layer"};

bool isEmpty(const std::string &text) { return text.empty() || text == "0"; }

bool carried(const Difference &difference)
{
    if (difference.what == "record" || difference.what == "order")
        return true; // judged by the order of the names
    const bool ofField = difference.where.starts_with("field ") ||
                         difference.where.find(", field ") != std::string::npos;
    if (!ofField) return !kLayers.contains(difference.what);
    if (kCarriedByFields.contains(difference.what)) return true;
    return kCarriedUnlessEmpty.contains(difference.what) && !isEmpty(difference.disk) &&
           !isEmpty(difference.stored);
}

template <class Fields> Names namesOf(const Fields &fields)
{
    Names names;
    for (const auto &field : fields) names.push_back(field->GetFieldDefName());
    return names;
}

Names idsOf(const std::vector<TrFieldDefV1> &definitions)
{
    Names ids;
    for (const TrFieldDefV1 &def : definitions) ids.push_back(def.GetId());
    return ids;
}

bool unique(const Names &names)
{
    return std::set<std::string>(names.begin(), names.end()).size() == names.size();
}

// Those that stay are the first of the new ones, in their order: new ones come behind them.
bool pairsByPosition(const Names &placed, const Names &defined)
{
    Names staying;
    for (const std::string &name : placed)
        if (std::find(defined.begin(), defined.end(), name) != defined.end())
            staying.push_back(name);
    return unique(placed) && unique(defined) && staying.size() <= defined.size() &&
           std::equal(staying.begin(), staying.end(), defined.begin());
}

bool tablesPair(TrBlockBase &block, const TrBlockDefV1 &disk)
{
    Names placed, defined;
    for (const auto &table : block.getTables()) placed.push_back(table->GetTableDefName());
    for (const auto &def : disk.GetTableDefinitions()) defined.push_back(def->GetId());
    return placed == defined && unique(defined);
}

bool rowsPair(TrBlockBase &block, const TrBlockDefV1 &disk)
{
    for (const auto &table : block.getTables()) {
        const auto def = disk.GetTableDefinition(table->GetTableDefName());
        if (!def || def->IsNull()) return false;
        const Names defined = idsOf(def->GetFieldDefinitions());
        for (const auto &row : table->getEntries())
            if (!pairsByPosition(namesOf(row->getFields()), defined)) return false;
    }
    return true;
}

} // namespace

Names reasonsAgainstLibrary(TrBlockBase &block, const BlockDrift &drift, const TrBlockDefV1 &disk)
{
    Names reasons;
    if (!drift.miswired.empty()) reasons.push_back("fields show the definitions of others");
    const auto isArt = [](const Difference &one) { return one.what == "pattern art"; };
    const auto art = std::count_if(drift.placed.begin(), drift.placed.end(), isArt);
    if (art > 0) reasons.push_back("its pattern has changed");
    if (art < std::ssize(drift.placed))
        reasons.push_back("the block differs from its own definition");
    if (!pairsByPosition(namesOf(block.getFields()), idsOf(disk.GetFieldDefinitions())))
        reasons.push_back("fields have changed their order");
    if (!tablesPair(block, disk))
        reasons.push_back("tables have come, gone or changed their order");
    else if (!rowsPair(block, disk))
        reasons.push_back("the fields of rows have changed their order");
    std::set<std::string> slots;
    for (const Difference &difference : drift.definition)
        if (!carried(difference)) slots.insert(difference.what);
    for (const std::string &slot : slots) reasons.push_back(slot + " has changed");
    return reasons;
}

} // namespace app
