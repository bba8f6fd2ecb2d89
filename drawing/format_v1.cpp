#include "definitions/format_def.h"
#include "definitions/format_size.h"
#include "drawing/block.h"
#include "drawing/format.h"
#include "drawing/owned_patterns.h"
#include "foundation/info_lines.h"

TrFormatV1::TrFormatV1() = default;
TrFormatV1::TrFormatV1(UgUDO *udo) : TrFormatBase(udo) {}
TrFormatV1::~TrFormatV1() = default;

std::string TrFormatV1::GetFormatDefName() const { return get(kFormatDefName); }
void TrFormatV1::SetFormatDefName(const std::string &name) { set(kFormatDefName, name); }

UgTypedObject *TrFormatV1::GetDrawing() const { return GetLink(kDrawing.linkType, kDrawing.index); }
void TrFormatV1::SetDrawing(const UgTypedObject *drawing)
{
    SetLink(kDrawing.linkType, kDrawing.index, drawing);
}

std::string TrFormatV1::GetSizeName() const { return get(kSizeName); }
void TrFormatV1::SetSizeName(const std::string &name) { set(kSizeName, name); }

TrBlockBase *TrFormatV1::createBlock() { return new TrBlockV1; }

boost::shared_ptr<TrFormatDefV1> TrFormatV1::retainDefinition()
{
    const boost::shared_ptr<TrFormatDefV1> def = getDefinition();
    if (!def->IsNull()) detach(kDefinition.linkType, *def);
    return def;
}

void TrFormatV1::updatePattern()
{
    const TrFormatSizeV1 size = currentSize();
    if (size.IsNull())
        removePattern();
    else
        drawOwnedPattern(*this, {size.GetFrameName(), size.GetFrameLayer(), {0.0, 0.0}});
}

void TrFormatV1::removePattern() { removeOwnedPatterns(*this); }

void TrFormatV1::InfoObject()
{
    QelFmt::InfoLines info;
    info.line("Format Def Name", GetFormatDefName());
    info.line("Size Name", GetSizeName());
    info.text("-----------------------------------------------");
    info.text("Definition Information");
    info.flush();
    if (const auto def = getDefinition(); !def->IsNull()) def->InfoObject();
}

LumUg::UDOClass *TrFormatV1::GetUDOClass() const { return &mUDOClass; }
LumUg::UDO *TrFormatV1::CreateInstance() { return new TrFormatV1; }
