#include "definitions/block_def.h"

#include "definitions/field_list.h"
#include "definitions/locations.h"
#include "definitions/pairwise.h"
#include "definitions/require.h"
#include "definitions/table_def.h"
#include "drawing/drawing.h"
#include "drawing/format.h"
#include "foundation/application.h"
#include "foundation/info_lines.h"
#include "foundation/log.h"
#include "foundation/registry.h"

#include <stdexcept>

namespace {

using Def = TrBlockDefV1;

// After the identifier and the category; the excluded blocks and what the record owns follow.
constexpr std::tuple kEqualityOrder{Def::kDescription, Def::kPatternName, Def::kDialogName,
                                    Def::kUnits,       Def::kMovable,     Def::kPatternLayer,
                                    Def::kTextLayer,   Def::kCanDelete};

constexpr std::tuple kCloneOrder = kEqualityOrder;

} // namespace

TrBlockDefV1::TrBlockDefV1() = default;
TrBlockDefV1::TrBlockDefV1(UgUDO *udo) : UDO(udo) {}
TrBlockDefV1::~TrBlockDefV1() = default;

std::string TrBlockDefV1::GetId() const
{
    if (!has(kId))
        throw std::runtime_error("Something wrong with block definition. It did not have a ID.");
    return get(kId);
}

// --- blocks that exclude each other, and the menu -----------------------------------------------------

std::vector<std::string> TrBlockDefV1::GetExcludeBlockIds(bool stored_only) const
{
    std::vector<std::string> ids = get(kExcludeBlockIds);
    std::erase(ids, "");
    if (stored_only) return ids;

    const std::string id = GetId();
    // No blank before "Excluded": the settings files of sites have it so.
    for (const std::string &excluded :
         QelFmt::Application::getRegistry()->getKeys(id + "Excluded Blocks Ids")) {
        QELFMT_INFO << "Adding site exclude block " << excluded << " for block " << id;
        ids.push_back(excluded);
    }
    return ids;
}

void TrBlockDefV1::SetExcludeBlockIds(const std::vector<std::string> &ids)
{
    if (ids.empty() && get(kExcludeBlockIds).empty()) return;
    set(kExcludeBlockIds, ids);
}

int TrBlockDefV1::GetShowInMenu() const
{
    return QelFmt::Application::getRegistry()->readIntEntry("Show In Menu", GetId(), 1);
}

// --- fields and tables --------------------------------------------------------------------------------

std::vector<TrFieldDefV1> TrBlockDefV1::GetFieldDefinitions() const
{
    return QelFmt::asValues(children(kFields));
}

TrFieldDefV1 TrBlockDefV1::GetFieldDefinition(const std::string &id) const
{
    return QelFmt::fieldOfId(GetFieldDefinitions(), id);
}

void TrBlockDefV1::AddFieldDefinition(const TrFieldDefV1 &field)
{
    attach(kFields.linkType, field);
}

void TrBlockDefV1::RemoveFieldDefinition(const TrFieldDefV1 &field)
{
    TrFieldDefV1 removed(field);
    discard(kFields.linkType, removed);
}

TrBlockDefV1::Tables TrBlockDefV1::GetTableDefinitions() const { return children(kTables); }

boost::shared_ptr<TrTableDefV1> TrBlockDefV1::GetTableDefinition(const std::string &id) const
{
    for (const auto &table : GetTableDefinitions()) {
        if (table->GetId() == id) return table;
    }
    return boost::shared_ptr<TrTableDefV1>(new TrTableDefV1);
}

void TrBlockDefV1::AddTableDefinition(const TrTableDefV1 &table)
{
    attach(kTables.linkType, table);
}

void TrBlockDefV1::RemoveTableDefinition(const TrTableDefV1 &table)
{
    TrTableDefV1 removed(table);
    discard(kTables.linkType, removed);
}

// --- places -------------------------------------------------------------------------------------------

std::vector<std::string> TrBlockDefV1::GetFormatIds() const
{
    std::vector<std::string> ids;
    for (const auto &location : getBlockLocations()) ids.push_back(location->GetFormatId());
    return ids;
}

TrBlockDefV1::BlockLocations TrBlockDefV1::getBlockLocations() const
{
    return children(kBlockLocations);
}

// The result keeps the order in which the places were found, though a new record is linked last.
TrBlockDefV1::BlockLocations TrBlockDefV1::getBlockLocationsAndUpgrade()
{
    BlockLocations locations = getBlockLocations();
    for (auto &location : locations) {
        const auto fresh = location->checkAndUpgrade();
        if (!fresh) continue;
        addBlockLocation(fresh);
        removeBlockLocation(location);
        location = fresh;
    }
    return locations;
}

