// A table and its definition, and the older generations of tables.
#include "content/entry.h"
#include "content/owner_walk.h"
#include "content/row_memo.h"
#include "content/table.h"
#include "definitions/table_def.h"
#include "foundation/log.h"

#include <algorithm>

using QelFmt::RowMemo;

// --- definition -----------------------------------------------------------------------------------

boost::shared_ptr<TrTableDefV1> TrTableBase::GetDefinition() const
{
    if (!IsNull()) {
        for (const unsigned linked : linkTags(kDefinition.linkType)) {
            if (auto def = createChild<TrTableDefV1>(linked)) return def;
        }
        if (auto kept = firstChild(kKeptDefinition)) return kept;
    }
    return boost::shared_ptr<TrTableDefV1>(new TrTableDefV1);
}

boost::shared_ptr<TrTableDefV1> TrTableBase::retainDefinition()
{
    const boost::shared_ptr<TrTableDefV1> def = GetDefinition();
    if (def->IsNull()) return def;
    const auto linkedBy = [&](unsigned type) {
        const auto links = GetLinks(type);
        return std::find(links.begin(), links.end(), def->GetUdoObject()) != links.end();
    };
    for (const unsigned type : {kDefinition.linkType, kKeptDefinition.linkType})
        if (linkedBy(type)) detach(type, *def);
    if (RowMemo *memo = RowMemo::find(tag())) memo->origin.reset();
    return def;
}

void TrTableBase::keepDefinition()
{
    const boost::shared_ptr<TrTableDefV1> def = GetDefinition();
    if (def->IsNull()) return;
    QelFmt::detachFromParents(*def);
    attach(kKeptDefinition.linkType, *def);
}

void TrTableV1::SetDefinition(const TrTableDefV1 &def)
{
    CreateUDO();
    const auto kept = firstChild(kKeptDefinition);
    if (const auto old = GetDefinition(); !old->IsNull()) {
        const auto links = GetLinks(kDefinition.linkType);
        if (std::find(links.begin(), links.end(), old->GetUdoObject()) != links.end())
            detach(kDefinition.linkType, *old);
    }
    if (kept && kept->tag() != def.tag()) discard(kKeptDefinition.linkType, *kept);
    if (!def.IsNull()) attach(kDefinition.linkType, def);
    if (RowMemo *memo = RowMemo::find(tag())) memo->origin.reset();
}

// --- against a new definition, and older generations ------------------------------------------------

// What the rows compare with is the definition their own fields link to, which is still alive.
void TrTableBase::UpdateDefinition(const TrTableDefV1 &def)
{
    QELFMT_INFO << "updating table " << def.GetId();
    const boost::shared_ptr<TrTableDefV1> linked = GetDefinition();
    const bool changed = linked->IsNull() || *linked != def;
    SetDefinition(def);
    QELFMT_INFO << "updating entry definitions";
    for (const auto &row : getEntries()) row->UpdateDefinition(def);
    RowMemo::forget(tag());
    if (changed) locate();
}

boost::shared_ptr<TrTableBase> TrTableBase::checkAndUpgrade()
{
    boost::shared_ptr<TrTableBase> current;
    if (dynamic_cast<const TrTableV1 *>(this)) {
        current.reset(new TrTableV1(GetUdoObject()));
        current->getBaseLocationCmd() = m_baseLocationCmd;
    } else {
        current = upgrade();
    }
    for (const auto &row : current->getEntries()) {
        const boost::shared_ptr<TrEntryBase> fresh = row->checkAndUpgrade();
        if (!fresh || fresh->tag() == row->tag()) continue;
        current->exchange(kEntries.linkType, *row, *fresh);
        row->DeleteUDO(); // fields and symbols have changed hands
        RowMemo::forget(current->tag());
    }
    return current;
}

boost::shared_ptr<TrTableBase> TrTableBase::upgrade()
{
    const boost::shared_ptr<TrTableBase> fresh = createTable();
    fresh->SetTableDefName(GetTableDefName());
    fresh->SetX(GetX());
    fresh->SetY(GetY());
    fresh->getBaseLocationCmd() = m_baseLocationCmd;
    const bool keeps = firstChild(kKeptDefinition) != nullptr;
    const boost::shared_ptr<TrTableDefV1> def = retainDefinition();
    if (!def->IsNull()) fresh->SetDefinition(*def);
    if (keeps) fresh->keepDefinition();
    for (const auto &row : getEntries()) {
        removeAndRetainEntry(row);
        fresh->AddEntry(row);
    }
    return fresh;
}
