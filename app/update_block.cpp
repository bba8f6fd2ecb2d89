#include "app/update_block.h"

#include "app/borders.h"
#include "app/indentation.h"

#include "content/entry.h"
#include "content/field.h"
#include "content/table.h"
#include "definitions/block_def.h"
#include "definitions/field_def.h"
#include "definitions/locations.h"
#include "definitions/table_def.h"
#include "drawing/block.h"
#include "drawing/drawing.h"
#include "drawing/format.h"

#include "ug_typed.hxx"

#include <algorithm>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace app {

namespace {

using FieldPtr = boost::shared_ptr<TrFieldBase>;
using TablePtr = boost::shared_ptr<TrTableBase>;
using Key = std::pair<std::string, int>; // of several with one name, which

// What stands for something else, the date of a part or a symbol, stays that: the lines as they were
// typed, without the blanks that the note was indented by.
TrFieldBase::Value typedInto(const TrFieldBase &field)
{
    TrFieldBase::Value lines = field.GetNoteValue();
    if (lines.empty()) return field.GetValue();
    lines.front().erase(0, static_cast<std::size_t>(drawnIndentation(field)));
    return lines;
}

// What a field made anew cannot know.
struct Memory {
    TrFieldBase::Value value;
    int editable = 1;
    Borders flags{};
    std::optional<Borders> policies; // none: the definition was lost

    explicit Memory(const TrFieldBase &field)
        : value(typedInto(field)), editable(field.GetIsEditable()), flags(bordersOf(field))
    {
        const TrFieldDefV1 def = field.GetDefinition();
        if (!def.IsNull() && def.GetId() == field.GetFieldDefName()) policies = policiesOf(def);
    }
};
using Memories = std::map<Key, Memory>;

// Names counted as they come: the second NAME is ("NAME", 1).
class Counter {
public:
    Key next(const std::string &name) { return {name, m_seen[name]++}; }

private:
    std::map<std::string, int> m_seen;
};

template <class Fields> Memories remember(const Fields &fields)
{
    Memories memories;
    Counter counter;
    for (const auto &field : fields)
        memories.emplace(counter.next(field->GetFieldDefName()), Memory(*field));
    return memories;
}

// A border that is the user's stays as it is until the definition's policy becomes another one.
void setBorders(TrFieldBase &field, const TrFieldDefV1 &def, const Memory &memory, bool inRow)
{
    const Borders policies = policiesOf(def);
    Borders flags;
    for (std::size_t i = 0; i < kBorders; ++i) {
        const bool stays = memory.policies && (*memory.policies)[i] == policies[i] &&
                           !isDetermined(i, policies[i], inRow);
        flags[i] = stays ? memory.flags[i] : flagOf(policies[i]);
    }
    field.SetHasBottomBorder(flags[0]);
    field.SetHasLeftBorder(flags[1]);
    field.SetHasMiddleBorder(flags[2]);
    field.SetHasRightBorder(flags[3]);
    field.SetHasTopBorder(flags[4]);
}

bool isRecomputed(const TrFieldDefV1 &def) { return def.GetUseDefaultInitially() == 0; }

// The old value is the first one that the field gets: a default in between would be shared with other
// fields. It counts as the second, which is also kept in attributes.
void restore(TrFieldBase &field, const TrFieldDefV1 &def, const Memory &memory, bool inRow)
{
    field.SetNumberOfLines(1);
    field.SetIsEditable(memory.editable);
    setBorders(field, def, memory, inRow);
    field.ModifyValue(memory.value);
}

// Fields that keep their value first, so that those which are computed see them.
template <class Fields>
void fill(const Fields &fields, const std::vector<TrFieldDefV1> &definitions,
          const Memories &memories, bool inRow)
{
    for (const bool computed : {false, true}) {
        Counter counter;
        for (std::size_t i = 0; i < fields.size(); ++i) {
            const auto memory = memories.find(counter.next(definitions[i].GetId()));
            const bool known = memory != memories.end();
            if (computed != (!known || isRecomputed(definitions[i]))) continue;
            if (!computed) {
                restore(*fields[i], definitions[i], memory->second, inRow);
                continue;
            }
            fields[i]->InitValues();
            if (!known) continue;
            fields[i]->SetIsEditable(memory->second.editable);
            setBorders(*fields[i], definitions[i], memory->second, inRow);
        }
    }
}

// --- fields of the block --------------------------------------------------------------------------------

void removeFields(TrBlockBase &block)
{
    for (FieldPtr field : block.getFields()) {
        block.removeAndRetainField(field);
        field->DeleteUDO();
    }
}

void makeFields(TrBlockBase &block, const std::vector<TrFieldDefV1> &definitions)
{
    for (const TrFieldDefV1 &def : definitions) {
        const FieldPtr field(block.createField());
        field->SetFieldDefName(def.GetId());
        field->SetDefinition(def);
        block.addField(field);
    }
}

// --- tables ---------------------------------------------------------------------------------------------

using Tables = std::map<Key, TablePtr>;

Tables takeTables(TrBlockBase &block)
{
    Tables tables;
    Counter counter;
    for (TablePtr table : block.getTables()) {
        tables.emplace(counter.next(table->GetTableDefName()), table);
        block.removeAndRetainTable(table);
    }
    return tables;
}

struct RowMemory {
    boost::shared_ptr<TrEntryBase> row;
    Memories fields;
};

// Remembered while the definitions that the fields link to still live.
std::vector<RowMemory> rememberRows(const TrTableBase &table)
{
    std::vector<RowMemory> rows;
    for (const auto &row : table.getEntries()) rows.push_back({row, remember(row->getFields())});
    return rows;
}

void removeFields(TrEntryBase &row)
{
    for (const FieldPtr &field : row.getFields()) {
        row.removeAndRetainField(field);
        field->DeleteUDO();
    }
}

// Rows find their place through the table that hands them out.
void rebuildRows(const TrTableBase &table, const std::vector<RowMemory> &memories,
                 const TrTableDefV1 &def)
{
    const auto definitions = def.GetFieldDefinitions();
    const auto rows = table.getEntries();
    for (std::size_t i = 0; i < rows.size(); ++i) {
        for (const TrFieldDefV1 &fieldDef : definitions) {
            const FieldPtr field(rows[i]->CreateField());
            field->SetFieldDefName(fieldDef.GetId());
            field->SetDefinition(fieldDef);
            rows[i]->AddField(field);
        }
        fill(rows[i]->getFields(), definitions, memories[i].fields, true);
    }
}

TablePtr newTable(const TrTableDefV1 &def)
{
    const TablePtr table = TrTableBase::createTable();
    table->SetTableDefName(def.GetId());
    return table;
}

void placeByDefinition(TrBlockBase &block)
{
    if (block.GetAlternateLocationIndex() < 0) return; // at a point of the user's own
    const auto def = block.GetDefinition();
    if (def->IsNull() || !hasPlace(*def, *TrDrawing::getDrawing(block)->format())) return;
    block.locateBlock(nullptr);
}

} // namespace

