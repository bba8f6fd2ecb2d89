// The rows of a table: appended, moved, hidden, stacked.
#include "content/entry.h"
#include "content/recompute_guard.h"
#include "content/row_memo.h"
#include "content/table.h"
#include "definitions/table_def.h"
#include "drawing/drawing.h"
#include "drawing/format.h"
#include "foundation/log.h"

#include <algorithm>
#include <stdexcept>

using QelFmt::RowMemo;

namespace {

// 0 grows downwards, whatever the definition's own listing calls it: drawings in the field are
// stacked so.
int directionOf(const TrTableDefV1 &def)
{
    return LumUg::Record(def).get(TrTableDefV1::kDirection) == 0 ? -1 : 1;
}

} // namespace

int TrTableBase::directionMult() const
{
    RowMemo &memo = rows();
    if (!memo.origin) memo.origin = RowMemo::Origin{GetX(), GetY(), directionOf(*GetDefinition())};
    return memo.origin->direction;
}

double TrTableBase::roomOf(tag_t entry) const
{
    const auto row = boost::dynamic_pointer_cast<TrEntryBase>(Create(entry));
    return row && row->GetHideEntry() == 0 ? row->CalcHeight() : 0.0;
}

std::vector<double> TrTableBase::entryBaseLocation(const TrEntryBase &row) const
{
    const std::optional<std::size_t> found = indexOf(row);
    RowMemo &memo = rows();
    const int direction = directionMult();
    const std::size_t index = found.value_or(memo.entries().size());
    const double room = memo.roomBefore(index, [this](tag_t entry) { return roomOf(entry); });
    const double y = memo.origin->y + direction * room;
    QELFMT_INFO << "Entry " << index << " base Y location = " << y;
    return {memo.origin->x, y};
}

// --- appending --------------------------------------------------------------------------------------

boost::shared_ptr<TrEntryBase> TrTableBase::AppendEntry()
{
    if (!dynamic_cast<const TrTableV1 *>(this)) return {}; // older tables are read only
    CreateUDO();
    const boost::shared_ptr<TrEntryBase> row = TrEntryBase::createEntry();
    bind(*row, viewToHold());
    row->SetDisplayMiddleBorder(0);
    AddEntry(row);
    row->InitValues(*GetDefinition());
    row->locate();
    announce();
    return row;
}

void TrTableBase::announce() const
{
    const AppendEntryCallback &callback = appendEntryCB();
    if (!callback) return;
    const std::string format = TrDrawing::getDrawing(*this)->format()->GetFormatDefName();
    callback(format.c_str(), GetBlockId().c_str(), GetTableDefName().c_str());
}

// --- order ------------------------------------------------------------------------------------------

void TrTableBase::MoveEntryUp(int index)
{
    if (index <= 0 ||
        !moveEntry(static_cast<std::size_t>(index), static_cast<std::size_t>(index) - 1))
        throw std::runtime_error("First entry cannot be moved up.");
}

void TrTableBase::MoveEntryDown(int index)
{
    if (index < 0 ||
        !moveEntry(static_cast<std::size_t>(index), static_cast<std::size_t>(index) + 1))
        throw std::runtime_error("Last entry cannot moved down.");
}

bool TrTableBase::moveEntry(std::size_t from, std::size_t to)
{
    Entries entries = getEntries();
    if (from >= entries.size() || to >= entries.size()) return false;
    if (from == to) return true;
    const auto first = entries.begin();
    if (from < to)
        std::rotate(first + from, first + from + 1, first + to + 1);
    else
        std::rotate(first + to, first + from, first + from + 1);
    SetEntries(entries);
    locate();
    return true;
}

void TrTableBase::HidePreviousEntries(int count)
{
    const Entries entries = getEntries();
    const auto hidden = std::clamp<std::ptrdiff_t>(count, 0, std::ssize(entries));
    for (std::ptrdiff_t i = 0; i < hidden; ++i) entries[i]->SetHideEntry(1);
    locate();
}

// --- placing ----------------------------------------------------------------------------------------

// A table of an older block, which has no definition yet, stays where it is.
void TrTableBase::locate()
{
    RowMemo::forget(tag());
    const boost::shared_ptr<TrTableDefV1> def = GetDefinition();
    if (!def->IsNull()) {
        if (!m_baseLocationCmd)
            throw std::logic_error("Table " + GetTableDefName() +
                                   " cannot be placed: nobody has told it where its block stands");
        const std::vector<double> base = m_baseLocationCmd();
        SetX(base.at(0) + def->GetLocationX());
        SetY(base.at(1) + def->GetLocationY());
    }
    for (const auto &row : getEntries()) row->locate();
}

void TrTableBase::Move()
{
    RowMemo::forget(tag());
    for (const auto &row : getEntries()) row->Move();
}

void TrTableBase::restackAfter(TrEntryBase &row, double heightBefore)
{
    const double height = row.CalcHeight();
    if (height == heightBefore) return;
    const QelFmt::ValuesStay stay;
    row.UpdateBorders();
    if (row.GetHideEntry() != 0) return; // takes no room
    const std::optional<std::size_t> index = indexOf(row);
    if (!index) return;
    for (std::size_t i = *index + 1; i < rows().entries().size(); ++i)
        if (const auto next = entry(i)) next->locate();
}

void TrTableBase::RebroadcastValues()
{
    for (const auto &row : getEntries()) row->RebroadcastValues();
}

void TrTableBase::RecreateNotes()
{
    for (const auto &row : getEntries()) row->RecreateNotes();
}
