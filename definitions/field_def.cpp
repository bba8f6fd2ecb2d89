#include "definitions/field_def.h"

#include "definitions/require.h"
#include "foundation/exception_report.h"
#include "foundation/info_lines.h"
#include "foundation/log.h"

#include "ug_exception.hxx"

namespace {

using Def = TrFieldDefV1;

// Compared in this order. kSyncAllDrawings stays out: switching it on in a definition file must not
// make every placed field look out of date. (kCloneOrder does carry it.)
constexpr std::tuple kEqualityOrder{Def::kId,
                                    Def::kDefaultString,
                                    Def::kBroadcastString,
                                    Def::kPartAttrString,
                                    Def::kTextFontName,
                                    Def::kRegistryString,
                                    Def::kUseDefaultInitially,
                                    Def::kBottomBorderPolicy,
                                    Def::kLeftBorderPolicy,
                                    Def::kMiddleBorderPolicy,
                                    Def::kRightBorderPolicy,
                                    Def::kTopBorderPolicy,
                                    Def::kBroadcastType,
                                    Def::kBroadcastTableType,
                                    Def::kDefaultType,
                                    Def::kTextColor,
                                    Def::kBorderColor,
                                    Def::kFlipText,
                                    Def::kMultiline,
                                    Def::kRelativeOffsetType,
                                    Def::kTextWidthType,
                                    Def::kTextJustification,
                                    Def::kTextSite,
                                    Def::kIndentation,
                                    Def::kZoneField,
                                    Def::kTextAngle,
                                    Def::kTextAspect,
                                    Def::kLineSpace,
                                    Def::kMarginHeight,
                                    Def::kMarginWidth,
                                    Def::kTextSize,
                                    Def::kAltTextSize,
                                    Def::kAltTextSizeNumChars,
                                    Def::kCharSpaceFactor,
                                    Def::kLocationX,
                                    Def::kLocationY,
                                    Def::kHeight,
                                    Def::kWidth,
                                    Def::kUserSymbolHeight,
                                    Def::kUserSymbolLength,
                                    Def::kSymbolFile,
                                    Def::kAltTextAspect,
                                    Def::kAltTextAspectNumChars};

constexpr std::tuple kCloneOrder{Def::kId,
                                 Def::kDefaultString,
                                 Def::kBroadcastString,
                                 Def::kPartAttrString,
                                 Def::kTextFontName,
                                 Def::kRegistryString,
                                 Def::kUseDefaultInitially,
                                 Def::kBottomBorderPolicy,
                                 Def::kLeftBorderPolicy,
                                 Def::kMiddleBorderPolicy,
                                 Def::kRightBorderPolicy,
                                 Def::kTopBorderPolicy,
                                 Def::kBroadcastType,
                                 Def::kBroadcastTableType,
                                 Def::kDefaultType,
                                 Def::kTextColor,
                                 Def::kBorderColor,
                                 Def::kFlipText,
                                 Def::kMultiline,
                                 Def::kRelativeOffsetType,
                                 Def::kTextWidthType,
                                 Def::kTextJustification,
                                 Def::kTextSite,
                                 Def::kIndentation,
                                 Def::kAltTextSize,
                                 Def::kAltTextSizeNumChars,
                                 Def::kCharSpaceFactor,
                                 Def::kZoneField,
                                 Def::kTextAngle,
                                 Def::kTextAspect,
                                 Def::kLineSpace,
                                 Def::kMarginHeight,
                                 Def::kMarginWidth,
                                 Def::kTextSize,
                                 Def::kLocationX,
                                 Def::kLocationY,
                                 Def::kHeight,
                                 Def::kWidth,
                                 Def::kUserSymbolHeight,
                                 Def::kUserSymbolLength,
                                 Def::kSymbolFile,
                                 Def::kAltTextAspect,
                                 Def::kAltTextAspectNumChars,
                                 Def::kSyncAllDrawings};

static_assert(std::tuple_size_v<decltype(kEqualityOrder)> + 1 ==
              std::tuple_size_v<decltype(Def::kLayout)>);
static_assert(std::tuple_size_v<decltype(kCloneOrder)> ==
              std::tuple_size_v<decltype(Def::kLayout)>);

} // namespace

TrFieldDefV1::TrFieldDefV1() = default;
TrFieldDefV1::TrFieldDefV1(UgUDO *udo) : UDO(udo) {}
TrFieldDefV1::~TrFieldDefV1() = default;

void TrFieldDefV1::Clone(const TrFieldDefV1 &source)
{
    QelFmt::require(!source.IsNull(), "TrFieldDefV1::Clone: the source has no record");
    copySlots(source, kCloneOrder);
}

bool TrFieldDefV1::operator==(const TrFieldDefV1 &other) const
{
    QELFMT_INFO << "Checking field " << (IsNull() ? std::string() : GetId()) << " equality";
    return !IsNull() && !other.IsNull() && sameSlots(other, kEqualityOrder);
}

// --- what every record says of itself -----------------------------------------------------------------

void TrFieldDefV1::InfoObject()
{
    try {
        QelFmt::InfoLines info;
        info.line("ID", GetId());
        info.line("X", GetLocationX());
        info.line("Y", GetLocationY());
        info.line("Symbol File", GetSymbolFile());
        info.flush();
    } catch (const UgException &) {
        QelFmt::reportCurrentException();
    } catch (const std::exception &) {
        QelFmt::reportCurrentException();
    }
}

LumUg::UDO *TrFieldDefV1::CreateInstance() { return new TrFieldDefV1; }
