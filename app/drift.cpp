#include "app/drift.h"

#include "app/drift_drawn.h"
#include "app/drift_slots.h"
#include "app/output.h"
#include "app/site_blocks.h"

#include "content/entry.h"
#include "content/field.h"
#include "content/table.h"
#include "definitions/block_def.h"
#include "definitions/definition_file_manager.h"
#include "definitions/field_def.h"
#include "definitions/format_def.h"
#include "definitions/format_size.h"
#include "definitions/table_def.h"
#include "drawing/block.h"
#include "drawing/drawing.h"
#include "drawing/format.h"
#include "drawing/links_to.h"
#include "drawing/pattern.h"

#include "uf_draw.h"
#include "ug_displayable.hxx"
#include "ug_exception.hxx"

#include <fmt/format.h>

#include <algorithm>

namespace app {

namespace {

using Names = std::vector<std::string>;

constexpr int kMillimetres = 1, kInches = 2; // units of formats and sheets

// --- older generations ------------------------------------------------------------------------------

template <class Current, class List> bool anyOlder(const List &records)
{
    return std::any_of(records.begin(), records.end(), [](const auto &record) {
        return !dynamic_cast<const Current *>(record.get());
    });
}

bool isLegacy(TrTableBase &table)
{
    if (!dynamic_cast<const TrTableV1 *>(&table)) return true;
    const auto rows = table.getEntries();
    return anyOlder<TrEntryV2>(rows) || std::any_of(rows.begin(), rows.end(), [](const auto &row) {
               return anyOlder<TrFieldV1>(row->getFields());
           });
}

bool isLegacy(TrBlockBase &block)
{
    if (!dynamic_cast<const TrBlockV1 *>(&block)) return true;
    const auto tables = block.getTables();
    return anyOlder<TrFieldV1>(block.getFields()) ||
           std::any_of(tables.begin(), tables.end(),
                       [](const auto &table) { return isLegacy(*table); });
}

// --- what stands on the sheet -------------------------------------------------------------------------

template <class Definitions> Names idsOf(const Definitions &definitions)
{
    Names ids;
    for (const auto &def : definitions) {
        if constexpr (requires { def.GetId(); })
            ids.push_back(def.GetId());
        else
            ids.push_back(def->GetId());
    }
    return ids;
}

template <class Fields> Names namesOf(const Fields &fields)
{
    Names names;
    for (const auto &field : fields) names.push_back(field->GetFieldDefName());
    return names;
}

void compareNames(const Names &placed, const Names &defined, const std::string &where,
                  const char *what, Differences &found)
{
    if (placed != defined)
        found.push_back({where, what, joined(placed, ", "), joined(defined, ", ")});
}

// Each field is linked to the record of its own name; `where` names the row of a table.
template <class Fields, class Definitions>
void checkFields(const Fields &fields, const Definitions &definitions, const std::string &where,
                 BlockDrift &drift)
{
    compareNames(namesOf(fields), idsOf(definitions), where, "placed fields", drift.placed);
    for (const auto &field : fields) {
        const std::string name = field->GetFieldDefName();
        const std::string label = where.empty() ? "field " + name : where + ", field " + name;
        const TrFieldDefV1 linked = field->GetDefinition();
        const bool own =
            std::any_of(definitions.begin(), definitions.end(), [&](const TrFieldDefV1 &def) {
                return !linked.IsNull() && def.tag() == linked.tag();
            });
        if (!linked.IsNull() && linked.GetId() != name)
            drift.miswired.push_back(where.empty() ? name : where + " " + name);
        else if (!own)
            drift.placed.push_back({label, "definition", linked.IsNull() ? "none" : "another copy",
                                    "that of the block"});
    }
}

void checkTables(TrBlockBase &block, const TrBlockDefV1 &stored, BlockDrift &drift)
{
    Names names;
    for (const auto &table : block.getTables()) {
        const std::string id = table->GetTableDefName();
        names.push_back(id);
        const auto def = stored.GetTableDefinition(id);
        if (!def || def->IsNull()) continue;
        if (table->GetDefinition()->tag() != def->tag())
            drift.placed.push_back({"table " + id, "definition", "another one", id});
        int row = 0;
        for (const auto &entry : table->getEntries())
            checkFields(entry->getFields(), def->GetFieldDefinitions(),
                        fmt::format("table {}, row {}", id, ++row), drift);
    }
    compareNames(names, idsOf(stored.GetTableDefinitions()), "", "placed tables", drift.placed);
}

Names patternNames(const LumUg::UDO &owner)
{
    Names names;
    for (const UgTypedObject *pattern : owner.GetOwnedObjects(ZemPattern::kObjectType))
        names.push_back(pattern->getName());
    return names;
}

// A pattern that is drawn already stays on its layer when the definition names another one.
void comparePattern(const LumUg::UDO &owner, const std::string &name, int layer, Differences &found)
{
    const Names wanted = name.empty() ? Names() : Names{name};
    if (const Names drawn = patternNames(owner); drawn != wanted)
        found.push_back({"", "pattern art", joined(drawn, ", "), name});
    for (UgTypedObject *object : owner.GetOwnedObjects(ZemPattern::kObjectType)) {
        const auto *pattern = dynamic_cast<const UgDisplayableObject *>(object);
        if (pattern && pattern->getLayer() != layer)
            found.push_back({"", "layer of the pattern", std::to_string(pattern->getLayer()),
                             std::to_string(layer)});
    }
}

std::string sizeText(const char *kind, int units, const std::string &size)
{
    return fmt::format("{} {} {}", kind, size, units == kMillimetres ? "mm" : "in");
}

// "custom 420 x 297 mm", "standard size 3 mm": a code alone is another size in the other units.
std::string drawnSize(tag_t sheet, bool byCode)
{
    UF_DRAW_info_t info{};
    UgException::throwOnFailure(UF_DRAW_ask_drawing_info(sheet, &info));
    if (byCode && info.size_state == UF_DRAW_METRIC_SIZE)
        return sizeText("standard", kMillimetres,
                        fmt::format("size {}", int(info.size.metric_size_code)));
    if (byCode && info.size_state == UF_DRAW_ENGLISH_SIZE)
        return sizeText("standard", kInches,
                        fmt::format("size {}", int(info.size.english_size_code)));
    const auto drawn = TrDrawing::getDrawing(sheet)->drawingSize();
    return sizeText("custom", info.units,
                    fmt::format("{} x {}", numberText(drawn[0]), numberText(drawn[1])));
}

// The library leaves the sheet as large as it was when a size of a format becomes another one.
void compareSheetSize(tag_t sheet, const TrFormatSizeV1 &size, int units, Differences &found)
{
    const int code = size.GetUgSizeCode();
    const int kept = units == kMillimetres ? kMillimetres : kInches;
    const std::string wanted = code != 0
                                   ? sizeText("standard", kept, fmt::format("size {}", code))
                                   : sizeText("custom", kept,
                                              fmt::format("{} x {}", numberText(size.GetLength()),
                                                          numberText(size.GetHeight())));
    if (const std::string drawn = drawnSize(sheet, true); drawn != wanted)
        found.push_back({"", "sheet size", drawn, wanted});
}

void compareFormat(tag_t sheet, TrFormatBase &format, SheetDrift &drift)
{
    const auto disk = TrDefinitionFileManager::GetFormatDefinition(drift.format);
    drift.orphan = !disk;
    if (!disk) return;
    const auto stored = format.getDefinition();
    if (stored->IsNull()) {
        drift.definition.push_back({"", "definition", "none", drift.format});
        return;
    }
    drift.definition = compareDefinitions(*stored, *disk);
    for (const std::string &id : missingSiteBlocks(*disk, format))
        drift.placed.push_back({"block " + id, kMissing, "absent", "required by the site"});
    const TrFormatSizeV1 size = disk->GetSizeDef(drift.size);
    if (size.IsNull()) { // the sheet keeps what it has
        drift.placed.push_back({"size " + drift.size, kMissing, "placed",
                                "the format has none any more: choose another with 'qelfmt format "
                                "resize'"});
        return;
    }
    comparePattern(format, size.GetFrameName(), size.GetFrameLayer(), drift.placed);
    compareSheetSize(sheet, size, disk->GetUnits(), drift.placed);
}

bool holds(const Names &names, const std::string &name)
{
    return std::find(names.begin(), names.end(), name) != names.end();
}

void addArt(const LumUg::UDO &owner, const Names &changed, Differences &found)
{
    for (const std::string &name : patternNames(owner))
        if (holds(changed, name))
            found.push_back({"", "pattern art", "as it was drawn", name + " has changed"});
}

SheetState stateOf(const SheetDrift &drift)
{
    const auto any = [&](auto member) {
        return std::any_of(drift.blocks.begin(), drift.blocks.end(), member);
    };
    if (drift.orphan || any([](const BlockDrift &block) { return block.orphan; }))
        return SheetState::orphan;
    if (any([](const BlockDrift &block) { return !block.miswired.empty(); }))
        return SheetState::miswired;
    const bool changes = any(
        [](const BlockDrift &block) { return !block.definition.empty() || !block.placed.empty(); });
    return changes || !drift.definition.empty() || !drift.placed.empty() ? SheetState::drifted
                                                                         : SheetState::current;
}

} // namespace

std::string nameOf(SheetState state)
{
    switch (state) {
    case SheetState::none:
        return "none";
    case SheetState::legacy:
        return "legacy";
    case SheetState::orphan:
        return "orphan";
    case SheetState::miswired:
        return "miswired";
    case SheetState::drifted:
        return "drifted";
    case SheetState::current:
        break;
    }
    return "current";
}

boost::shared_ptr<TrFormatBase> storedFormat(tag_t sheet)
{
    const LinksTo links(sheet);
    for (const UF_UDOBJ_link_t &link : links.links())
        if (const auto format =
                boost::dynamic_pointer_cast<TrFormatBase>(LumUg::UDO::Create(link.assoc_ug_tag)))
            return format;
    return {};
}

bool hasLegacyRecords(tag_t sheet)
{
    const auto format = storedFormat(sheet);
    if (!format) return false;
    if (!dynamic_cast<const TrFormatV1 *>(format.get())) return true;
    const auto blocks = format->getBlocks();
    return std::any_of(blocks.begin(), blocks.end(),
                       [](const auto &block) { return isLegacy(*block); });
}

BlockDrift driftOf(TrBlockBase &block)
{
    BlockDrift drift;
    drift.id = block.GetBlockDefName();
    const auto disk = TrDefinitionFileManager::GetBlockDefinition(drift.id);
    drift.orphan = !disk;
    if (!disk) return drift;
    const auto stored = block.GetDefinition();
    if (stored->IsNull()) {
        drift.definition.push_back({"", "definition", "none", drift.id});
        return drift;
    }
    drift.definition = compareDefinitions(*stored, *disk);
    checkFields(block.getFields(), stored->GetFieldDefinitions(), "", drift);
    checkTables(block, *stored, drift);
    comparePattern(block, stored->GetPatternName(), stored->GetPatternLayer(), drift.placed);
    compareDrawn(block, *stored, drift.placed);
    return drift;
}

SheetDrift driftOf(tag_t sheet)
{
    SheetDrift drift;
    const bool legacy = hasLegacyRecords(sheet);
    const auto drawing = TrDrawing::getDrawing(sheet);
    if (!drawing->hasFormat()) return drift;
    const auto format = drawing->format();
    drift.format = format->GetFormatDefName();
    drift.size = format->GetSizeName();
    compareFormat(sheet, *format, drift);
    const Art art = lookAtArt(sheet);
    drift.unreadable = art.unreadable;
    addArt(*format, art.changed, drift.placed);
    for (const auto &block : format->getBlocks()) {
        drift.blocks.push_back(driftOf(*block));
        if (!drift.blocks.back().orphan) addArt(*block, art.changed, drift.blocks.back().placed);
    }
    drift.state = legacy ? SheetState::legacy : stateOf(drift);
    return drift;
}

} // namespace app
