#include "definitions/block_location.h"

#include "definitions/in_part_of.h"
#include "definitions/pairwise.h"
#include "definitions/require.h"
#include "drawing/drawing.h"
#include "drawing/format.h"

namespace QelFmt {

// --- any generation -------------------------------------------------------------------------------

BlockLocationBase::BlockLocationBase() = default;
BlockLocationBase::BlockLocationBase(UgUDO *udo) : UDO(udo) {}
BlockLocationBase::~BlockLocationBase() = default;

boost::shared_ptr<BlockLocationBase> BlockLocationBase::createBlockLocation()
{
    const boost::shared_ptr<BlockLocationBase> location(new BlockLocationV2);
    location->SetFormatId("changeMe");
    return location;
}

// A record of the first generation answers with new size locations each time it is asked, and owns
// none: only those of a current one are looked at.
boost::shared_ptr<BlockLocationBase> BlockLocationBase::checkAndUpgrade()
{
    if (!dynamic_cast<BlockLocationV2 *>(this)) return upgrade();
    for (const auto &location : getSizeLocations()) {
        const boost::shared_ptr<SizeLocationBase> fresh = location->checkAndUpgrade();
        if (!fresh) continue;
        addSizeLocation(fresh);
        removeSizeLocation(location);
    }
    return {};
}

boost::shared_ptr<BlockLocationBase> BlockLocationBase::upgrade()
{
    return inPartOf(*this, [&] {
        const boost::shared_ptr<BlockLocationBase> fresh = createBlockLocation();
        fresh->SetFormatId(GetFormatId());
        for (const auto &location : getSizeLocations()) {
            removeAndRetainSizeLocation(location);
            fresh->addSizeLocation(location);
        }
        return fresh;
    });
}

BlockLocationBase::SheetNames BlockLocationBase::sheetNames(const TrDrawing &drawing)
{
    constexpr char every[] = "Default";
    const boost::shared_ptr<TrFormatBase> format = drawing.format();
    if (format->IsNull()) return {every, every, every};
    return {format->GetSizeName(), format->sizeSuiteName(), every};
}

// --- the current generation -----------------------------------------------------------------------

BlockLocationV2::BlockLocationV2() = default;
BlockLocationV2::BlockLocationV2(UgUDO *udo) : BlockLocationBase(udo) {}
BlockLocationV2::~BlockLocationV2() = default;

BlockLocationBase::SizeLocations BlockLocationV2::getSizeLocations() const
{
    return children(kSizeLocations);
}

void BlockLocationV2::addSizeLocation(const boost::shared_ptr<SizeLocationBase> &location)
{
    require(location != nullptr, "BlockLocationV2::addSizeLocation: there is no size location");
    attach(kSizeLocations.linkType, *location);
}

void BlockLocationV2::removeSizeLocation(const boost::shared_ptr<SizeLocationBase> &location)
{
    require(location != nullptr, "BlockLocationV2::removeSizeLocation: there is no size location");
    discard(kSizeLocations.linkType, *location);
}

void BlockLocationV2::removeAndRetainSizeLocation(
    const boost::shared_ptr<SizeLocationBase> &location)
{
    require(location != nullptr,
            "BlockLocationV2::removeAndRetainSizeLocation: there is no size location");
    detach(kSizeLocations.linkType, *location);
}

std::vector<LocationInfoType>
BlockLocationV2::getValidLocations(const boost::shared_ptr<TrDrawing> &drawing) const
{
    require(drawing != nullptr, "BlockLocationV2::getValidLocations: there is no drawing");
    const SheetNames names = sheetNames(*drawing);
    for (const auto &location : getSizeLocations()) {
        if (isAmong(names, location->GetSizeId())) return location->getAdjustedLocations(drawing);
    }
    return {{"", {0.0, 0.0}}};
}

bool BlockLocationV2::equalTo(const BlockLocationBase *other) const
{
    const auto *same = dynamic_cast<const BlockLocationV2 *>(other);
    return same && sameSlots(*same, kLayout) &&
           pairwiseEqualTo(getSizeLocations(), same->getSizeLocations());
}

boost::shared_ptr<BlockLocationBase> BlockLocationV2::doClone() const
{
    const boost::shared_ptr<BlockLocationV2> copy(new BlockLocationV2);
    copy->copySlots(*this, kLayout);
    for (const auto &location : getSizeLocations()) copy->addSizeLocation(location->clone());
    return copy;
}

LumUg::UDO *BlockLocationV2::CreateInstance() { return new BlockLocationV2; }

} // namespace QelFmt
