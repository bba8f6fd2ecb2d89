// The record of a table: slots, definition, rows, older generations.
#include "content/table.h"

#include "content/entry.h"
#include "content/owner_walk.h"
#include "content/row_memo.h"
#include "definitions/table_def.h"
#include "drawing/block.h"
#include "foundation/info_lines.h"
#include "foundation/log.h"
#include "udo/udo_data.h"

#include <algorithm>
#include <stdexcept>
#include <unordered_set>

using QelFmt::RowMemo;

TrTableBase::AppendEntryCallback TrTableBase::mAppendEntryCB;

TrTableBase::TrTableBase() = default;
TrTableBase::TrTableBase(UgUDO *udo) : LumUg::UDO(udo) {}
TrTableBase::~TrTableBase() = default;

TrTableBase::AppendEntryCallback &TrTableBase::appendEntryCB() { return mAppendEntryCB; }

boost::shared_ptr<TrTableBase> TrTableBase::createTable()
{
    return boost::shared_ptr<TrTableBase>(new TrTableV1);
}

// Every step by name through the interface asks for this: the texts alone, not the links to thousands
// of rows that a whole reading of the record holds.
std::string TrTableBase::GetTableDefName() const
{
    if (IsNull()) return get(kTableDefName); // which says so
    const std::vector<std::string> texts = GetUdoObject()->getStrings();
    return texts.size() > kTableDefName.index ? texts[kTableDefName.index] : std::string();
}
double TrTableBase::GetX() const { return get(kX); }
double TrTableBase::GetY() const { return get(kY); }

// What follows is done by the current generation only.
void TrTableBase::SetDefinition(const TrTableDefV1 &) {}
void TrTableBase::RemoveEntry(const boost::shared_ptr<TrEntryBase> &) {}
void TrTableBase::SetTableDefName(const std::string &) {}
void TrTableBase::SetX(double) {}
void TrTableBase::SetY(double) {}
void TrTableBase::SetEntries(const Entries &) {}
void TrTableBase::AddEntry(const boost::shared_ptr<TrEntryBase> &) {}

// --- rows -----------------------------------------------------------------------------------------

RowMemo &TrTableBase::rows() const
{
    if (RowMemo *known = RowMemo::find(tag())) return *known;
    std::vector<tag_t> entries;
    for (UgTypedObject *object : GetLinks(kEntries.linkType)) {
        if (boost::dynamic_pointer_cast<TrEntryBase>(Create(object)))
            entries.push_back(object->getTag());
    }
    return RowMemo::start(tag(), std::move(entries));
}

// Whether the stored links are still the rows that are remembered, without wrapping them all.
bool TrTableBase::rowsAreThose(const std::vector<tag_t> &entries) const
{
    const LumUg::UdoData data(
        tag()); // compared in place: this is asked for every value that is set
    auto expected = entries.begin();
    for (const UF_UDOBJ_link_t &link : data.linkDefs()) {
        if (link.link_type != static_cast<int>(kEntries.linkType)) continue;
        if (expected != entries.end() && link.assoc_ug_tag == *expected)
            ++expected;
        else if (boost::dynamic_pointer_cast<TrEntryBase>(Create(link.assoc_ug_tag)))
            return false;
    }
    return expected == entries.end();
}

std::size_t TrTableBase::entryCount() const
{
    if (IsNull()) return 0;
    if (!rowsAreThose(rows().entries())) RowMemo::forget(tag());
    return rows().entries().size();
}

boost::shared_ptr<TrEntryBase> TrTableBase::entry(std::size_t index) const
{
    if (IsNull()) return {};
    for (int attempt = 0; attempt < 2; ++attempt) {
        const std::vector<tag_t> &entries = rows().entries();
        if (index < entries.size()) {
            const auto row = boost::dynamic_pointer_cast<TrEntryBase>(Create(entries[index]));
            if (row && QelFmt::firstLinking(row->tag()) == tag()) {
                bind(*row, viewToHold());
                return row;
            }
        } else if (rowsAreThose(entries)) {
            return {};
        }
        RowMemo::forget(tag()); // rows came or went without us
    }
    return {};
}

std::vector<std::size_t> TrTableBase::rowsWithSymbolsAfter(std::size_t index) const
{
    RowMemo &memo = rows();
    if (!memo.withSymbols) {
        memo.withSymbols.emplace();
        for (std::size_t i = 0; i < memo.entries().size(); ++i) {
            const auto row = boost::dynamic_pointer_cast<TrEntryBase>(Create(memo.entries()[i]));
            if (row && !row->getSymbols().empty()) memo.withSymbols->insert(i);
        }
    }
    return {memo.withSymbols->upper_bound(index), memo.withSymbols->end()};
}

std::optional<std::size_t> TrTableBase::indexOf(const TrEntryBase &row) const
{
    if (IsNull() || row.IsNull()) return {};
    if (const auto index = rows().indexOf(row.tag())) return index;
    RowMemo::forget(tag());
    return rows().indexOf(row.tag());
}

