// The record of a row: slots, fields, older generations.
#include "content/entry.h"

#include "content/field.h"
#include "content/owner_walk.h"
#include "content/row_memo.h"
#include "content/symbol.h"
#include "content/table.h"
#include "definitions/table_def.h"
#include "foundation/log.h"

#include <set>

using QelFmt::RowMemo;
using QelFmt::SymbolBase;

TrEntryBase::TrEntryBase() = default;
TrEntryBase::TrEntryBase(UgUDO *udo) : LumUg::UDO(udo) {}
TrEntryBase::~TrEntryBase() = default;

boost::shared_ptr<TrEntryBase> TrEntryBase::createEntry()
{
    return boost::shared_ptr<TrEntryBase>(new TrEntryV2);
}

std::string TrEntryBase::GetEntryDefName() const { return get(kEntryDefName); }
void TrEntryBase::SetEntryDefName(const std::string &name) { set(kEntryDefName, name); }
int TrEntryBase::GetHideEntry() const { return get(kHideEntry); }
int TrEntryBase::GetDisplayMiddleBorder() const { return get(kDisplayMiddleBorder); }
void TrEntryBase::SetDisplayMiddleBorder(int display) { set(kDisplayMiddleBorder, display); }

void TrEntryBase::SetHideEntry(int hide)
{
    set(kHideEntry, hide);
    RowMemo::rowChanged(tag());
    showDraftingObjects(hide == 0);
}

boost::shared_ptr<TrTableBase> TrEntryBase::GetTable() const
{
    return QelFmt::ownerOf<TrTableBase>(*this);
}

// --- fields ---------------------------------------------------------------------------------------

TrEntryBase::Fields TrEntryBase::getFields() const
{
    Fields fields = children(kFields);
    for (const auto &one : fields) bind(*one);
    return fields;
}

// A field reads where its row stands whenever it asks. It holds on to the record, not to this
// wrapper.
void TrEntryBase::bind(TrFieldBase &one) const
{
    one.getBaseLocationCmd() = [row = TrEntryBase(*this)] { return row.getBaseLocation(); };
}

boost::shared_ptr<TrFieldBase> TrEntryBase::field(const std::string &id) const
{
    for (const auto &one : getFields())
        if (one->GetFieldDefName() == id) return one;
    return {};
}

TrFieldBase *TrEntryBase::CreateField() const { return new TrFieldV1; }

void TrEntryBase::AddField(const boost::shared_ptr<TrFieldBase> &one)
{
    attach(kFields.linkType, *one);
    RowMemo::rowChanged(tag());
}

void TrEntryBase::removeAndRetainField(const boost::shared_ptr<TrFieldBase> &one)
{
    detach(kFields.linkType, *one);
    RowMemo::rowChanged(tag());
}

void TrEntryBase::AddField(const TrFieldDefV1 &def)
{
    const boost::shared_ptr<TrFieldBase> one(CreateField());
    if (!one) return; // older rows are read only
    one->SetFieldDefName(def.GetId());
    one->SetDefinition(def);
    AddField(one);
    bind(*one);
    one->InitValues();
}

void TrEntryBase::InitValues(const TrTableDefV1 &def)
{
    SetEntryDefName(def.GetId());
    for (const TrFieldDefV1 &fieldDef : def.GetFieldDefinitions()) AddField(fieldDef);
}

// --- symbols: the current generation only ---------------------------------------------------------

TrEntryBase::Symbols TrEntryBase::getSymbols() const { return {}; }
void TrEntryBase::addSymbol(const boost::shared_ptr<SymbolBase> &) {}
void TrEntryBase::removeSymbol(const boost::shared_ptr<SymbolBase> &) {}
void TrEntryBase::removeAndRetainSymbol(const boost::shared_ptr<SymbolBase> &) {}

// --- against a new definition, and older generations ------------------------------------------------

// Fields find their new definition by their name: other than in a block, where they pair by
// position.
void TrEntryBase::UpdateDefinition(const TrTableDefV1 &def)
{
    for (const auto &one : getFields()) {
        const TrFieldDefV1 fieldDef = def.GetFieldDefinition(one->GetFieldDefName());
        if (!fieldDef.IsNull()) one->UpdateDefinition(fieldDef);
    }
    checkForNewFields(def);
    checkForRemovedFields(def);
    RowMemo::rowChanged(tag());
}

void TrEntryBase::checkForNewFields(const TrTableDefV1 &def)
{
    std::set<std::string> present;
    for (const auto &one : getFields()) present.insert(one->GetFieldDefName());
    for (const TrFieldDefV1 &fieldDef : def.GetFieldDefinitions()) {
        const std::string id = fieldDef.GetId();
        if (!present.insert(id).second) continue;
        QELFMT_INFO << "Adding new field " << id;
        AddField(fieldDef);
    }
}

