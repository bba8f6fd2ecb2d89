#include "definitions/location.h"

namespace QelFmt {

Point2 fromCorner(int offsetType, const Point2 &stored, const Point2 &sheet)
{
    switch (offsetType) {
    case kFromUpperLeft:
        return {stored[0], sheet[1] - stored[1]};
    case kFromLowerRight:
        return {sheet[0] - stored[0], stored[1]};
    case kFromUpperRight:
        return {sheet[0] - stored[0], sheet[1] - stored[1]};
    default:
        return stored;
    }
}

// --- any generation -------------------------------------------------------------------------------

LocationBase::LocationBase() = default;
LocationBase::LocationBase(UgUDO *udo) : UDO(udo) {}
LocationBase::~LocationBase() = default;

boost::shared_ptr<LocationBase> LocationBase::createLocation()
{
    const boost::shared_ptr<LocationBase> location(new LocationV1);
    location->SetName("Change Me");
    location->SetOffsetType(kFromLowerLeft);
    location->setLocation({0.0, 0.0});
    return location;
}

void LocationBase::setLocation(const Point2 &point)
{
    SetX(point[0]);
    SetY(point[1]);
}

// --- the only generation --------------------------------------------------------------------------

LocationV1::LocationV1() = default;
LocationV1::LocationV1(UgUDO *udo) : LocationBase(udo) {}
LocationV1::~LocationV1() = default;

bool LocationV1::equalTo(const LocationBase *other) const
{
    static constexpr std::tuple kEqualityOrder{kName, kOffsetType, kX, kY};
    const auto *same = dynamic_cast<const LocationV1 *>(other);
    return same && sameSlots(*same, kEqualityOrder);
}

boost::shared_ptr<LocationBase> LocationV1::doClone() const
{
    const boost::shared_ptr<LocationV1> copy(new LocationV1);
    copy->copySlots(*this, kLayout);
    return copy;
}

LumUg::UDO *LocationV1::CreateInstance() { return new LocationV1; }

} // namespace QelFmt
