#include "content/field.h"
#include "content/table.h"
#include "drawing/block.h"
#include "drawing/with_base.h"

ZemBlockV1::ZemBlockV1() = default;
ZemBlockV1::ZemBlockV1(UgUDO *udo) : TrBlockBase(udo) {}
ZemBlockV1::~ZemBlockV1() = default;

std::string ZemBlockV1::GetBlockDefName() const { return get(kBlockDefName); }
void ZemBlockV1::SetBlockDefName(const std::string &name) { set(kBlockDefName, name); }
double ZemBlockV1::GetX() const { return get(kX); }
void ZemBlockV1::SetX(double x) { set(kX, x); }
double ZemBlockV1::GetY() const { return get(kY); }
void ZemBlockV1::SetY(double y) { set(kY, y); }

TrBlockBase::Fields ZemBlockV1::getFields() { return withBase(*this, children(kFields)); }
TrBlockBase::Tables ZemBlockV1::getTables() { return withBase(*this, children(kTables)); }

// The links go when the block is converted: children that kept them would be left half deleted when
// the old block is.
void ZemBlockV1::removeAndRetainField(boost::shared_ptr<TrFieldBase> &field)
{
    detach(kFields.linkType, *field);
}

void ZemBlockV1::removeAndRetainTable(boost::shared_ptr<TrTableBase> &table)
{
    detach(kTables.linkType, *table);
}

LumUg::UDOClass *ZemBlockV1::GetUDOClass() const { return &mUDOClass; }
LumUg::UDO *ZemBlockV1::CreateInstance() { return new ZemBlockV1; }
