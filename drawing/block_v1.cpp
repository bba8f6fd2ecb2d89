#include "content/field.h"
#include "content/table.h"
#include "definitions/block_def.h"
#include "drawing/block.h"
#include "drawing/owned_patterns.h"
#include "drawing/with_base.h"
#include "foundation/info_lines.h"

TrBlockV1::TrBlockV1() = default;
TrBlockV1::TrBlockV1(UgUDO *udo) : TrBlockBase(udo) {}
TrBlockV1::~TrBlockV1() = default;

std::string TrBlockV1::GetBlockDefName() const { return get(kBlockDefName); }
void TrBlockV1::SetBlockDefName(const std::string &name) { set(kBlockDefName, name); }
double TrBlockV1::GetX() const { return get(kX); }
void TrBlockV1::SetX(double x) { set(kX, x); }
double TrBlockV1::GetY() const { return get(kY); }
void TrBlockV1::SetY(double y) { set(kY, y); }
int TrBlockV1::GetAlternateLocationIndex() const { return get(kAlternateLocationIndex); }
void TrBlockV1::SetAlternateLocationIndex(int index) { set(kAlternateLocationIndex, index); }

// --- definition --------------------------------------------------------------------------------------

boost::shared_ptr<TrBlockDefV1> TrBlockV1::GetDefinition() const
{
    if (auto def = firstChild(kDefinition)) return def;
    return boost::shared_ptr<TrBlockDefV1>(new TrBlockDefV1);
}

void TrBlockV1::setDefinition(const boost::shared_ptr<TrBlockDefV1> &def) { SetDefinition(*def); }

void TrBlockV1::SetDefinition(const TrBlockDefV1 &def)
{
    const auto old = GetDefinition();
    if (old->IsNull()) {
        attach(kDefinition.linkType, def);
        return;
    }
    if (old->tag() == def.tag()) return;
    // In the place of the old one, before the fields: there it is found at once.
    exchange(kDefinition.linkType, *old, def);
    old->DeleteUDO();
}

boost::shared_ptr<TrBlockDefV1> TrBlockV1::retainDefinition()
{
    const boost::shared_ptr<TrBlockDefV1> def = GetDefinition();
    if (!def->IsNull()) detach(kDefinition.linkType, *def);
    return def;
}

// --- fields and tables ---------------------------------------------------------------------------------

TrBlockBase::Fields TrBlockV1::getFields() { return withBase(*this, children(kFields)); }
TrBlockBase::Tables TrBlockV1::getTables() { return withBase(*this, children(kTables)); }

TrFieldBase *TrBlockV1::createField() const { return new TrFieldV1; }

void TrBlockV1::addField(const boost::shared_ptr<TrFieldBase> &field)
{
    attach(kFields.linkType, *field);
}

void TrBlockV1::addTable(const boost::shared_ptr<TrTableBase> &table)
{
    attach(kTables.linkType, *table);
}

void TrBlockV1::removeAndRetainField(boost::shared_ptr<TrFieldBase> &field)
{
    detach(kFields.linkType, *field);
}

void TrBlockV1::removeAndRetainTable(boost::shared_ptr<TrTableBase> &table)
{
    detach(kTables.linkType, *table);
}

// --- pattern -----------------------------------------------------------------------------------------

void TrBlockV1::updatePattern()
{
    const boost::shared_ptr<TrBlockDefV1> def = GetDefinition();
    if (def->IsNull()) return; // which pattern is not known: what stands is kept
    drawOwnedPattern(*this, {def->GetPatternName(), def->GetPatternLayer(), getLocation()});
}

void TrBlockV1::removePattern() { removeOwnedPatterns(*this); }

void TrBlockV1::movePattern(const Point2 &point)
{
    if (IsNull()) return;
    moveOwnedPatterns(*this, point[0] - GetX(), point[1] - GetY());
}

// --- what every record says of itself ------------------------------------------------------------------

void TrBlockV1::InfoObject()
{
    QelFmt::InfoLines info;
    info.line("X", GetX());
    info.line("Y", GetY());
    info.text("-----------------------------------------------");
    info.text("Definition Information");
    info.flush();
    if (const auto def = GetDefinition(); !def->IsNull()) def->InfoObject();
}

LumUg::UDOClass *TrBlockV1::GetUDOClass() const { return &mUDOClass; }
LumUg::UDO *TrBlockV1::CreateInstance() { return new TrBlockV1; }
