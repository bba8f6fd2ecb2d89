#include "drawing/block.h"

#include "content/field.h"
#include "content/table.h"
#include "definitions/block_def.h"
#include "definitions/field_def.h"
#include "definitions/locations.h"
#include "definitions/table_def.h"
#include "foundation/log.h"

TrBlockBase::TrBlockBase() = default;
TrBlockBase::TrBlockBase(UgUDO *udo) : LumUg::UDO(udo) {}
TrBlockBase::~TrBlockBase() = default;

// --- what a generation stores: nothing here --------------------------------------------------------

TrBlockBase::Fields TrBlockBase::getFields() { return {}; }
TrBlockBase::Tables TrBlockBase::getTables() { return {}; }
std::string TrBlockBase::GetBlockDefName() const { return {}; }
double TrBlockBase::GetX() const { return 0.0; }
double TrBlockBase::GetY() const { return 0.0; }
void TrBlockBase::setDefinition(const boost::shared_ptr<TrBlockDefV1> &) {}
void TrBlockBase::SetDefinition(const TrBlockDefV1 &) {}
void TrBlockBase::addField(const boost::shared_ptr<TrFieldBase> &) {}
void TrBlockBase::addTable(const boost::shared_ptr<TrTableBase> &) {}
int TrBlockBase::GetAlternateLocationIndex() const { return 0; }
void TrBlockBase::SetAlternateLocationIndex(int) {}
TrFieldBase *TrBlockBase::createField() const { return nullptr; }
void TrBlockBase::updatePattern() {}
void TrBlockBase::removePattern() {}
void TrBlockBase::movePattern(const Point2 &) {}
void TrBlockBase::SetX(double) {}
void TrBlockBase::SetY(double) {}
void TrBlockBase::SetBlockDefName(const std::string &) {}
void TrBlockBase::removeAndRetainField(boost::shared_ptr<TrFieldBase> &) {}
void TrBlockBase::removeAndRetainTable(boost::shared_ptr<TrTableBase> &) {}

boost::shared_ptr<TrBlockDefV1> TrBlockBase::GetDefinition() const
{
    return boost::shared_ptr<TrBlockDefV1>(new TrBlockDefV1);
}

boost::shared_ptr<TrBlockDefV1> TrBlockBase::retainDefinition()
{
    return TrBlockBase::GetDefinition();
}

// --- a new block -------------------------------------------------------------------------------------

boost::shared_ptr<TrBlockBase> TrBlockBase::createBlock(const boost::shared_ptr<TrBlockDefV1> &def)
{
    const boost::shared_ptr<TrBlockBase> block(new TrBlockV1);
    block->setDefinition(def->clone());
    QELFMT_INFO << "created block object.";
    return block;
}

void TrBlockBase::initialize(const QelFmt::LocationInfoType &location)
{
    QELFMT_INFO << "Initializing block values";
    const boost::shared_ptr<TrBlockDefV1> def = GetDefinition();
    SetBlockDefName(def->GetId());
    QELFMT_INFO << "Creating fields";
    for (const auto &field : def->GetFieldDefinitions()) addField(field, false);
    QELFMT_INFO << "Creating tables";
    for (const auto &table : def->GetTableDefinitions()) addTable(table);
    QELFMT_INFO << "Locating block " << def->GetId();
    locateBlock(location);
    updatePattern();
    QELFMT_INFO << "Initializing fields";
    for (const auto &field : getFields()) {
        field->InitValues();
        field->fitBorders();
    }
}

// Named and linked at once, so that it can be found; during initialize() the value comes last, when
// the whole block stands.
void TrBlockBase::addField(const TrFieldDefV1 &def, bool initValues)
{
    const boost::shared_ptr<TrFieldBase> field(createField());
    field->SetFieldDefName(def.GetId());
    field->SetDefinition(def);
    addField(field);
    if (!initValues) return;

    const boost::shared_ptr<TrFieldBase> placed =
        getFields().back(); // knows where the block stands
    placed->locate();
    placed->InitValues();
    placed->fitBorders();
}

void TrBlockBase::addTable(const boost::shared_ptr<TrTableDefV1> &def)
{
    const boost::shared_ptr<TrTableBase> table = TrTableBase::createTable();
    table->SetTableDefName(def->GetId());
    table->SetDefinition(*def);
    addTable(table);
}

boost::shared_ptr<TrTableBase> TrBlockBase::getTable(const std::string &id)
{
    for (const auto &table : getTables())
        if (table->GetTableDefName() == id) return table;
    return {};
}

void TrBlockBase::recreateNotes()
{
    for (const auto &field : getFields()) field->RecreateNote();
    for (const auto &table : getTables()) table->RecreateNotes();
}
