#include "definitions/block_location_v1.h"

#include "definitions/point_text.h"
#include "definitions/require.h"
#include "drawing/drawing.h"
#include "foundation/info_lines.h"
#include "foundation/log.h"

#include "uf_udobj.h"
#include "ug_exception.hxx"

namespace QelFmt {

TrBlockLocationV1::TrBlockLocationV1() = default;
TrBlockLocationV1::TrBlockLocationV1(UgUDO *udo) : BlockLocationBase(udo) {}
TrBlockLocationV1::~TrBlockLocationV1() = default;

// --- the lists ------------------------------------------------------------------------------------

// The points are left alone: whoever shortens the list and wants them gone removes name by name.
void TrBlockLocationV1::SetSizeNames(const std::vector<std::string> &names)
{
    if (names.empty() && GetSizeNames().empty()) return;
    set(kSizeNames, names);
}

void TrBlockLocationV1::RemoveSizeName(unsigned i)
{
    std::vector<std::string> names = GetSizeNames();
    if (i >= names.size()) return;
    names.erase(names.begin() + i);
    removePoint(i);
    SetSizeNames(names);
}

// The platform deletes all numbers or none: what is kept is added again, and when that fails, all.
void TrBlockLocationV1::removePoint(unsigned i)
{
    const std::vector<double> all = GetDoubles();
    const std::size_t first = kSizeXLoc.first + std::size_t(i) * kSizeXLoc.stride;
    if (first >= all.size()) return;
    std::vector<double> kept(all.begin(), all.begin() + first);
    kept.insert(kept.end(), all.begin() + std::min(first + kSizeXLoc.stride, all.size()),
                all.end());
    UgException::throwOnFailure(UF_UDOBJ_delete_doubles(tag()));
    try {
        if (!kept.empty()) GetUdoObject()->addDoubles(kept);
    } catch (...) {
        GetUdoObject()->addDoubles(all);
        throw;
    }
}

// --- the place on a sheet -------------------------------------------------------------------------

std::vector<LocationInfoType>
TrBlockLocationV1::getValidLocations(const boost::shared_ptr<TrDrawing> &drawing) const
{
    require(drawing != nullptr, "TrBlockLocationV1::getValidLocations: there is no drawing");
    LocationInfoType place{"", {0.0, 0.0}};
    const SheetNames sheet = sheetNames(*drawing);
    const std::vector<std::string> names = GetSizeNames();
    for (unsigned i = 0; i < names.size(); ++i) {
        if (!isAmong(sheet, names[i])) continue;
        place = {"Untitled", {GetSizeXLoc(i), GetSizeYLoc(i)}};
        break;
    }
    // Also when no size is for the sheet: the block then stands in the corner itself.
    place.location = fromCorner(GetOffsetType(), place.location, drawing->drawingSize());
    QELFMT_INFO << "Block will be location at " << pointText(place.location[0], place.location[1]);
    return {place};
}

// --- as objects of the current generation -----------------------------------------------------------

BlockLocationBase::SizeLocations TrBlockLocationV1::getSizeLocations() const
{
    SizeLocations sizes;
    const std::vector<std::string> names = GetSizeNames();
    for (unsigned i = 0; i < names.size(); ++i) {
        const boost::shared_ptr<LocationBase> location = LocationBase::createLocation();
        location->SetName("Untitled");
        location->SetOffsetType(GetOffsetType());
        location->setLocation({GetSizeXLoc(i), GetSizeYLoc(i)});

        const boost::shared_ptr<SizeLocationBase> size = SizeLocationBase::createSizeLocation();
        size->SetSizeId(names[i]);
        size->addLocation(location);
        sizes.push_back(size);
    }
    return sizes;
}

void TrBlockLocationV1::addSizeLocation(const boost::shared_ptr<SizeLocationBase> &) {}
void TrBlockLocationV1::removeSizeLocation(const boost::shared_ptr<SizeLocationBase> &) {}
void TrBlockLocationV1::removeAndRetainSizeLocation(const boost::shared_ptr<SizeLocationBase> &) {}

// --- copies and comparison ----------------------------------------------------------------------------

bool TrBlockLocationV1::equalTo(const BlockLocationBase *other) const
{
    static constexpr std::tuple kEqualityOrder{kFormatId, kSizeNames, kOffsetType};
    const auto *same = dynamic_cast<const TrBlockLocationV1 *>(other);
    return same && sameSlots(*same, kEqualityOrder) && samePoints(*same);
}

// Those of the sizes; what is stored beyond them says nothing.
bool TrBlockLocationV1::samePoints(const TrBlockLocationV1 &other) const
{
    const std::size_t count = GetSizeNames().size();
    for (unsigned i = 0; i < count; ++i) {
        if (!(GetSizeXLoc(i) == other.GetSizeXLoc(i))) return false;
        if (!(GetSizeYLoc(i) == other.GetSizeYLoc(i))) return false;
    }
    return true;
}

boost::shared_ptr<BlockLocationBase> TrBlockLocationV1::doClone() const
{
    const boost::shared_ptr<TrBlockLocationV1> copy(new TrBlockLocationV1);
    static constexpr std::tuple kCloneOrder{kFormatId, kSizeNames, kOffsetType};
    copy->copySlots(*this, kCloneOrder);
    const std::vector<double> points = GetDoubles();
    if (!points.empty()) copy->GetUdoObject()->addDoubles(points);
    return copy;
}

// --- what every record says of itself -----------------------------------------------------------------

void TrBlockLocationV1::InfoObject()
{
    InfoLines info;
    info.text("Block locations for format " + GetFormatId());
    const std::vector<std::string> names = GetSizeNames();
    for (unsigned i = 0; i < names.size(); ++i)
        info.text("  " + names[i] + ": " + pointText(GetSizeXLoc(i), GetSizeYLoc(i)));
    info.flush();
}

LumUg::UDO *TrBlockLocationV1::CreateInstance() { return new TrBlockLocationV1; }

} // namespace QelFmt
