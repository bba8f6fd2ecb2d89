#include "app/update.h"

#include "app/output.h"
#include "app/problem.h"
#include "app/update_block.h"
#include "app/update_plan.h"
#include "app/workspace.h"

#include "api/trv_fmt.h"
#include "content/entry.h"
#include "content/field.h"
#include "content/table.h"
#include "definitions/block_def.h"
#include "definitions/definition_file_manager.h"
#include "definitions/field_def.h"
#include "definitions/format_def.h"
#include "definitions/format_size.h"
#include "drawing/block.h"
#include "drawing/drawing.h"
#include "drawing/format.h"

#include <fmt/format.h>

#include <algorithm>
#include <map>
#include <utility>

namespace app {

namespace {

using BlockPtr = boost::shared_ptr<TrBlockBase>;
using Lines = std::vector<std::string>;

// --- values before and after --------------------------------------------------------------------------

using Key = std::pair<std::size_t, std::string>; // the place of the block, which an update keeps

Key keyOf(const ShownValue &value) { return {value.blockIndex, value.field}; }

template <class Fields>
void addValues(std::size_t index, const std::string &block, const Fields &fields,
               const std::string &before, std::vector<ShownValue> &values)
{
    std::map<std::string, int> seen;
    for (const auto &field : fields) {
        const std::string name = before + field->GetFieldDefName();
        const int count = seen[name]++;
        values.push_back({index, block, count ? fmt::format("{} ({})", name, count + 1) : name,
                          field->GetValue()});
    }
}

std::vector<ShownValue> valuesOn(const TrFormatBase &format)
{
    std::vector<ShownValue> values;
    std::size_t index = 0;
    for (const BlockPtr &block : format.getBlocks()) {
        const std::string id = block->GetBlockDefName();
        addValues(index, id, block->getFields(), "", values);
        for (const auto &table : block->getTables()) {
            int row = 0;
            for (const auto &entry : table->getEntries())
                addValues(index, id, entry->getFields(),
                          fmt::format("{}[{}].", table->GetTableDefName(), row++), values);
        }
        ++index;
    }
    return values;
}

bool saysSomething(const Lines &lines)
{
    return std::any_of(lines.begin(), lines.end(), [](const auto &line) { return !line.empty(); });
}

std::vector<ValueChange> changes(const std::vector<ShownValue> &before,
                                 const std::vector<ShownValue> &after)
{
    std::map<Key, const ShownValue *> old, now;
    for (const ShownValue &value : before) old.emplace(keyOf(value), &value);
    for (const ShownValue &value : after) now.emplace(keyOf(value), &value);
    std::vector<ValueChange> found;
    for (const ShownValue &was : before) {
        const auto still = now.find(keyOf(was));
        if (still == now.end()) {
            if (saysSomething(was.lines))
                found.push_back({was.block, was.field, ValueChangeKind::lost, was.lines, {}});
        } else if (still->second->lines != was.lines) {
            found.push_back({was.block, was.field, ValueChangeKind::recomputed, was.lines,
                             still->second->lines});
        }
    }
    for (const ShownValue &is : after)
        if (!old.contains(keyOf(is)))
            found.push_back({is.block, is.field, ValueChangeKind::added, {}, is.lines});
    return found;
}

// --- the format ---------------------------------------------------------------------------------------

bool has(const Differences &differences, const std::string &what)
{
    return std::any_of(differences.begin(), differences.end(),
                       [&](const Difference &one) { return one.what == what; });
}

// Resizing would place the blocks by their old definitions, which need not know the new size: they are
// taken off meanwhile.
void resizeWithoutBlocks(TrFormatBase &format, const TrFormatSizeV1 &size)
{
    auto blocks = format.getBlocks();
    for (BlockPtr &block : blocks) format.retainBlock(block);
    format.SetSizeName("");
    format.resize(size);
    for (const BlockPtr &block : blocks) format.addBlock(block);
}

// The library leaves the size of the sheet and a frame of the same name alone.
void followFormat(TrFormatBase &format, const TrFormatDefV1 &disk, const SheetDrift &drift)
{
    const boost::shared_ptr<TrFormatDefV1> copy(new TrFormatDefV1);
    copy->Clone(disk);
    format.setDefinition(copy);
    const TrFormatSizeV1 size = copy->GetSizeDef(format.GetSizeName());
    if (size.IsNull()) return; // the sheet keeps its size and its frame
    const bool frameAnew = has(drift.placed, "pattern art") || has(drift.definition, "frame_layer");
    if (frameAnew) format.removePattern();
    if (has(drift.placed, "sheet size") || has(drift.definition, "units"))
        resizeWithoutBlocks(format, size);
    else
        format.updatePattern();
}

std::vector<std::string> newlyRequired(const TrFormatDefV1 &stored, const TrFormatDefV1 &disk,
                                       const TrFormatBase &format)
{
    std::vector<std::string> ids;
    const auto before =
        stored.IsNull() ? std::vector<std::string>() : stored.GetRequiredBlockIds(true);
    for (const std::string &id : disk.GetRequiredBlockIds(true)) {
        const bool wasRequired = std::find(before.begin(), before.end(), id) != before.end();
        if (!wasRequired && !format.hasBlock(id) && TrDefinitionFileManager::GetBlockDefinition(id))
            ids.push_back(id);
    }
    return ids;
}

// --- the blocks ---------------------------------------------------------------------------------------

BlockUpdate planFor(TrBlockBase &block, const BlockDrift &drift)
{
    BlockUpdate plan;
    plan.id = drift.id;
    if (drift.orphan) {
        plan.method = UpdateMethod::orphan;
    } else if (!drift.current()) {
        const auto disk = TrDefinitionFileManager::GetBlockDefinition(drift.id);
        plan.reasons = reasonsAgainstLibrary(block, drift, *disk);
        plan.method = plan.reasons.empty() ? UpdateMethod::library : UpdateMethod::byId;
    }
    return plan;
}

void requireFormat(tag_t sheet, const std::string &place)
{
    const auto drawing = TrDrawing::getDrawing(sheet);
    if (!drawing->hasFormat()) throw Problem(place + ": has no format to update");
    const std::string id = drawing->format()->GetFormatDefName();
    if (!TrDefinitionFileManager::GetFormatDefinition(id))
        throw Problem(fmt::format("{}: format {} is not defined in the search directories any "
                                  "more: restore its definition, or change to another format with "
                                  "'qelfmt format replace'",
                                  place, id));
}

} // namespace

std::string nameOf(UpdateMethod method)
{
    switch (method) {
    case UpdateMethod::untouched:
        return "current";
    case UpdateMethod::library:
        return "updated";
    case UpdateMethod::byId:
        return "updated by id";
    case UpdateMethod::orphan:
        break;
    }
    return "orphan";
}

std::string nameOf(ValueChangeKind kind)
{
    switch (kind) {
    case ValueChangeKind::added:
        return "added";
    case ValueChangeKind::lost:
        return "lost";
    case ValueChangeKind::recomputed:
        break;
    }
    return "recomputed";
}

std::vector<std::string> lossesOf(const UpdateReport &report)
{
    std::vector<std::string> losses;
    for (const ValueChange &value : report.values)
        if (value.kind == ValueChangeKind::lost)
            losses.push_back(
                fmt::format("{}.{} = {}", value.block, value.field, joined(value.before, " | ")));
    return losses;
}

SheetBefore lookBefore(tag_t sheet)
{
    SheetBefore before;
    before.legacy = hasLegacyRecords(sheet);
    if (before.legacy) before.values = valuesOn(*storedFormat(sheet));
    return before;
}

UpdateReport updateSheet(tag_t sheet, const std::string &place)
{
    return updateSheet(sheet, place, lookBefore(sheet));
}

UpdateReport updateSheet(tag_t sheet, const std::string &place, const SheetBefore &before)
{
    UpdateReport report;
    report.before = driftOf(sheet);
    if (before.legacy) report.before.state = SheetState::legacy;
    requireFormat(sheet, place);
    const auto format = TrDrawing::getDrawing(sheet)->format();
    const auto disk = TrDefinitionFileManager::GetFormatDefinition(format->GetFormatDefName());
    const auto values = before.legacy ? before.values : valuesOn(*format);

    const auto blocks = format->getBlocks();
    for (std::size_t i = 0; i < blocks.size(); ++i)
        report.blocks.push_back(planFor(*blocks[i], report.before.blocks[i]));
    const auto required = newlyRequired(*format->getDefinition(), *disk, *format);

    report.formatChanged = !report.before.definition.empty() || !report.before.placed.empty();
    if (report.formatChanged) followFormat(*format, *disk, report.before);
    for (std::size_t i = 0; i < blocks.size(); ++i)
        if (report.blocks[i].method == UpdateMethod::byId)
            rebuildBlock(*blocks[i],
                         *TrDefinitionFileManager::GetBlockDefinition(report.blocks[i].id));
    checkLibrary(TRV_FMT_update(sheet), place); // what is left: nothing, for those made anew
    for (std::size_t i = 0; i < blocks.size(); ++i) {
        const UpdateMethod method = report.blocks[i].method;
        if (method == UpdateMethod::library ||
            (method == UpdateMethod::untouched && report.formatChanged))
            placeAnew(*blocks[i]);
    }
    for (const std::string &id : required) {
        checkLibrary(TRV_FMT_add_block(sheet, id.c_str()), place);
        report.addedBlocks.push_back(id);
    }
    report.values = changes(values, valuesOn(*format));
    return report;
}

} // namespace app
