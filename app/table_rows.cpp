#include "app/table_rows.h"

#include "app/formats.h"
#include "app/problem.h"

#include "content/entry.h"
#include "content/field.h"
#include "content/table.h"
#include "definitions/table_def.h"
#include "drawing/block.h"
#include "drawing/drawing.h"
#include "drawing/format.h"

#include "ug_exception.hxx"

#include <fmt/format.h>

#include <algorithm>
#include <functional>

namespace app {

namespace {

// What fails in the library names the place where.
template <class Where, class Body> void naming(const Where &where, Body &&body)
{
    try {
        body();
    } catch (const UgException &failure) {
        throw Problem(fmt::format("{}: {}", where(), failure.askErrorText()));
    } catch (const std::exception &failure) {
        throw Problem(fmt::format("{}: {}", where(), failure.what()));
    }
}

// The first block of that name, as the interface takes it.
boost::shared_ptr<TrTableBase> recordOf(const SheetRef &sheet, const TableName &name)
{
    for (const auto &block : TrDrawing::getDrawing(sheet.tag)->format()->getBlocks())
        if (block->GetBlockDefName() == name.block) return block->getTable(name.table);
    return {};
}

} // namespace

std::string display(const TableName &name) { return name.block + "." + name.table; }

std::vector<TableName> tablesOf(const SheetRef &sheet)
{
    std::vector<TableName> names;
    const auto drawing = TrDrawing::getDrawing(sheet.tag);
    if (!drawing->hasFormat()) return names;
    for (const auto &block : drawing->format()->getBlocks())
        for (const auto &table : block->getTables())
            names.push_back({block->GetBlockDefName(), table->GetTableDefName()});
    return names;
}

TableName findTable(const Workspace &work, const SheetRef &sheet, const std::string &text)
{
    const std::vector<TableName> tables = tablesOf(sheet);
    std::vector<TableName> matches;
    std::vector<std::string> all;
    for (const TableName &name : tables) {
        if (display(name) == text) return name;
        if (name.table == text || text.empty()) matches.push_back(name);
        all.push_back(display(name));
    }
    if (matches.size() == 1) return matches.front();
    const std::string place = placeOf(work, sheet);
    if (all.empty())
        throw Problem(place + ": has no table: add a block with one ('qelfmt block add')");
    if (matches.empty())
        throw Problem(fmt::format("{}: no table {}; there are {}", place, text, joined(all, ", ")));
    throw Problem(fmt::format("{}: which table? Write one of {}", place, joined(all, ", ")));
}

TableRows::TableRows(const Workspace &work, const SheetRef &sheet, const TableName &name)
    : m_work(work), m_sheet(sheet), m_name(name), m_table(recordOf(sheet, name))
{
    if (!m_table) throw Problem(place() + ": is gone");
    if (const auto def = m_table->GetDefinition(); !def->IsNull())
        for (const auto &field : def->GetFieldDefinitions()) m_fields.push_back(field.GetId());
}

std::string TableRows::place() const
{
    return fmt::format("{}, {}", app::placeOf(m_work, m_sheet), display(m_name));
}

std::string TableRows::placeOf(int row, const std::string &field) const
{
    return fmt::format("{}, row {}, {}", place(), row, field);
}

int TableRows::count() const
{
    int count = 0;
    checkLibrary(TRV_FMT_ask_number_table_entries(m_sheet.tag, m_name.block.c_str(),
                                                  m_name.table.c_str(), &count),
                 place());
    return count;
}

void TableRows::requireRow(int index) const
{
    const int rows = count();
    if (index >= 0 && index < rows) return;
    throw Problem(rows == 0
                      ? fmt::format("{}: has no rows: add one with 'qelfmt table add'", place())
                      : fmt::format("{}: no row {}: rows are 0 to {}", place(), index, rows - 1));
}

void TableRows::requireField(const std::string &field) const
{
    if (std::count(m_fields.begin(), m_fields.end(), field) == 0)
        throw Problem(
            fmt::format("{}: no field {}; it has {}", place(), field, joined(m_fields, ", ")));
}

boost::shared_ptr<TrEntryBase> TableRows::row(int index) const
{
    requireRow(index);
    return m_table->entry(static_cast<std::size_t>(index));
}

Lines TableRows::value(int row, const std::string &field) const
{
    FilledList value;
    checkLibrary(TRV_FMT_ask_table_value(m_sheet.tag, m_name.block.c_str(), m_name.table.c_str(),
                                         row, field.c_str(), &value.list),
                 placeOf(row, field));
    return value.lines();
}

TableRow TableRows::lookedUp(int index, boost::shared_ptr<TrEntryBase> entry)
{
    TableRow row{index, std::move(entry), {}};
    for (const auto &field : row.entry->getFields())
        row.fields.emplace_back(field->GetFieldDefName(), field);
    return row;
}

TableRow TableRows::at(int index) const { return lookedUp(index, row(index)); }

std::optional<Misfit> TableRows::set(const TableRow &row, const std::string &field,
                                     const Lines &lines, bool force) const
{
    const auto where = [&] { return placeOf(row.index, field); };
    for (const std::string &line : lines)
        if (line.find('\r') != std::string::npos)
            throw Problem(where() +
                          ": a carriage return in the value: take it out, or write a line break");
    const auto found = std::find_if(row.fields.begin(), row.fields.end(),
                                    [&](const auto &one) { return one.first == field; });
    if (found == row.fields.end())
        throw Problem(
            fmt::format("{}: has no field {}: it was made from an older definition; bring "
                        "the format up to date ('qelfmt update')",
                        where(), field));
    TrFieldBase &record = *found->second;
    if (!force && record.GetIsEditable() == 0)
        throw Problem(where() + ": is locked: give --force to set it");
    naming(where, [&] { m_table->setValue(*row.entry, record, lines); });
    return misfitOf(record, CellHeight::grows);
}

TableRow TableRows::append() const
{
    boost::shared_ptr<TrEntryBase> entry;
    naming([this] { return place(); }, [&] { entry = m_table->AppendEntry(); });
    if (!entry)
        throw Problem(place() +
                      ": is of an older generation: bring it up to date ('qelfmt update')");
    const auto index = m_table->indexOf(*entry);
    if (!index) throw Problem(place() + ": the row that was appended is gone");
    return lookedUp(static_cast<int>(*index), std::move(entry));
}

// Together, so that the rows that stay move once. From the end: the numbers keep their meaning.
void TableRows::remove(std::vector<int> rows) const
{
    for (const int index : rows) requireRow(index);
    std::sort(rows.begin(), rows.end(), std::greater<>());
    rows.erase(std::unique(rows.begin(), rows.end()), rows.end());
    for (const int index : rows)
        if (const auto entry = m_table->entry(static_cast<std::size_t>(index)))
            m_table->RemoveEntry(entry);
    m_table->locate();
}

} // namespace app
