#include "app/update.h"

#include "app/output.h"
#include "app/problem.h"
#include "app/site_blocks.h"
#include "app/update_block.h"
#include "app/update_plan.h"
#include "app/workspace.h"

#include "api/trv_fmt.h"
#include "definitions/block_def.h"
#include "definitions/definition_file_manager.h"
#include "definitions/format_def.h"
#include "definitions/format_size.h"
#include "drawing/block.h"
#include "drawing/drawing.h"
#include "drawing/format.h"

#include <fmt/format.h>

#include <algorithm>

namespace app {

namespace {

using BlockPtr = boost::shared_ptr<TrBlockBase>;

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
    const bool frameAnew =
        has(drift.placed, "pattern art") || has(drift.placed, "layer of the pattern");
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
    for (const std::string &id : missingSiteBlocks(disk, format)) ids.push_back(id);
    return ids;
}

// Not a size that is gone, which the sheet keeps, nor blocks that are missing, which are added.
bool differs(const SheetDrift &drift)
{
    return !drift.definition.empty() ||
           std::any_of(drift.placed.begin(), drift.placed.end(),
                       [](const Difference &one) { return one.what != kMissing; });
}

// --- the blocks ---------------------------------------------------------------------------------------

using Point = std::array<double, 2>;

Point pointOf(const TrBlockBase &block) { return {block.GetX(), block.GetY()}; }

BlockUpdate planFor(TrBlockBase &block, const BlockDrift &drift, const TrFormatBase &format)
{
    BlockUpdate plan;
    plan.id = drift.id;
    plan.from = pointOf(block);
    if (drift.orphan) {
        plan.method = UpdateMethod::orphan;
    } else if (!drift.current()) {
        const auto disk = TrDefinitionFileManager::GetBlockDefinition(drift.id);
        plan.reasons = reasonsAgainstLibrary(block, drift, *disk);
        if (!hasPlace(*disk, format))
            plan.reasons.push_back("it has no place on this format any more and stays where it is");
        plan.method = plan.reasons.empty() ? UpdateMethod::library : UpdateMethod::byId;
    }
    return plan;
}

// A block whose definition is not to be moved goes home with any update of the library's, also from a
// point that the user chose.
void keepFreePlace(TrBlockBase &block, const Point &point, bool wasFree)
{
    if (wasFree && block.GetAlternateLocationIndex() >= 0) block.locateBlock(point.data());
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
                                  place, id),
                      kFindings);
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

bool UpdateReport::changed() const
{
    return before.state == SheetState::legacy || formatChanged || !addedBlocks.empty() ||
           !values.empty() || std::any_of(blocks.begin(), blocks.end(), [](const auto &block) {
               return block.method == UpdateMethod::library || block.method == UpdateMethod::byId ||
                      block.moved();
           });
}

std::vector<std::string> lossesOf(const UpdateReport &report) { return lossesOf(report.values); }

std::vector<std::string> rebuildDrifted(const std::vector<BlockPtr> &blocks)
{
    std::vector<std::string> ids;
    for (const BlockPtr &block : blocks) {
        const BlockDrift drift = driftOf(*block);
        if (drift.current() || drift.orphan) continue;
        rebuildBlock(*block, *TrDefinitionFileManager::GetBlockDefinition(drift.id));
        ids.push_back(drift.id);
    }
    return ids;
}

SheetBefore lookBefore(tag_t sheet)
{
    SheetBefore before;
    before.legacy = hasLegacyRecords(sheet);
    if (before.legacy) before.values = valuesOn(*storedFormat(sheet));
    return before;
}

bool canConvert(tag_t sheet, const SheetBefore &before)
{
    return before.legacy &&
           TrDefinitionFileManager::GetFormatDefinition(storedFormat(sheet)->GetFormatDefName());
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

    const auto required = newlyRequired(*format->getDefinition(), *disk, *format);
    report.formatChanged = differs(report.before);
    if (report.formatChanged) followFormat(*format, *disk, report.before);
    const auto blocks = format->getBlocks();
    std::vector<bool> free;
    for (std::size_t i = 0; i < blocks.size(); ++i) {
        report.blocks.push_back(planFor(*blocks[i], report.before.blocks[i], *format));
        free.push_back(blocks[i]->GetAlternateLocationIndex() < 0);
    }
    for (std::size_t i = 0; i < blocks.size(); ++i)
        if (report.blocks[i].method == UpdateMethod::byId)
            rebuildBlock(*blocks[i],
                         *TrDefinitionFileManager::GetBlockDefinition(report.blocks[i].id));
    checkLibrary(TRV_FMT_update(sheet), place); // what is left: nothing, for those made anew
    for (std::size_t i = 0; i < blocks.size(); ++i) {
        BlockUpdate &update = report.blocks[i];
        const UpdateMethod method = update.method;
        keepFreePlace(*blocks[i], update.from, free[i]);
        if (method == UpdateMethod::library ||
            (method == UpdateMethod::untouched && report.formatChanged))
            placeAnew(*blocks[i]);
        update.to = pointOf(*blocks[i]);
    }
    for (const std::string &id : required) {
        checkLibrary(TRV_FMT_add_block(sheet, id.c_str()), place);
        report.addedBlocks.push_back(id);
    }
    report.values = changesBetween(values, valuesOn(*format));
    return report;
}

} // namespace app
