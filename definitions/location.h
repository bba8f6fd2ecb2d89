// One named place of a block, measured from a corner of the sheet.
#pragma once

#include "udo/class_names.h"
#include "udo/export.h"
#include "udo/slots.h"
#include "udo/udo.h"
#include "udo/udo_class.h"

#include "point2.hxx"

#include <boost/shared_ptr.hpp>

#include <string>
#include <tuple>

namespace QelFmt {

// The corner of a sheet that a stored point is measured from, inwards; any other code is the lower
// left one.
enum OffsetType {
    kFromLowerLeft = 0,
    kFromUpperLeft = 1,
    kFromLowerRight = 2,
    kFromUpperRight = 3
};

// The stored point on a sheet of that width and height.
QELFMT_API Point2 fromCorner(int offsetType, const Point2 &stored, const Point2 &sheet);

class QELFMT_API LocationBase : public LumUg::UDO {
public:
    LocationBase();
    explicit LocationBase(UgUDO *udo);
    ~LocationBase() override;

    virtual std::string GetName() const = 0;
    virtual void SetName(const std::string &name) = 0;
    virtual int GetOffsetType() const = 0;
    virtual void SetOffsetType(int offset_type) = 0;
    virtual bool equalTo(const LocationBase *other) const = 0;
    virtual boost::shared_ptr<LocationBase> doClone() const = 0;
    virtual double GetX() const = 0;
    virtual void SetX(double x) = 0;
    virtual double GetY() const = 0;
    virtual void SetY(double y) = 0;

    // A record of the current generation, to be named and placed.
    static boost::shared_ptr<LocationBase> createLocation();

    Point2 getLocation() const { return {GetX(), GetY()}; }
    void setLocation(const Point2 &point);
    boost::shared_ptr<LocationBase> clone() const { return doClone(); }
    // Empty both: there is one generation only.
    boost::shared_ptr<LocationBase> checkAndUpgrade() { return {}; }
    boost::shared_ptr<LocationBase> upgrade() { return {}; }
};

class QELFMT_API LocationV1 : public LocationBase {
public:
    static constexpr const char *className = kLocationV1Classname;

    // The stored layout. Parts in the field hold these indices: append, never renumber.
    static constexpr LumUg::StringSlot kName{0, "Name"};
    static constexpr LumUg::DoubleSlot kX{0, "X"}; // from the corner
    static constexpr LumUg::DoubleSlot kY{1, "Y"};
    static constexpr LumUg::IntSlot kOffsetType{0, "OffsetType"}; // the corner
    static constexpr std::tuple kLayout{kName, kX, kY, kOffsetType};
    static_assert(LumUg::isDense(kLayout));

    LocationV1();
    explicit LocationV1(UgUDO *udo);
    LocationV1(const LocationV1 &) = default; // views the same record
    LocationV1 &operator=(const LocationV1 &) = default;
    ~LocationV1() override;

    std::string GetName() const override { return get(kName); }
    void SetName(const std::string &name) override { set(kName, name); }
    int GetOffsetType() const override { return get(kOffsetType); }
    void SetOffsetType(int offset_type) override { set(kOffsetType, offset_type); }
    bool equalTo(const LocationBase *other) const override;
    boost::shared_ptr<LocationBase> doClone() const override;
    double GetX() const override { return get(kX); }
    void SetX(double x) override { set(kX, x); }
    double GetY() const override { return get(kY); }
    void SetY(double y) override { set(kY, y); }

    LumUg::UDOClass *GetUDOClass() const override { return &mUDOClass; }
    static LumUg::UDO *CreateInstance();
    static LumUg::UDOClass mUDOClass;
};

} // namespace QelFmt
