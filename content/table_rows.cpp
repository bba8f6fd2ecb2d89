// The rows of a table: appended, moved, hidden, stacked.
#include "content/entry.h"
#include "content/field.h"
#include "content/recompute_guard.h"
#include "content/row_memo.h"
#include "content/symbol_pass.h"
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
    const boost::shared_ptr<TrTableDefV1> def = requiredDefinition();
    const boost::shared_ptr<TrEntryBase> row = TrEntryBase::createEntry();
    bind(*row, viewToHold());
    try {
        row->SetDisplayMiddleBorder(0);
        AddEntry(row);
        row->InitValues(*def);
        row->locate();
    } catch (...) {
        takeBack(row);
        throw;
    }
    announce(); // the row is made, whatever they say who are told of it
    return row;
}

boost::shared_ptr<TrTableDefV1> TrTableBase::requiredDefinition() const
{
    const boost::shared_ptr<TrTableDefV1> def = GetDefinition();
    if (!def->IsNull()) return def;
    const std::string name = IsNull() ? std::string() : " " + GetTableDefName();
    throw std::runtime_error("Table" + name +
                             " has no definition: bring the format up to date first");
}

// A row that failed on its way leaves nothing; other rows stand as they did.
void TrTableBase::takeBack(const boost::shared_ptr<TrEntryBase> &row)
{
    if (row->IsNull()) return;
    try {
        if (indexOf(*row))
            RemoveEntry(row);
        else
            row->DeleteUDO();
    } catch (...) { // the failure that is being reported is the first one
    }
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
    QelFmt::SymbolPass pass(tag());
    const Entries entries = getEntries();
    for (std::size_t i = 0; i < entries.size(); ++i) {
        pass.arriveAt(i);
        entries[i]->locate();
    }
    if (pass.leftSymbolsBehind()) updateAllSymbols();
}

void TrTableBase::Move()
{
    RowMemo::forget(tag());
    QelFmt::SymbolPass pass(tag());
    for (const auto &row : getEntries()) row->Move();
    if (pass.leftSymbolsBehind()) updateAllSymbols();
}

void TrTableBase::setValue(TrEntryBase &row, TrFieldBase &field,
                           const std::vector<std::string> &lines)
{
    const double before = field.CalcHeight();
    field.ModifyValue(lines);
    const double after = field.CalcHeight();
    if (after == before) return;
    const double beside = row.heightBeside(field);
    if (std::max(before, beside) != std::max(after, beside)) restackAfter(row);
}

// The row's height is another one now.
void TrTableBase::restackAfter(TrEntryBase &row)
{
    const QelFmt::ValuesStay stay;
    row.UpdateBorders();
    if (row.GetHideEntry() != 0) return; // takes no room
    const std::optional<std::size_t> index = indexOf(row);
    if (!index) return;
    QelFmt::SymbolPass pass(tag());
    for (std::size_t i = *index + 1; i < rows().entries().size(); ++i) {
        pass.arriveAt(i);
        if (const auto next = entry(i)) next->locate();
    }
}

// --- symbols ----------------------------------------------------------------------------------------

void TrTableBase::updateAllSymbols()
{
    const QelFmt::SymbolPass pass(tag());
    for (const auto &row : getEntries()) row->updateSymbols();
}

// Down to the first row that says something itself. A pass that is going on sees to it itself.
void TrTableBase::valueChanged(const TrEntryBase &row, const TrFieldBase &changed)
{
    const std::optional<std::size_t> index = indexOf(row);
    if (!index) return;
    if (QelFmt::SymbolPass *pass = QelFmt::SymbolPass::over(tag()))
        return pass->valueChanged(*index);
    const std::vector<std::size_t> followers = rowsWithSymbolsAfter(*index);
    if (followers.empty()) return;
    const boost::shared_ptr<TrTableDefV1> def = GetDefinition();
    if (def->IsNull()) return;
    const std::string field = changed.GetFieldDefName();
    if (field != def->GetSymbol1ValueOverride() && field != def->GetSymbol2ValueOverride()) return;

    const QelFmt::SymbolPass pass(tag());
    std::size_t looked = *index + 1;
    for (const std::size_t follower : followers) {
        boost::shared_ptr<TrEntryBase> next;
        for (; looked <= follower; ++looked) {
            next = entry(looked);
            if (next && !next->leavesEmpty(field)) return;
        }
        if (next) next->updateSymbols();
    }
}

// --- values -----------------------------------------------------------------------------------------

void TrTableBase::RebroadcastValues()
{
    for (const auto &row : getEntries()) row->RebroadcastValues();
}

void TrTableBase::RecreateNotes()
{
    QelFmt::SymbolPass pass(tag());
    for (const auto &row : getEntries()) row->RecreateNotes();
    if (pass.leftSymbolsBehind()) updateAllSymbols();
}