void TrEntryBase::checkForRemovedFields(const TrTableDefV1 &def)
{
    std::set<std::string> wanted;
    for (const TrFieldDefV1 &fieldDef : def.GetFieldDefinitions()) wanted.insert(fieldDef.GetId());
    for (const auto &one : getFields()) {
        const std::string name = one->GetFieldDefName();
        if (wanted.contains(name)) continue;
        QELFMT_INFO << "Deleting removed field " << name;
        removeAndRetainField(one);
        one->DeleteUDO();
    }
}

boost::shared_ptr<TrEntryBase> TrEntryBase::checkAndUpgrade()
{
    boost::shared_ptr<TrEntryBase> current;
    const bool isCurrent = dynamic_cast<const TrEntryV2 *>(this) != nullptr;
    if (isCurrent) {
        current.reset(new TrEntryV2(GetUdoObject()));
        current->m_baseLocationCmd = m_baseLocationCmd;
        current->m_directionMult = m_directionMult;
    } else {
        current = upgrade();
    }
    for (const auto &one : current->getFields()) {
        const boost::shared_ptr<TrFieldBase> fresh = one->checkAndUpgrade();
        if (!fresh || fresh->tag() == one->tag()) continue;
        current->exchange(kFields.linkType, *one, *fresh);
        one->DeleteUDO(); // note and lines have changed hands
    }
    // Older generations only told that a row is hidden.
    if (!isCurrent && current->GetHideEntry() != 0) current->showDraftingObjects(false);
    return current;
}

boost::shared_ptr<TrEntryBase> TrEntryBase::upgrade()
{
    const boost::shared_ptr<TrEntryBase> fresh = createEntry();
    fresh->SetEntryDefName(GetEntryDefName());
    fresh->SetDisplayMiddleBorder(GetDisplayMiddleBorder());
    fresh->SetHideEntry(GetHideEntry());
    fresh->m_baseLocationCmd = m_baseLocationCmd;
    fresh->m_directionMult = m_directionMult;
    for (const auto &symbol : getSymbols()) {
        removeAndRetainSymbol(symbol);
        fresh->addSymbol(symbol);
    }
    for (const auto &one : getFields()) {
        removeAndRetainField(one);
        fresh->AddField(one);
    }
    return fresh;
}

// --- the current generation -----------------------------------------------------------------------

TrEntryV2::TrEntryV2() = default;
TrEntryV2::TrEntryV2(UgUDO *udo) : TrEntryBase(udo) {}
TrEntryV2::~TrEntryV2() = default;

LumUg::UDOClass *TrEntryV2::GetUDOClass() const { return &mUDOClass; }
LumUg::UDO *TrEntryV2::CreateInstance() { return new TrEntryV2; }

TrEntryBase::Symbols TrEntryV2::getSymbols() const { return children(kSymbols); }

void TrEntryV2::addSymbol(const boost::shared_ptr<SymbolBase> &symbol)
{
    attach(kSymbols.linkType, *symbol);
    RowMemo::symbolsChanged(tag(), true);
}

void TrEntryV2::removeSymbol(const boost::shared_ptr<SymbolBase> &symbol)
{
    discard(kSymbols.linkType, *symbol);
    RowMemo::symbolsChanged(tag(), !getSymbols().empty());
}

void TrEntryV2::removeAndRetainSymbol(const boost::shared_ptr<SymbolBase> &symbol)
{
    detach(kSymbols.linkType, *symbol);
    RowMemo::symbolsChanged(tag(), !getSymbols().empty());
}

// --- the older ones -------------------------------------------------------------------------------

TrEntryV1::TrEntryV1() = default;
TrEntryV1::TrEntryV1(UgUDO *udo) : TrEntryBase(udo) {}
TrEntryV1::~TrEntryV1() = default;

LumUg::UDOClass *TrEntryV1::GetUDOClass() const { return &mUDOClass; }
LumUg::UDO *TrEntryV1::CreateInstance() { return new TrEntryV1; }

ZemEntryV1::ZemEntryV1() = default;
ZemEntryV1::ZemEntryV1(UgUDO *udo) : TrEntryBase(udo) {}
ZemEntryV1::~ZemEntryV1() = default;

LumUg::UDOClass *ZemEntryV1::GetUDOClass() const { return &mUDOClass; }
LumUg::UDO *ZemEntryV1::CreateInstance() { return new ZemEntryV1; }

void ZemEntryV1::SetEntryDefName(const std::string &) {}
void ZemEntryV1::AddField(const boost::shared_ptr<TrFieldBase> &) {}
void ZemEntryV1::SetHideEntry(int) {}
void ZemEntryV1::SetDisplayMiddleBorder(int) {}
TrFieldBase *ZemEntryV1::CreateField() const { return nullptr; }
