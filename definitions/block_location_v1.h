// The first generation of block locations.
#pragma once

#include "definitions/block_location.h"

namespace QelFmt {

// One place for each size, in parallel lists; one corner for all of them. It owns no records, so
// that adding and removing size locations does nothing.
class QELFMT_API TrBlockLocationV1 : public BlockLocationBase {
public:
    static constexpr const char *className = kBlockLocationV1Classname;

    // The stored layout. Parts in the field hold these indices: append, never renumber.
    static constexpr LumUg::StringSlot kFormatId{0, "FormatId"};
    static constexpr LumUg::StringTail kSizeNames{1, "SizeNames"};
    static constexpr LumUg::DoubleFamily kSizeXLoc{0, 2, "SizeXLoc"}; // for each size name
    static constexpr LumUg::DoubleFamily kSizeYLoc{1, 2, "SizeYLoc"};
    static constexpr LumUg::IntSlot kOffsetType{0, "OffsetType"};
    static constexpr std::tuple kLayout{kFormatId, kSizeNames, kSizeXLoc, kSizeYLoc, kOffsetType};
    static_assert(LumUg::isDense(kLayout));

    TrBlockLocationV1();
    explicit TrBlockLocationV1(UgUDO *udo);
    TrBlockLocationV1(const TrBlockLocationV1 &) = default; // views the same record
    TrBlockLocationV1 &operator=(const TrBlockLocationV1 &) = default;
    ~TrBlockLocationV1() override;

    std::string GetFormatId() const override { return get(kFormatId); }
    void SetFormatId(const std::string &format_id) override { set(kFormatId, format_id); }
    bool equalTo(const BlockLocationBase *other) const override;
    // Exactly one; nameless, and the corner itself, when no size is for the sheet.
    std::vector<LocationInfoType>
    getValidLocations(const boost::shared_ptr<TrDrawing> &drawing) const override;
    // Each call makes new records of the current generation.
    SizeLocations getSizeLocations() const override;
    void addSizeLocation(const boost::shared_ptr<SizeLocationBase> &location) override;
    void removeSizeLocation(const boost::shared_ptr<SizeLocationBase> &location) override;
    boost::shared_ptr<BlockLocationBase> doClone() const override;
    void removeAndRetainSizeLocation(const boost::shared_ptr<SizeLocationBase> &location) override;

    std::vector<std::string> GetSizeNames() const { return get(kSizeNames); }
    void SetSizeNames(const std::vector<std::string> &names);
    void RemoveSizeName(unsigned i); // with its point; one that does not exist is no error
    double GetSizeXLoc(unsigned i) const { return get(kSizeXLoc, i); }
    void SetSizeXLoc(unsigned i, double x) { set(kSizeXLoc, i, x); }
    double GetSizeYLoc(unsigned i) const { return get(kSizeYLoc, i); }
    void SetSizeYLoc(unsigned i, double y) { set(kSizeYLoc, i, y); }
    int GetOffsetType() const { return get(kOffsetType); }
    void SetOffsetType(int offset_type) { set(kOffsetType, offset_type); }

    void InfoObject() override;
    LumUg::UDOClass *GetUDOClass() const override { return &mUDOClass; }
    static LumUg::UDO *CreateInstance();
    static LumUg::UDOClass mUDOClass;

private:
    void removePoint(unsigned i);
    bool samePoints(const TrBlockLocationV1 &other) const;
};

} // namespace QelFmt
