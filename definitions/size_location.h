// The places of a block on sheets of one size.
#pragma once

#include "definitions/location.h"
#include "definitions/location_info.h"
#include "udo/class_names.h"
#include "udo/export.h"
#include "udo/slots.h"
#include "udo/udo.h"
#include "udo/udo_class.h"

#include <boost/shared_ptr.hpp>

#include <string>
#include <tuple>
#include <vector>

class TrDrawing;

namespace QelFmt {

class QELFMT_API SizeLocationBase : public LumUg::UDO {
public:
    SizeLocationBase();
    explicit SizeLocationBase(UgUDO *udo);
    ~SizeLocationBase() override;

    virtual std::string GetSizeId() const = 0;
    virtual void SetSizeId(const std::string &size_id) = 0;
    virtual void addLocation(const boost::shared_ptr<LocationBase> &location) = 0;
    virtual void removeLocation(const boost::shared_ptr<LocationBase> &location) = 0; // deletes it
    virtual bool equalTo(const SizeLocationBase *other) const = 0;
    virtual boost::shared_ptr<SizeLocationBase> doClone() const = 0;
    virtual void removeAndRetainLocation(const boost::shared_ptr<LocationBase> &location) = 0;

    // A record of the current generation, to be given its size.
    static boost::shared_ptr<SizeLocationBase> createSizeLocation();

    std::vector<boost::shared_ptr<LocationBase>> getLocations() const; // in link order
    // The places on the drawing's sheet, in link order.
    std::vector<LocationInfoType>
    getAdjustedLocations(const boost::shared_ptr<TrDrawing> &drawing) const;
    boost::shared_ptr<SizeLocationBase> clone() const { return doClone(); }
    // Empty when the record is current; older places that it holds are replaced either way.
    boost::shared_ptr<SizeLocationBase> checkAndUpgrade();
    // A current record in the same part, to which the places have moved.
    boost::shared_ptr<SizeLocationBase> upgrade();
};

class QELFMT_API SizeLocationV1 : public SizeLocationBase {
public:
    static constexpr const char *className = kSizeLocationV1Classname;

    // The stored layout. Parts in the field hold these indices: append, never renumber.
    static constexpr LumUg::StringSlot kSizeId{0,
                                               "SizeId"}; // a size, a suite of sizes or "Default"
    static constexpr std::tuple kLayout{kSizeId};
    static_assert(LumUg::isDense(kLayout));

    static constexpr LumUg::ChildList<LocationBase> kLocations{LumUg::kChildLink, "Locations"};
    static constexpr std::tuple kChildren{kLocations};

    SizeLocationV1();
    explicit SizeLocationV1(UgUDO *udo);
    SizeLocationV1(const SizeLocationV1 &) = default; // views the same record
    SizeLocationV1 &operator=(const SizeLocationV1 &) = default;
    ~SizeLocationV1() override;

    std::string GetSizeId() const override { return get(kSizeId); }
    void SetSizeId(const std::string &size_id) override { set(kSizeId, size_id); }
    void addLocation(const boost::shared_ptr<LocationBase> &location) override;
    void removeLocation(const boost::shared_ptr<LocationBase> &location) override;
    bool equalTo(const SizeLocationBase *other) const override;
    boost::shared_ptr<SizeLocationBase> doClone() const override;
    void removeAndRetainLocation(const boost::shared_ptr<LocationBase> &location) override;

    LumUg::UDOClass *GetUDOClass() const override { return &mUDOClass; }
    static LumUg::UDO *CreateInstance();
    static LumUg::UDOClass mUDOClass;
};

} // namespace QelFmt
