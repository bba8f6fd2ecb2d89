// The symbols of a row.
#include "content/attributes.h"
#include "content/entry.h"
#include "content/field.h"
#include "content/row_memo.h"
#include "content/symbol.h"
#include "content/symbol_pass.h"
#include "content/table.h"
#include "definitions/table_def.h"
#include "foundation/log.h"

#include "ug_displayable.hxx"

#include <algorithm>
#include <cmath>
#include <stdexcept>

using QelFmt::SymbolBase;

void TrEntryBase::addSymbol(const Point3 &point)
{
    if (!dynamic_cast<const TrEntryV2 *>(this)) return; // older rows have none
    if (!std::isfinite(point[0]) || !std::isfinite(point[1]))
        throw std::runtime_error("A symbol cannot be placed: give its X and Y as finite numbers");
    if (const auto table = GetTable()) table->requiredDefinition();
    const boost::shared_ptr<SymbolBase> symbol = SymbolBase::createSymbol(point, nullptr);
    try {
        addSymbol(symbol);
        makeGeometryOfAllSymbols();
    } catch (...) {
        takeBack(symbol);
        throw;
    }
}

// A symbol that could not be drawn leaves no record.
void TrEntryBase::takeBack(const boost::shared_ptr<SymbolBase> &symbol)
{
    try {
        removeSymbol(symbol);
    } catch (...) { // the failure that is being reported is the first one
    }
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
    if (GetHideEntry() != 0) showDraftingObjects(false);
}

bool TrEntryBase::leavesEmpty(const std::string &fieldId) const
{
    return firstLineOf(fieldId).empty();
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
    if (value.empty()) value = saidBefore(text);
    if (value.empty()) QELFMT_INFO << "Using current entry since all are blank";
    QELFMT_INFO << "Symbol value = " << value;
    return value;
}

// Within a pass over the table only the rows since the last look back are looked at.
std::string TrEntryBase::saidBefore(const std::string &fieldId) const
{
    const boost::shared_ptr<TrTableBase> table = GetTable();
    if (!table) return {};
    QelFmt::SymbolPass *pass = QelFmt::SymbolPass::over(table->tag());
    const std::size_t own = table->indexOf(*this).value_or(0);
    std::string value;
    for (std::size_t i = own; value.empty() && i > 0; --i) {
        QELFMT_INFO << "Entry field is empty. Looking at entry " << i - 1;
        const auto before = table->entry(i - 1);
        if (!before) continue;
        value = before->firstLineOf(fieldId);
        const std::string *known = pass ? pass->saidBefore(before->tag(), fieldId) : nullptr;
        if (!known || !value.empty()) continue;
        value = *known;
        break;
    }
    if (pass) pass->remember(own, tag(), fieldId, value);
    return value;
}
