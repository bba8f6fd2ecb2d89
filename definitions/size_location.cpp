#include "definitions/size_location.h"

#include "definitions/in_part_of.h"
#include "definitions/pairwise.h"
#include "definitions/require.h"
#include "drawing/drawing.h"

namespace QelFmt {

// --- any generation -------------------------------------------------------------------------------

SizeLocationBase::SizeLocationBase() = default;
SizeLocationBase::SizeLocationBase(UgUDO *udo) : UDO(udo) {}
SizeLocationBase::~SizeLocationBase() = default;

boost::shared_ptr<SizeLocationBase> SizeLocationBase::createSizeLocation()
{
    const boost::shared_ptr<SizeLocationBase> location(new SizeLocationV1);
    location->SetSizeId("change_me");
    return location;
}

std::vector<boost::shared_ptr<LocationBase>> SizeLocationBase::getLocations() const
{
    return children(SizeLocationV1::kLocations);
}

std::vector<LocationInfoType>
SizeLocationBase::getAdjustedLocations(const boost::shared_ptr<TrDrawing> &drawing) const
{
    require(drawing != nullptr, "SizeLocationBase::getAdjustedLocations: there is no drawing");
    const Point2 sheet = drawing->drawingSize();
    std::vector<LocationInfoType> places;
    for (const auto &location : getLocations()) {
        const Point2 place = fromCorner(location->GetOffsetType(), location->getLocation(), sheet);
        places.push_back({location->GetName(), place});
    }
    return places;
}

boost::shared_ptr<SizeLocationBase> SizeLocationBase::checkAndUpgrade()
{
    boost::shared_ptr<SizeLocationBase> result;
    if (!dynamic_cast<SizeLocationV1 *>(this)) result = upgrade();
    for (const auto &location : getLocations()) {
        const boost::shared_ptr<LocationBase> fresh = location->checkAndUpgrade();
        if (!fresh) continue;
        addLocation(fresh);
        removeLocation(location);
    }
    return result;
}

boost::shared_ptr<SizeLocationBase> SizeLocationBase::upgrade()
{
    return inPartOf(*this, [&] {
        const boost::shared_ptr<SizeLocationBase> fresh = createSizeLocation();
        fresh->SetSizeId(GetSizeId());
        for (const auto &location : getLocations()) {
            removeAndRetainLocation(location);
            fresh->addLocation(location);
        }
        return fresh;
    });
}

// --- the only generation --------------------------------------------------------------------------

SizeLocationV1::SizeLocationV1() = default;
SizeLocationV1::SizeLocationV1(UgUDO *udo) : SizeLocationBase(udo) {}
SizeLocationV1::~SizeLocationV1() = default;

void SizeLocationV1::addLocation(const boost::shared_ptr<LocationBase> &location)
{
    require(location != nullptr, "SizeLocationV1::addLocation: there is no location");
    attach(kLocations.linkType, *location);
}

void SizeLocationV1::removeLocation(const boost::shared_ptr<LocationBase> &location)
{
    require(location != nullptr, "SizeLocationV1::removeLocation: there is no location");
    discard(kLocations.linkType, *location);
}

void SizeLocationV1::removeAndRetainLocation(const boost::shared_ptr<LocationBase> &location)
{
    require(location != nullptr, "SizeLocationV1::removeAndRetainLocation: there is no location");
    detach(kLocations.linkType, *location);
}

bool SizeLocationV1::equalTo(const SizeLocationBase *other) const
{
    const auto *same = dynamic_cast<const SizeLocationV1 *>(other);
    return same && sameSlots(*same, kLayout) &&
           pairwiseEqualTo(getLocations(), same->getLocations());
}

boost::shared_ptr<SizeLocationBase> SizeLocationV1::doClone() const
{
    const boost::shared_ptr<SizeLocationV1> copy(new SizeLocationV1);
    copy->copySlots(*this, kLayout);
    for (const auto &location : getLocations()) copy->addLocation(location->clone());
    return copy;
}

LumUg::UDO *SizeLocationV1::CreateInstance() { return new SizeLocationV1; }

} // namespace QelFmt
