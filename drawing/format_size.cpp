// The size of a format: the sheet that follows it, and what the size says of the frame.
#include "definitions/format_size.h"
#include "definitions/format_def.h"
#include "drawing/block.h"
#include "drawing/format.h"
#include "drawing/sheet_of.h"
#include "foundation/log.h"

#include "uf_draw.h"
#include "ug_exception.hxx"

namespace {

constexpr int kMillimetres = 1;

// The size codes of a definition in units other than millimetres are English ones.
void putSize(UF_DRAW_info_t &info, const TrFormatSizeV1 &size, int units)
{
    const int code = size.GetUgSizeCode();
    info.units = units == kMillimetres ? 1 : 2;
    if (code == 0) {
        info.size_state = UF_DRAW_CUSTOM_SIZE;
        info.size.custom_size[0] = size.GetHeight();
        info.size.custom_size[1] = size.GetLength();
    } else if (units == kMillimetres) {
        info.size_state = UF_DRAW_METRIC_SIZE;
        info.size.metric_size_code = static_cast<UF_DRAW_metric_size_t>(code);
    } else {
        info.size_state = UF_DRAW_ENGLISH_SIZE;
        info.size.english_size_code = static_cast<UF_DRAW_english_size_t>(code);
    }
}

// A size that the stored definition lacks reads as empty and zero.
template <class Value>
Value valueOf(const TrFormatSizeV1 &size, Value (TrFormatSizeV1::*getter)() const)
{
    return size.IsNull() ? Value() : (size.*getter)();
}

} // namespace

void TrFormatBase::resize(const TrFormatSizeV1 &size)
{
    if (GetSizeName() == size.GetId()) return;
    SetSizeName(size.GetId());
    setSheetSize(size);
    QELFMT_VERBOSE << "adding new frame";
    updatePattern();
    QELFMT_VERBOSE << "done adding pattern";
    for (const auto &block : getBlocks()) block->locateBlock(nullptr);
}

// Scale and projection angle stay as they are.
void TrFormatBase::setSheetSize(const TrFormatSizeV1 &size)
{
    const tag_t sheet = sheetOf(*this);
    UF_DRAW_info_t info{};
    UgException::throwOnFailure(UF_DRAW_ask_drawing_info(sheet, &info));
    putSize(info, size, getDefinition()->GetUnits());
    UgException::throwOnFailure(UF_DRAW_set_drawing_info(sheet, &info));
}

TrFormatSizeV1 TrFormatBase::currentSize() const
{
    const auto def = getDefinition();
    if (def->IsNull()) return TrFormatSizeV1();
    return def->GetSizeDef(GetSizeName());
}

std::string TrFormatBase::category() const
{
    const auto def = getDefinition();
    return def->IsNull() ? std::string() : def->GetCategory();
}

bool TrFormatBase::inSuite(const std::string &name) const
{
    const auto def = getDefinition();
    return !def->IsNull() && def->inSuite(name);
}

std::string TrFormatBase::sizeSuiteName() const
{
    const auto def = getDefinition();
    if (def->IsNull()) return {};
    const std::string ofSize =
        valueOf(def->GetSizeDef(GetSizeName()), &TrFormatSizeV1::GetSuiteName);
    return ofSize.empty() ? def->GetSuiteName() : ofSize;
}

std::string TrFormatBase::sizeLabel() const
{
    return valueOf(currentSize(), &TrFormatSizeV1::GetLabel);
}

int TrFormatBase::frameLayer() const
{
    return valueOf(currentSize(), &TrFormatSizeV1::GetFrameLayer);
}

double TrFormatBase::rightOffset() const
{
    return valueOf(currentSize(), &TrFormatSizeV1::GetRightOffset);
}

double TrFormatBase::horzZoneLength() const
{
    return valueOf(currentSize(), &TrFormatSizeV1::GetHorzZoneLength);
}

double TrFormatBase::vertZoneLength() const
{
    return valueOf(currentSize(), &TrFormatSizeV1::GetVertZoneLength);
}

int TrFormatBase::numberHorzZones() const
{
    return valueOf(currentSize(), &TrFormatSizeV1::GetNumberHorzZones);
}

int TrFormatBase::numberVertZones() const
{
    return valueOf(currentSize(), &TrFormatSizeV1::GetNumberVertZones);
}

int TrFormatBase::horzZoneType() const
{
    return valueOf(currentSize(), &TrFormatSizeV1::GetHorzZoneType);
}

int TrFormatBase::vertZoneType() const
{
    return valueOf(currentSize(), &TrFormatSizeV1::GetVertZoneType);
}
