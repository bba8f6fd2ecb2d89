#include "content/row_memo.h"

#include "content/symbol_pass.h"

#include <algorithm>
#include <memory>

namespace QelFmt {

namespace {

constexpr std::size_t kTablesKept = 64; // beyond that all are forgotten and start anew

struct Memos {
    std::unordered_map<tag_t, std::unique_ptr<RowMemo>> byTable;
    std::unordered_map<tag_t, tag_t> tableOf; // entry: table
};

// Never destroyed: records may be deleted while the process ends.
Memos &memos()
{
    static auto *all = new Memos;
    return *all;
}

} // namespace

RowMemo *RowMemo::find(tag_t table)
{
    const auto found = memos().byTable.find(table);
    return found == memos().byTable.end() ? nullptr : found->second.get();
}

RowMemo &RowMemo::start(tag_t table, std::vector<tag_t> entries)
{
    forget(table);
    if (memos().byTable.size() >= kTablesKept) memos() = Memos();
    std::unique_ptr<RowMemo> &memo = memos().byTable[table];
    memo.reset(new RowMemo(table));
    for (const tag_t entry : entries) memo->append(entry);
    return *memo;
}

void RowMemo::forget(tag_t table)
{
    SymbolPass::rowsChanged(table);
    const auto found = memos().byTable.find(table);
    if (found == memos().byTable.end()) return;
    for (const tag_t entry : found->second->m_entries) {
        const auto owner = memos().tableOf.find(entry); // it may be another table's by now
        if (owner != memos().tableOf.end() && owner->second == table) memos().tableOf.erase(owner);
    }
    memos().byTable.erase(found);
}

void RowMemo::rowChanged(tag_t entry)
{
    const auto table = memos().tableOf.find(entry);
    if (table == memos().tableOf.end()) return;
    RowMemo &memo = *memos().byTable.at(table->second);
    const std::size_t index = memo.m_index.at(entry);
    if (index < memo.m_room.size()) memo.m_changed.insert(index);
}

void RowMemo::symbolsChanged(tag_t entry, bool hasSome)
{
    const auto table = memos().tableOf.find(entry);
    if (table == memos().tableOf.end()) return;
    RowMemo &memo = *memos().byTable.at(table->second);
    if (!memo.withSymbols) return;
    const std::size_t index = memo.m_index.at(entry);
    if (hasSome)
        memo.withSymbols->insert(index);
    else
        memo.withSymbols->erase(index);
}

bool RowMemo::isLast(tag_t entry)
{
    const auto table = memos().tableOf.find(entry);
    return table != memos().tableOf.end() &&
           memos().byTable.at(table->second)->m_entries.back() == entry;
}

void RowMemo::append(tag_t entry)
{
    m_index[entry] = m_entries.size();
    m_entries.push_back(entry);
    memos().tableOf[entry] = m_table;
}

namespace {

// Without the number itself; those above it are one less.
std::set<std::size_t> closedUp(const std::set<std::size_t> &numbers, std::size_t gone)
{
    std::set<std::size_t> closed;
    for (const std::size_t number : numbers)
        if (number != gone) closed.insert(closed.end(), number > gone ? number - 1 : number);
    return closed;
}

} // namespace

void RowMemo::remove(tag_t entry)
{
    const auto found = m_index.find(entry);
    if (found == m_index.end()) return;
    SymbolPass::rowsChanged(m_table);
    const std::size_t gone = found->second;
    const auto at = static_cast<std::ptrdiff_t>(gone);
    m_index.erase(found);
    memos().tableOf.erase(entry);
    m_entries.erase(m_entries.begin() + at);
    for (std::size_t i = gone; i < m_entries.size(); ++i) m_index[m_entries[i]] = i;
    if (gone < m_room.size()) m_room.erase(m_room.begin() + at);
    if (m_before.size() > gone + 1) m_before.resize(gone + 1); // the sums up to this row hold
    m_changed = closedUp(m_changed, gone);
    if (withSymbols) withSymbols = closedUp(*withSymbols, gone);
}

std::optional<std::size_t> RowMemo::indexOf(tag_t entry) const
{
    const auto found = m_index.find(entry);
    if (found == m_index.end()) return {};
    return found->second;
}

void RowMemo::measureChanged(std::size_t end, const Measure &measure)
{
    while (!m_changed.empty() && *m_changed.begin() < end) {
        const std::size_t row = *m_changed.begin();
        const double room = measure(m_entries[row]);
        m_changed.erase(row);
        if (room == m_room[row]) continue;
        m_room[row] = room;
        if (m_before.size() > row + 1) m_before.resize(row + 1); // the sums up to this row hold
    }
}

double RowMemo::roomBefore(std::size_t index, const Measure &measure)
{
    measureChanged(index, measure);
    while (m_room.size() < index) m_room.push_back(measure(m_entries[m_room.size()]));
    while (m_before.size() <= index)
        m_before.push_back(m_before.back() + m_room[m_before.size() - 1]);
    return m_before[index];
}

} // namespace QelFmt
