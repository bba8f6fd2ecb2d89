// A row on its sheet: placed, framed, hidden.
#include "content/entry.h"
#include "content/field.h"
#include "content/row_memo.h"
#include "content/symbol.h"
#include "content/table.h"
#include "foundation/log.h"

#include "uf_obj.h"
#include "ug_displayable.hxx"
#include "ug_exception.hxx"
#include "ug_line.hxx"

#include <algorithm>
#include <stdexcept>

using QelFmt::SymbolBase;

namespace {

double tallest(const TrEntryBase::Fields &fields)
{
    double height = 0.0;
    for (const auto &one : fields) height = std::max(height, one->CalcHeight());
    QELFMT_INFO << "entry height = " << height;
    return height;
}

void setBlanked(const UgObject *object, bool blanked)
{
    if (!object) return;
    UgException::throwOnFailure(
        UF_OBJ_set_blank_status(object->getTag(), blanked ? UF_OBJ_BLANKED : UF_OBJ_NOT_BLANKED));
}

} // namespace

double TrEntryBase::CalcHeight() const { return tallest(getFields()); }

double TrEntryBase::heightBeside(const TrFieldBase &field) const
{
    Fields others = getFields();
    std::erase_if(others, [&](const auto &one) { return one->tag() == field.tag(); });
    return tallest(others);
}

std::vector<double> TrEntryBase::getBaseLocation() const
{
    if (!m_baseLocationCmd)
        throw std::logic_error("A row of table " + GetEntryDefName() +
                               " cannot be placed: it was not taken from its table");
    return m_baseLocationCmd(*this);
}

// A hidden row is placed too, where the next one stands, and stays out of sight.
void TrEntryBase::locate()
{
    const Fields fields = getFields();
    for (const auto &one : fields) one->locate();
    drawBorders(fields);
    updateSymbols();
    if (GetHideEntry() != 0) showDraftingObjects(false);
}

void TrEntryBase::Move()
{
    for (const auto &one : getFields()) one->Move();
}

// Lines that are new stay out of sight with their row.
void TrEntryBase::UpdateBorders()
{
    drawBorders(getFields());
    if (GetHideEntry() != 0) showDraftingObjects(false);
}

// All fields get boxes as high as the row, below its base point where rows grow downwards.
void TrEntryBase::drawBorders(const Fields &fields)
{
    const double height = tallest(fields) * m_directionMult;
    for (const auto &one : fields) one->UpdateBorders(height);
}

void TrEntryBase::RebroadcastValues()
{
    for (const auto &one : getFields()) one->RebroadcastValue();
}

void TrEntryBase::RecreateNotes()
{
    for (const auto &one : getFields()) one->RecreateNote();
}

void TrEntryBase::RemoveFieldBorders()
{
    for (const auto &one : getFields()) one->RemoveDraftingObjects(true);
}

void TrEntryBase::ToggleMiddleBorder()
{
    for (const auto &one : getFields())
        one->SetHasMiddleBorder(one->GetHasMiddleBorder() == 0 ? 1 : 0);
}

void TrEntryBase::showDraftingObjects(bool show) const
{
    for (const auto &one : getFields()) {
        setBlanked(one->GetNote(), !show);
        for (const UgLine *line : one->GetBorders()) setBlanked(line, !show);
    }
    for (const auto &symbol : getSymbols()) setBlanked(symbol->GetSymbolObject(), !show);
}

void TrEntryBase::valueChanged(const TrFieldBase &changed)
{
    QelFmt::RowMemo::rowChanged(tag());
    updateSymbols();
    if (GetHideEntry() != 0) showDraftingObjects(false);
    if (QelFmt::RowMemo::isLast(tag())) return; // no other row can say what this one says
    if (const auto table = GetTable()) table->valueChanged(*this, changed);
}
