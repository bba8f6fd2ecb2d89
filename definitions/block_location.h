// The places of a block on the sheets of one format.
#pragma once

#include "definitions/location_info.h"
#include "definitions/size_location.h"
#include "udo/class_names.h"
#include "udo/export.h"
#include "udo/slots.h"
#include "udo/udo.h"
#include "udo/udo_class.h"

#include <boost/shared_ptr.hpp>

#include <algorithm>
#include <array>
#include <string>
#include <tuple>
#include <vector>

class TrDrawing;

namespace QelFmt {

class QELFMT_API BlockLocationBase : public LumUg::UDO {
public:
    using SizeLocations = std::vector<boost::shared_ptr<SizeLocationBase>>;

    BlockLocationBase();
    explicit BlockLocationBase(UgUDO *udo);
    ~BlockLocationBase() override;

    virtual std::string GetFormatId() const = 0;
    virtual void SetFormatId(const std::string &format_id) = 0;
    virtual bool equalTo(const BlockLocationBase *other) const = 0;
    // The places on the drawing's sheet, as its size and format have it.
    virtual std::vector<LocationInfoType>
    getValidLocations(const boost::shared_ptr<TrDrawing> &drawing) const = 0;
    virtual SizeLocations getSizeLocations() const = 0;
    virtual void addSizeLocation(const boost::shared_ptr<SizeLocationBase> &location) = 0;
    virtual void
    removeSizeLocation(const boost::shared_ptr<SizeLocationBase> &location) = 0; // deletes it
    virtual boost::shared_ptr<BlockLocationBase> doClone() const = 0;
    virtual void
    removeAndRetainSizeLocation(const boost::shared_ptr<SizeLocationBase> &location) = 0;

    // A record of the current generation, to be given its format.
    static boost::shared_ptr<BlockLocationBase> createBlockLocation();

    boost::shared_ptr<BlockLocationBase> clone() const { return doClone(); }
    // Empty when the record is current; the caller replaces the old record by any other result.
    boost::shared_ptr<BlockLocationBase> checkAndUpgrade();
    // A current record in the same part, to which the size locations have moved.
    boost::shared_ptr<BlockLocationBase> upgrade();

protected:
    // The size ids that fit a sheet: its size, the suite of its size, "Default".
    using SheetNames = std::array<std::string, 3>;
    static SheetNames sheetNames(const TrDrawing &drawing);
    static bool isAmong(const SheetNames &names, const std::string &size_id)
    {
        return std::find(names.begin(), names.end(), size_id) != names.end();
    }
};

// The current generation: a record for each size.
class QELFMT_API BlockLocationV2 : public BlockLocationBase {
public:
    static constexpr const char *className = kBlockLocationV2Classname;

    // The stored layout. Parts in the field hold these indices: append, never renumber.
    static constexpr LumUg::StringSlot kFormatId{0, "FormatId"}; // a format, its suite or "Default"
    static constexpr std::tuple kLayout{kFormatId};
    static_assert(LumUg::isDense(kLayout));

    static constexpr LumUg::ChildList<SizeLocationBase> kSizeLocations{LumUg::kChildLink,
                                                                       "SizeLocations"};
    static constexpr std::tuple kChildren{kSizeLocations};

    BlockLocationV2();
    explicit BlockLocationV2(UgUDO *udo);
    BlockLocationV2(const BlockLocationV2 &) = default; // views the same record
    BlockLocationV2 &operator=(const BlockLocationV2 &) = default;
    ~BlockLocationV2() override;

    std::string GetFormatId() const override { return get(kFormatId); }
    void SetFormatId(const std::string &format_id) override { set(kFormatId, format_id); }
    bool equalTo(const BlockLocationBase *other) const override;
    // Those of the first size location that is for the sheet: a "Default" that is listed before a
    // size hides it. When none is, one nameless place at (0, 0).
    std::vector<LocationInfoType>
    getValidLocations(const boost::shared_ptr<TrDrawing> &drawing) const override;
    SizeLocations getSizeLocations() const override;
    void addSizeLocation(const boost::shared_ptr<SizeLocationBase> &location) override;
    void removeSizeLocation(const boost::shared_ptr<SizeLocationBase> &location) override;
    boost::shared_ptr<BlockLocationBase> doClone() const override;
    void removeAndRetainSizeLocation(const boost::shared_ptr<SizeLocationBase> &location) override;

    LumUg::UDOClass *GetUDOClass() const override { return &mUDOClass; }
    static LumUg::UDO *CreateInstance();
    static LumUg::UDOClass mUDOClass;
};

} // namespace QelFmt