void TrBlockDefV1::addBlockLocation(const boost::shared_ptr<QelFmt::BlockLocationBase> &location)
{
    QelFmt::require(location != nullptr,
                    "TrBlockDefV1::addBlockLocation: there is no block location");
    attach(kBlockLocations.linkType, *location);
}

void TrBlockDefV1::removeBlockLocation(const boost::shared_ptr<QelFmt::BlockLocationBase> &location)
{
    QelFmt::require(location != nullptr,
                    "TrBlockDefV1::removeBlockLocation: there is no block location");
    discard(kBlockLocations.linkType, *location);
}

std::vector<QelFmt::LocationInfoType>
TrBlockDefV1::getLocations(const boost::shared_ptr<TrDrawing> &drawing) const
{
    QelFmt::require(drawing != nullptr, "TrBlockDefV1::getLocations: there is no drawing");
    const boost::shared_ptr<TrFormatBase> format = drawing->format();
    if (!format->IsNull()) { // a sheet without a format has a place for no block
        const std::string format_id = format->GetFormatDefName();
        for (const auto &location : getBlockLocations()) {
            const std::string id = location->GetFormatId();
            if (id == format_id || format->inSuite(id)) return location->getValidLocations(drawing);
        }
    }
    throw std::runtime_error("Block location on format not found for block " + GetId());
}

std::vector<QelFmt::LocationInfoType> TrBlockDefV1::getLocations() const
{
    return getLocations(TrDrawing::getDrawing(*this));
}

QelFmt::LocationInfoType TrBlockDefV1::getLocation(int index) const
{
    const auto locations = getLocations();
    if (index < 0 || static_cast<std::size_t>(index) >= locations.size()) return {"", {-1.0, -1.0}};
    return locations[index];
}

QelFmt::LocationInfoType TrBlockDefV1::getDefaultLocation() const
{
    const auto locations = getLocations();
    if (locations.empty()) // the size is listed, without a place
        throw std::runtime_error("Block location on format not found for block " + GetId());
    return locations.front();
}

// --- copies and comparison ----------------------------------------------------------------------------

void TrBlockDefV1::Clone(const TrBlockDefV1 &source)
{
    SetId(source.GetId());
    SetCategory(source.GetCategory());
    copySlots(source, kCloneOrder);
    SetExcludeBlockIds(source.GetExcludeBlockIds(false));
    for (const auto &location : source.getBlockLocations()) addBlockLocation(location->clone());
    for (const TrFieldDefV1 &field : source.GetFieldDefinitions()) {
        TrFieldDefV1 copy;
        copy.Clone(field);
        AddFieldDefinition(copy);
    }
    for (const auto &table : source.GetTableDefinitions()) {
        TrTableDefV1 copy;
        copy.Clone(*table);
        AddTableDefinition(copy);
    }
}

boost::shared_ptr<TrBlockDefV1> TrBlockDefV1::doClone() const
{
    const boost::shared_ptr<TrBlockDefV1> copy(new TrBlockDefV1);
    copy->Clone(*this);
    return copy;
}

// The excluded blocks are compared with those of the site on both sides, though a copy has stored
// them: where a site excludes blocks, placed ones never agree with their definition file.
bool TrBlockDefV1::operator==(const TrBlockDefV1 &other) const
{
    return GetId() == other.GetId() && GetCategory() == other.GetCategory() &&
           sameSlots(other, kEqualityOrder) &&
           GetExcludeBlockIds(false) == other.GetExcludeBlockIds(false) &&
           QelFmt::pairwiseEqualTo(getBlockLocations(), other.getBlockLocations()) &&
           QelFmt::pairwise(GetFieldDefinitions(), other.GetFieldDefinitions(),
                            std::equal_to<>()) &&
           QelFmt::pairwise(GetTableDefinitions(), other.GetTableDefinitions(),
                            [](const auto &a, const auto &b) { return *a == *b; });
}

// --- what every record says of itself -----------------------------------------------------------------

void TrBlockDefV1::InfoObject()
{
    QelFmt::InfoLines info;
    info.line("ID", GetId());
    info.line("Description", GetDescription());
    info.line("Units", GetUnits() == 1 ? "Millimeters" : "Inches");
    info.line("Pattern Name", GetPatternName());
    info.line("Dialog Name", GetDialogName());
    info.line("Movable", GetMovable() != 0 ? "True" : "False");
    info.line("Pattern Layer", GetPatternLayer());
    info.line("Text Layer", GetTextLayer());
    info.text("Block locations:").flush();
    for (const auto &location : getBlockLocations()) location->InfoObject();
    info.text("Field Definitions:").flush();
    for (TrFieldDefV1 &field : GetFieldDefinitions()) field.InfoObject();
    info.text("Table Definitions:").flush();
    for (const auto &table : GetTableDefinitions()) table->InfoObject();
}

LumUg::UDO *TrBlockDefV1::CreateInstance() { return new TrBlockDefV1; }
