// A row on its sheet: placed, framed, hidden, and its symbols.
#include "content/attributes.h"
#include "content/entry.h"
#include "content/field.h"
#include "content/row_memo.h"
#include "content/symbol.h"
#include "content/table.h"
#include "definitions/table_def.h"
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

void TrEntryBase::UpdateBorders() { drawBorders(getFields()); }

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

void TrEntryBase::valueChanged()
{
    QelFmt::RowMemo::rowChanged(tag());
    updateSymbols();
    if (GetHideEntry() != 0) showDraftingObjects(false);
}

// --- symbols ----------------------------------------------------------------------------------------

void TrEntryBase::addSymbol(const Point3 &point)
{
    if (!dynamic_cast<const TrEntryV2 *>(this)) return; // older rows have none
    const boost::shared_ptr<SymbolBase> symbol = SymbolBase::createSymbol(point, nullptr);
    addSymbol(symbol);
    makeGeometryOfAllSymbols();
}

void TrEntryBase::makeGeometryOfAllSymbols()
{
    const Symbols symbols = getSymbols();
    const auto lacks = [](const auto &symbol) { return !symbol->GetSymbolObject(); };
    if (std::none_of(symbols.begin(), symbols.end(), lacks)) return;
    const boost::shared_ptr<TrTableBase> table = GetTable();
    if (!table) return;
    const boost::shared_ptr<TrTableDefV1> def = table->GetDefinition();
    const std::vector<std::string> lines = symbolLines(*def);
    for (const auto &symbol : symbols) {
        if (!lacks(symbol)) continue;
        symbol->createSymbolGeometry(static_cast<UF_DRF_id_symbol_type_e>(def->GetSymbolType()),
                                     lines);
        applySymbolPreferences(*symbol, *def);
    }
    if (GetHideEntry() != 0) showDraftingObjects(false);
}

void TrEntryBase::removeAllSymbolGeometry()
{
    for (const auto &symbol : getSymbols()) symbol->deleteSymbolGeometry();
}

// Text first: the size follows it.
void TrEntryBase::updateSymbols()
{
    const Symbols symbols = getSymbols();
    if (symbols.empty()) return;
    const boost::shared_ptr<TrTableBase> table = GetTable();
    if (!table) return;
    const boost::shared_ptr<TrTableDefV1> def = table->GetDefinition();
    if (def->IsNull()) return;
    const std::vector<std::string> lines = symbolLines(*def);
    for (const auto &symbol : symbols) {
        if (!symbol->GetSymbolObject()) continue;
        symbol->updateSymbolGeometry(lines);
        applySymbolPreferences(*symbol, *def);
    }
}

std::vector<std::string> TrEntryBase::symbolsZoneList() const
{
    std::vector<std::string> zones;
    for (const auto &symbol : getSymbols()) zones.push_back(symbol->zone());
    return zones;
}

void TrEntryBase::applySymbolPreferences(SymbolBase &symbol, const TrTableDefV1 &def) const
{
    symbol.setSymbolPreferences(def.GetSymbolType(), def.GetSymbolTextSize(),
                                def.GetSymbolTextAspect(),
                                static_cast<UgColor>(def.GetSymbolColor()), def.GetSymbolLayer());
}

std::vector<std::string> TrEntryBase::symbolLines(const TrTableDefV1 &def) const
{
    return {GenerateSymbolValue(def.GetSymbol1ValueOverride()),
            GenerateSymbolValue(def.GetSymbol2ValueOverride())};
}

// The first line of a field, as other programs read it; without that attribute, of its value. Empty
// without such a field.
std::string TrEntryBase::firstLineOf(const std::string &fieldId) const
{
    const boost::shared_ptr<TrFieldBase> one = field(fieldId);
    if (!one) return {};
    const auto stored = QelFmt::readAttribute(*one->GetUdoObject(), "VALUE0");
    return stored ? *stored : one->GetValue().front();
}

// A text that names a field of the row stands for the field's value. Rows that leave the field
// empty mean what the last row before them says.
std::string TrEntryBase::GenerateSymbolValue(const std::string &text) const
{
    if (!field(text)) return text;
    QELFMT_INFO << "Getting entry to use for field " << text;
    std::string value = firstLineOf(text);
    const boost::shared_ptr<TrTableBase> table = value.empty() ? GetTable() : nullptr;
    const std::size_t own = table ? table->indexOf(*this).value_or(0) : 0;
    for (std::size_t i = own; value.empty() && i > 0; --i) {
        QELFMT_INFO << "Entry field is empty. Looking at entry " << i - 1;
        if (const auto before = table->entry(i - 1)) value = before->firstLineOf(text);
    }
    if (value.empty()) QELFMT_INFO << "Using current entry since all are blank";
    QELFMT_INFO << "Symbol value = " << value;
    return value;
}
