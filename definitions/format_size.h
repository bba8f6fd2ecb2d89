// A sheet size of a format: the sheet, its frame and its zones.
#pragma once

#include "udo/class_names.h"
#include "udo/export.h"
#include "udo/slots.h"
#include "udo/udo.h"
#include "udo/udo_class.h"

#include <string>
#include <tuple>

// A record linked from its format definition, in a definition file or in the copy that a placed
// format keeps. Lengths are in the units of the format.
class QELFMT_API TrFormatSizeV1 : public LumUg::UDO {
public:
    static constexpr const char *className = QelFmt::kFormatSizeV1Classname;

    // The stored layout. Parts in the field hold these indices: append, never renumber.
    static constexpr LumUg::StringSlot kId{0, "Id"}; // block locations match it
    static constexpr LumUg::StringSlot kDescription{1, "Description"};
    static constexpr LumUg::StringSlot kFrameName{2, "FrameName"}; // pattern of the border frame
    static constexpr LumUg::StringSlot kLabel{3, "Label"};
    static constexpr LumUg::StringSlot kSuiteName{4, "SuiteName"};

    static constexpr LumUg::DoubleSlot kHeight{0, "Height"}; // of the sheet
    static constexpr LumUg::DoubleSlot kLength{1, "Length"};
    static constexpr LumUg::DoubleSlot kRightOffset{2, "RightOffset"}; // of the frame
    static constexpr LumUg::DoubleSlot kHorzZoneLength{3, "HorzZoneLength"};
    static constexpr LumUg::DoubleSlot kVertZoneLength{4, "VertZoneLength"};

    static constexpr LumUg::IntSlot kFrameLayer{0, "FrameLayer"};
    static constexpr LumUg::IntSlot kUgSizeCode{1, "UgSizeCode"}; // the platform's, for the sheet
    static constexpr LumUg::IntSlot kNumberHorzZones{2, "NumberHorzZones"};
    static constexpr LumUg::IntSlot kNumberVertZones{3, "NumberVertZones"};
    static constexpr LumUg::IntSlot kHorzZoneType{4, "HorzZoneType"};
    static constexpr LumUg::IntSlot kVertZoneType{5, "VertZoneType"};

    static constexpr std::tuple kLayout{
        kId,          kDescription, kFrameName,       kLabel,           kSuiteName,
        kHeight,      kLength,      kRightOffset,     kHorzZoneLength,  kVertZoneLength,
        kFrameLayer,  kUgSizeCode,  kNumberHorzZones, kNumberVertZones, kHorzZoneType,
        kVertZoneType};
    static_assert(LumUg::isDense(kLayout));

    TrFormatSizeV1();
    explicit TrFormatSizeV1(UgUDO *udo);
    TrFormatSizeV1(const TrFormatSizeV1 &) = default; // views the same record
    TrFormatSizeV1 &operator=(const TrFormatSizeV1 &) = default;
    ~TrFormatSizeV1() override;

    std::string GetId() const { return get(kId); }
    void SetId(const std::string &value) { set(kId, value); }
    std::string GetDescription() const { return get(kDescription); }
    void SetDescription(const std::string &value) { set(kDescription, value); }
    std::string GetFrameName() const { return get(kFrameName); }
    void SetFrameName(const std::string &value) { set(kFrameName, value); }
    std::string GetLabel() const { return get(kLabel); }
    void SetLabel(const std::string &value) { set(kLabel, value); }
    std::string GetSuiteName() const { return get(kSuiteName); }
    void SetSuiteName(const std::string &value) { set(kSuiteName, value); }

    double GetHeight() const { return get(kHeight); }
    void SetHeight(double value) { set(kHeight, value); }
    double GetLength() const { return get(kLength); } // hides the indexed one of the base
    void SetLength(double value) { set(kLength, value); }
    double GetRightOffset() const { return get(kRightOffset); }
    void SetRightOffset(double value) { set(kRightOffset, value); }
    double GetHorzZoneLength() const { return get(kHorzZoneLength); }
    void SetHorzZoneLength(double value) { set(kHorzZoneLength, value); }
    double GetVertZoneLength() const { return get(kVertZoneLength); }
    void SetVertZoneLength(double value) { set(kVertZoneLength, value); }

    int GetFrameLayer() const { return get(kFrameLayer); }
    void SetFrameLayer(int value) { set(kFrameLayer, value); }
    int GetUgSizeCode() const { return get(kUgSizeCode); }
    void SetUgSizeCode(int value) { set(kUgSizeCode, value); }
    int GetNumberHorzZones() const { return get(kNumberHorzZones); }
    void SetNumberHorzZones(int value) { set(kNumberHorzZones, value); }
    int GetNumberVertZones() const { return get(kNumberVertZones); }
    void SetNumberVertZones(int value) { set(kNumberVertZones, value); }
    int GetHorzZoneType() const { return get(kHorzZoneType); }
    void SetHorzZoneType(int value) { set(kHorzZoneType, value); }
    int GetVertZoneType() const { return get(kVertZoneType); }
    void SetVertZoneType(int value) { set(kVertZoneType, value); }

    void Clone(const TrFormatSizeV1 &source);
    // This one against the one on disk: every test announces itself in the verbose log.
    bool operator==(const TrFormatSizeV1 &disk) const;
    bool operator!=(const TrFormatSizeV1 &disk) const { return !(*this == disk); }

    void InfoObject() override;
    LumUg::UDOClass *GetUDOClass() const override { return &mUDOClass; }
    static LumUg::UDO *CreateInstance();
    static LumUg::UDOClass mUDOClass;
};
