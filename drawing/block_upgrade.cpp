// The conversion of older generations of blocks, and of what stands in them.
#include "content/field.h"
#include "content/table.h"
#include "drawing/block.h"
#include "drawing/owned_patterns.h"

boost::shared_ptr<TrBlockBase> TrBlockBase::checkAndUpgrade()
{
    boost::shared_ptr<TrBlockBase> fresh;
    if (!dynamic_cast<TrBlockV1 *>(this)) fresh = upgrade();
    TrBlockBase &current = fresh ? *fresh : *this;
    current.upgradeFields();
    current.upgradeTables();
    return fresh;
}

// The new block has no definition yet: the update of its format gives it one.
boost::shared_ptr<TrBlockBase> TrBlockBase::upgrade()
{
    const boost::shared_ptr<TrBlockV1> fresh(new TrBlockV1);
    fresh->SetBlockDefName(GetBlockDefName());
    fresh->SetX(GetX());
    fresh->SetY(GetY());
    for (boost::shared_ptr<TrFieldBase> &field : getFields()) {
        removeAndRetainField(field);
        fresh->addField(field);
    }
    for (boost::shared_ptr<TrTableBase> &table : getTables()) {
        removeAndRetainTable(table);
        fresh->addTable(table);
    }
    handOverPatterns(*this, *fresh); // what is drawn is kept when the definition asks for the same
    return fresh;
}

// A converted field has taken note and border lines over: the old record is empty and goes. The new
// one takes its place among the links, so that the order of fields stays.
void TrBlockBase::upgradeFields()
{
    for (const auto &field : getFields()) {
        const boost::shared_ptr<TrFieldBase> fresh = field->checkAndUpgrade();
        if (!fresh || fresh->tag() == field->tag()) continue;
        exchange(LumUg::kChildLink, *field, *fresh);
        field->DeleteUDO();
    }
}

void TrBlockBase::upgradeTables()
{
    for (const auto &table : getTables()) {
        const boost::shared_ptr<TrTableBase> fresh = table->checkAndUpgrade();
        if (!fresh || fresh->tag() == table->tag()) continue;
        exchange(LumUg::kChildLink, *table, *fresh);
        table->DeleteUDO();
    }
}
