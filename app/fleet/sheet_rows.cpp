#include "app/fleet/sheet_rows.h"

#include "app/drift.h"
#include "app/values.h"

#include "content/entry.h"
#include "content/field.h"
#include "content/table.h"
#include "drawing/block.h"
#include "drawing/drawing.h"
#include "drawing/format.h"

#include "uf_draw.h"
#include "ug_exception.hxx"

#include <fnmatch.h>

#include <algorithm>
#include <set>

namespace app::fleet {

namespace {

Json rowsOf(TrTableBase &table)
{
    Json rows = Json::array();
    for (const auto &entry : table.getEntries()) {
        Json row = Json::object();
        for (const auto &field : entry->getFields())
            row[field->GetFieldDefName()] = toJson(field->GetValue());
        rows.push_back(std::move(row));
    }
    return rows;
}

void addBlock(Json &row, TrBlockBase &block, const Columns &columns)
{
    const std::string id = block.GetBlockDefName();
    row["blocks"].push_back(id);
    std::set<std::string> seen;
    for (const auto &field : block.getFields()) {
        const std::string name = display(FieldName{id, field->GetFieldDefName()});
        if (columns.holds(name) && seen.insert(name).second)
            row["values"][name] = toJson(field->GetValue());
    }
    if (!columns.holds("rows")) return;
    for (const auto &table : block.getTables()) {
        const std::string name = id + "." + table->GetTableDefName();
        if (!row["tables"].contains(name)) row["tables"][name] = rowsOf(*table);
    }
}

Json rowOf(const Workspace &work, const SheetRef &sheet, bool legacy, const Columns &columns)
{
    UgException::throwOnFailure(UF_DRAW_open_drawing(sheet.tag));
    Json row{{"file", work.path()}, {"sheet", sheet.name}};
    const auto drawing = TrDrawing::getDrawing(sheet.tag);
    if (!drawing->hasFormat()) {
        row["state"] = nameOf(SheetState::none);
        return row;
    }
    const auto format = drawing->format();
    row["format"] = format->GetFormatDefName();
    row["size"] = format->GetSizeName();
    if (columns.holds("label")) row["label"] = format->sizeLabel();
    if (columns.needsDefinitions())
        row["state"] = nameOf(legacy ? SheetState::legacy : driftOf(sheet.tag).state);
    row["blocks"] = Json::array();
    row["values"] = Json::object();
    if (columns.holds("rows")) row["tables"] = Json::object();
    std::set<std::string> ids;
    for (const auto &block : format->getBlocks()) {
        const bool first = ids.insert(block->GetBlockDefName()).second;
        if (first)
            addBlock(row, *block, columns);
        else
            row["blocks"].push_back(block->GetBlockDefName());
    }
    return row;
}

} // namespace

bool Columns::holds(const std::string &column) const
{
    return m_patterns.empty() ||
           std::any_of(m_patterns.begin(), m_patterns.end(), [&](const std::string &pattern) {
               return fnmatch(pattern.c_str(), column.c_str(), 0) == 0;
           });
}

const std::vector<std::string> &fixedColumns()
{
    static const std::vector<std::string> columns{"file",  "sheet", "format", "size",
                                                  "label", "state", "blocks", "rows"};
    return columns;
}

Json sheetRows(Workspace &work, const Columns &columns)
{
    const std::vector<SheetRef> sheets = work.sheets();
    // Looking at one sheet may convert what is old on another.
    std::set<tag_t> legacy;
    for (const SheetRef &sheet : sheets)
        if (columns.needsDefinitions() && hasLegacyRecords(sheet.tag)) legacy.insert(sheet.tag);
    Json rows = Json::array();
    for (const SheetRef &sheet : sheets)
        rows.push_back(rowOf(work, sheet, legacy.count(sheet.tag) > 0, columns));
    return rows;
}

} // namespace app::fleet
