#include "definitions/format_def.h"

#include "definitions/pairwise.h"
#include "foundation/application.h"
#include "foundation/info_lines.h"
#include "foundation/log.h"
#include "foundation/registry.h"

#include <algorithm>
#include <stdexcept>

namespace {

using Def = TrFormatDefV1;

// After the identifier and the category; the units stay out.
constexpr std::tuple kEqualityOrder{Def::kDescription, Def::kSuiteName};

// As stored: required blocks that the site adds are never copied into a drawing.
constexpr std::tuple kCloneOrder{Def::kDescription, Def::kSuiteName, Def::kRequiredBlockIds,
                                 Def::kUnits, Def::kObsolete};

} // namespace

TrFormatDefV1::TrFormatDefV1() = default;
TrFormatDefV1::TrFormatDefV1(UgUDO *udo) : UDO(udo) {}
TrFormatDefV1::~TrFormatDefV1() = default;

std::string TrFormatDefV1::GetId() const
{
    if (!has(kId))
        throw std::runtime_error("Something wrong with format definition. It did not have a ID.");
    return get(kId);
}

// --- what the site adds -------------------------------------------------------------------------------

std::vector<std::string> TrFormatDefV1::GetRequiredBlockIds(bool stored_only) const
{
    QELFMT_INFO << "Getting required block IDs.";
    std::vector<std::string> ids = get(kRequiredBlockIds);
    for (const std::string &id : ids)
        QELFMT_VERBOSE << "Adding Required Block ID " << id << " to list.";
    if (stored_only) return ids;

    for (const std::string &id :
         QelFmt::Application::getRegistry()->getKeys(GetId() + " Required Blocks")) {
        QELFMT_VERBOSE << "Adding Site Required Block ID " << id << " to list.";
        ids.push_back(id);
    }
    return ids;
}

void TrFormatDefV1::SetRequiredBlockIds(const std::vector<std::string> &ids)
{
    if (ids.empty() && get(kRequiredBlockIds).empty()) return;
    set(kRequiredBlockIds, ids);
}

// The site's section says what is shown, and is read here as what is obsolete: sites have set their
// files up by what comes of it.
bool TrFormatDefV1::GetObsolete(bool ask_site) const
{
    static constexpr char kSection[] = "Show In Menu";
    if (ask_site) {
        const QelFmt::Registry &registry = *QelFmt::Application::getRegistry();
        const std::string id = GetId();
        if (registry.keyExists(kSection, id)) return registry.readIntEntry(kSection, id, 1) != 0;
    }
    return get(kObsolete) != 0;
}

// --- sizes --------------------------------------------------------------------------------------------

std::vector<TrFormatSizeV1> TrFormatDefV1::GetAvailableSizes() const
{
    std::vector<TrFormatSizeV1> sizes;
    for (const auto &size : children(kSizes)) sizes.push_back(*size);
    return sizes;
}

TrFormatSizeV1 TrFormatDefV1::GetSizeDef(const std::string &name) const
{
    for (const TrFormatSizeV1 &size : GetAvailableSizes()) {
        if (size.GetId() == name) return size;
    }
    return {};
}

void TrFormatDefV1::AddSize(const TrFormatSizeV1 &size) { attach(kSizes.linkType, size); }

void TrFormatDefV1::RemoveSize(const TrFormatSizeV1 &size)
{
    TrFormatSizeV1 removed(size);
    discard(kSizes.linkType, removed);
}

bool TrFormatDefV1::inSuite(const std::string &name) const
{
    if (name.empty()) return false;
    if (name == "Default" || name == GetSuiteName()) return true;
    const std::vector<TrFormatSizeV1> sizes = GetAvailableSizes();
    return std::any_of(sizes.begin(), sizes.end(),
                       [&](const TrFormatSizeV1 &size) { return size.GetSuiteName() == name; });
}

// --- copies and comparison ----------------------------------------------------------------------------

void TrFormatDefV1::Clone(const TrFormatDefV1 &source)
{
    SetId(source.GetId());
    SetCategory(source.GetCategory());
    copySlots(source, kCloneOrder);
    for (const TrFormatSizeV1 &size : source.GetAvailableSizes()) {
        TrFormatSizeV1 copy;
        copy.Clone(size);
        AddSize(copy);
    }
}

bool TrFormatDefV1::operator==(const TrFormatDefV1 &other) const
{
    return GetId() == other.GetId() && GetCategory() == other.GetCategory() &&
           sameSlots(other, kEqualityOrder) && GetObsolete(false) == other.GetObsolete(false) &&
           GetRequiredBlockIds(false) == other.GetRequiredBlockIds(false) &&
           QelFmt::pairwise(GetAvailableSizes(), other.GetAvailableSizes(), std::equal_to<>());
}

// --- what every record says of itself -----------------------------------------------------------------

void TrFormatDefV1::InfoObject()
{
    QelFmt::InfoLines info;
    info.line("ID", GetId());
    info.line("Description", GetDescription());
    info.line("Units", GetUnits() == 1 ? "Millimeters" : "Inches");
    info.text("Required Block IDs:");
    for (const std::string &id : GetRequiredBlockIds(true)) info.text(id);
    info.text("Available sizes:").flush();
    for (TrFormatSizeV1 &size : GetAvailableSizes()) size.InfoObject();
}

LumUg::UDO *TrFormatDefV1::CreateInstance() { return new TrFormatDefV1; }
