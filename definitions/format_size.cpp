#include "definitions/format_size.h"

#include "definitions/require.h"
#include "foundation/info_lines.h"
#include "foundation/log.h"

#include <string_view>

TrFormatSizeV1::TrFormatSizeV1() = default;
TrFormatSizeV1::TrFormatSizeV1(UgUDO *udo) : UDO(udo) {}
TrFormatSizeV1::~TrFormatSizeV1() = default;

void TrFormatSizeV1::Clone(const TrFormatSizeV1 &source)
{
    QelFmt::require(!source.IsNull(), "TrFormatSizeV1::Clone: the source has no record");
    copySlots(source, kLayout);
}

bool TrFormatSizeV1::operator==(const TrFormatSizeV1 &disk) const
{
    const LumUg::Record mine(*this), theirs(disk);
    const auto same = [&](std::string_view announcement, const auto &slot) {
        QELFMT_VERBOSE << announcement;
        return mine.get(slot) == theirs.get(slot); // doubles exactly: NaN differs from itself
    };
    const auto sameLabel = [&] {
        if (same("checking size label equality...", kLabel)) return true;
        QELFMT_VERBOSE << "  label = " << mine.get(kLabel)
                       << " : Disk label = " << theirs.get(kLabel);
        return false;
    };
    return same("checking size '" + mine.get(kId) + "' ID equality...", kId) &&
           same("checking size desc equality...", kDescription) &&
           same("checking size framename equality...", kFrameName) &&
           same("checking size frame layer equality...", kFrameLayer) &&
           same("checking size right offset equality...", kRightOffset) &&
           same("checking size horz zone length equality...", kHorzZoneLength) &&
           same("checking size vert zone length equality...", kVertZoneLength) &&
           same("checking size num horz zones equality...", kNumberHorzZones) &&
           same("checking size num vert zones equality...", kNumberVertZones) &&
           same("checking size horz zone type equality...", kHorzZoneType) &&
           same("checking size vert zone type equality...", kVertZoneType) &&
           same("checking size suite name equality...", kSuiteName) && sameLabel() &&
           same("checking size height equality...", kHeight) &&
           same("checking size length equality...", kLength) &&
           same("checking size ug size code equality...", kUgSizeCode);
}

// --- what every record says of itself -----------------------------------------------------------------

void TrFormatSizeV1::InfoObject()
{
    QelFmt::InfoLines info;
    info.line("Id", GetId());
    info.line("Description", GetDescription());
    info.line("Frame name", GetFrameName());
    info.line("Label", GetLabel());
    info.line("Frame Layer", GetFrameLayer());
    info.line("UG Size Code", GetUgSizeCode());
    info.line("Height", GetHeight());
    info.line("Length", GetLength());
    info.text("Zone Information:");
    info.line("  Right Offset", GetRightOffset());
    info.line("  Number Horz. Zones", GetNumberHorzZones());
    info.line("  Number Vert. Zones", GetNumberVertZones());
    info.line("  Horz. Zone Type", GetHorzZoneType());
    info.line("  Vert. Zone Type", GetVertZoneType());
    info.line("  Horz. Zone Length", GetHorzZoneLength());
    info.line("  Vert. Zone Length", GetVertZoneLength());
    info.flush();
}

LumUg::UDO *TrFormatSizeV1::CreateInstance() { return new TrFormatSizeV1; }