bool hasPlace(const TrBlockDefV1 &def, const TrFormatBase &format)
{
    const auto ids = def.GetFormatIds();
    const bool offered = std::any_of(ids.begin(), ids.end(), [&](const std::string &id) {
        return id == format.GetFormatDefName() || format.inSuite(id);
    });
    if (!offered || def.GetMovable() != 0) return offered;
    return !def.getLocations(TrDrawing::getDrawing(format.GetDrawing()->getTag())).empty();
}

void placeAnew(TrBlockBase &block)
{
    placeByDefinition(block);
    // Also where the block itself stays.
    for (const FieldPtr &field : block.getFields()) {
        field->locate();
        field->fitBorders();
    }
    for (const TablePtr &table : block.getTables()) table->locate();
}

void rebuildBlock(TrBlockBase &block, const TrBlockDefV1 &disk)
{
    const Memories memories = remember(block.getFields());
    const Tables old = takeTables(block);
    std::map<Key, std::vector<RowMemory>> rows;
    for (const auto &[key, table] : old) rows.emplace(key, rememberRows(*table));
    removeFields(block);
    for (const auto &[key, entries] : rows)
        for (const RowMemory &memory : entries) removeFields(*memory.row);

    const auto def = disk.clone();
    block.setDefinition(def);
    block.removePattern();
    makeFields(block, def->GetFieldDefinitions());
    Counter counter;
    std::vector<Key> order;
    for (const auto &tableDef : def->GetTableDefinitions()) {
        order.push_back(counter.next(tableDef->GetId()));
        const auto kept = old.find(order.back());
        const TablePtr table = kept == old.end() ? newTable(*tableDef) : kept->second;
        table->SetDefinition(*tableDef);
        block.addTable(table);
    }
    for (const auto &[key, table] : old)
        if (std::find(order.begin(), order.end(), key) == order.end()) table->DeleteUDO();

    placeByDefinition(block);
    block.updatePattern();
    fill(block.getFields(), def->GetFieldDefinitions(), memories, false);
    const auto tables = block.getTables();
    for (std::size_t i = 0; i < tables.size(); ++i)
        if (const auto memory = rows.find(order[i]); memory != rows.end())
            rebuildRows(*tables[i], memory->second, *def->GetTableDefinitions()[i]);
    placeAnew(block);
}

} // namespace app