TrTableBase::Entries TrTableBase::getEntries() const
{
    const Entries entries = children(kEntries);
    if (entries.empty()) return entries;
    std::vector<tag_t> tags;
    for (const auto &row : entries) tags.push_back(row->tag());
    if (const RowMemo *memo = RowMemo::find(tag()); memo && memo->entries() != tags)
        RowMemo::forget(tag());
    const auto table = viewToHold();
    for (const auto &row : entries) bind(*row, table);
    return entries;
}

boost::shared_ptr<const TrTableBase> TrTableBase::viewToHold() const
{
    return boost::dynamic_pointer_cast<const TrTableBase>(Create(tag()));
}

void TrTableBase::bind(TrEntryBase &row, const boost::shared_ptr<const TrTableBase> &table) const
{
    row.getBaseLocationCmd() = [table](const TrEntryBase &entry) {
        return table->entryBaseLocation(entry);
    };
    row.setDirectionMult(directionMult());
}

void TrTableBase::removeAndRetainEntry(const boost::shared_ptr<TrEntryBase> &row)
{
    detach(kEntries.linkType, *row);
    if (RowMemo *memo = RowMemo::find(tag())) memo->remove(row->tag());
}

boost::shared_ptr<TrBlockBase> TrTableBase::block() const { return QelFmt::blockAbove(*this); }

std::string TrTableBase::GetBlockId() const
{
    const boost::shared_ptr<TrBlockBase> owner = block();
    return owner ? owner->GetBlockDefName() : std::string();
}

// --- the current generation -----------------------------------------------------------------------

TrTableV1::TrTableV1() = default;
TrTableV1::TrTableV1(UgUDO *udo) : TrTableBase(udo) {}
TrTableV1::~TrTableV1() = default;

LumUg::UDOClass *TrTableV1::GetUDOClass() const { return &mUDOClass; }
LumUg::UDO *TrTableV1::CreateInstance() { return new TrTableV1; }

void TrTableV1::SetTableDefName(const std::string &name) { set(kTableDefName, name); }

void TrTableV1::SetX(double x)
{
    set(kX, x);
    if (RowMemo *memo = RowMemo::find(tag())) memo->origin.reset();
}

void TrTableV1::SetY(double y)
{
    set(kY, y);
    if (RowMemo *memo = RowMemo::find(tag())) memo->origin.reset();
}

void TrTableV1::AddEntry(const boost::shared_ptr<TrEntryBase> &row)
{
    attach(kEntries.linkType, *row);
    RowMemo *memo = RowMemo::find(tag());
    if (!memo) return;
    memo->append(row->tag());
    if (memo->withSymbols) RowMemo::symbolsChanged(row->tag(), !row->getSymbols().empty());
}

void TrTableV1::RemoveEntry(const boost::shared_ptr<TrEntryBase> &row)
{
    removeAndRetainEntry(row);
    row->DeleteUDO();
}

void TrTableV1::SetEntries(const Entries &entries)
{
    std::vector<UgUDO *> objects;
    for (const auto &row : entries) objects.push_back(row->GetUdoObject());
    storeOrder(objects);
}

// Rows first, in the order given; what else hangs on the table keeps its order behind them.
void TrTableBase::storeOrder(const std::vector<UgUDO *> &entries)
{
    CreateUDO();
    RowMemo::forget(tag());
    const std::vector<tag_t> stored = rows().entries();
    const std::unordered_set<tag_t> isRow(stored.begin(), stored.end());
    std::vector<UgObject *> order;
    std::unordered_set<tag_t> wanted;
    for (UgUDO *entry : entries) {
        if (!wanted.insert(entry->getTag()).second) continue;
        if (!isRow.contains(entry->getTag())) attach(kEntries.linkType, LumUg::UDO(entry));
        order.push_back(entry);
    }
    for (UgObject *object : GetUdoObject()->getLinks(kEntries.linkType)) {
        const tag_t linked = object ? object->getTag() : NULL_TAG;
        if (wanted.contains(linked)) continue;
        if (isRow.contains(linked))
            removeLink(kEntries.linkType, dynamic_cast<UgTypedObject *>(object));
        else
            order.push_back(object);
    }
    GetUdoObject()->setLinks(kEntries.linkType, order);
    RowMemo::forget(tag());
}

void TrTableV1::InfoObject()
{
    QelFmt::InfoLines info;
    info.line("X", GetX());
    info.line("Y", GetY());
    info.text("-----------------------------------------------");
    info.text("Definition Information");
    info.flush();
    if (const auto def = GetDefinition(); !def->IsNull()) def->InfoObject();
}

// --- the older one --------------------------------------------------------------------------------

ZemTableV1::ZemTableV1() = default;
ZemTableV1::ZemTableV1(UgUDO *udo) : TrTableBase(udo) {}
ZemTableV1::~ZemTableV1() = default;

LumUg::UDOClass *ZemTableV1::GetUDOClass() const { return &mUDOClass; }
LumUg::UDO *ZemTableV1::CreateInstance() { return new ZemTableV1; }

boost::shared_ptr<TrEntryBase> ZemTableV1::AppendEntry() { return {}; }
