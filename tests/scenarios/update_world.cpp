#include "tests/scenarios/update_world.h"

#include <algorithm>

namespace {

FieldDesc described(const FieldModel &field)
{
    FieldDesc desc = field.desc;
    desc.more = [field](TrFieldDefV1 &def) {
        def.SetDefaultType(field.defaultType);
        def.SetIndentation(field.indentation);
        def.SetFlipText(field.flip);
        def.SetMultiline(field.multiline);
        def.SetBorderColor(field.borderColor);
        def.SetSyncAllDrawings(field.syncAll);
        def.SetTextSize(field.textSize);
        def.SetTextAngle(field.textAngle);
        def.SetMarginHeight(field.margin);
        def.SetMarginWidth(field.margin);
        def.SetBroadcastString(field.broadcast);
        def.SetBroadcastType(field.broadcastType);
        def.SetBroadcastTableType(field.broadcastTable);
        def.SetZoneField(field.zoneField);
        def.SetSymbolFile(field.symbolFile);
        def.SetUserSymbolLength(field.userSymbol);
        def.SetUserSymbolHeight(field.userSymbol);
    };
    return desc;
}

std::vector<FieldDesc> described(const std::vector<FieldModel> &fields)
{
    std::vector<FieldDesc> descs;
    for (const FieldModel &field : fields) descs.push_back(described(field));
    return descs;
}

} // namespace

Catalog DefinitionWorld::catalog() const
{
    Catalog catalog{{m_format}, {}};
    for (const BlockModel &block : m_blocks) {
        BlockDesc desc = block.desc;
        desc.fields = described(block.fields);
        for (const TableModel &table : block.tables)
            desc.tables.push_back(
                {table.id, table.x, table.y, described(table.fields), table.direction});
        catalog.blocks.push_back(desc);
    }
    return catalog;
}

FieldModel DefinitionWorld::newField()
{
    FieldModel field;
    const int number = m_next++;
    field.desc = {.id = "F" + std::to_string(number),
                  .x = double(upTo(60)),
                  .y = double(upTo(40)),
                  .defaults = upTo(4) ? std::vector<std::string>{"D" + std::to_string(number)}
                                      : std::vector<std::string>{}};
    if (upTo(2)) {
        field.desc.width = 10 + upTo(30);
        field.desc.height = 6 + upTo(6);
        for (int &policy : field.desc.borders) policy = pick({0, 0, 1, 4});
        field.desc.textSite = 1 + upTo(9);
    }
    return field;
}

void DefinitionWorld::reset()
{
    const Catalog iso = isoCatalog();
    m_format = iso.formats[0];
    m_format.required = {"TITLE"};
    m_blocks.clear();
    for (const BlockDesc &desc : iso.blocks) {
        BlockModel block{desc, {}, {}};
        block.desc.fields.clear();
        block.desc.tables.clear();
        for (int i = 2 + upTo(4); i > 0; --i) block.fields.push_back(newField());
        if (desc.id == "REV")
            for (int i = 1 + upTo(2); i > 0; --i) {
                TableModel table{"T" + std::to_string(m_next++), 0, 8.0 * i, upTo(2), {}};
                for (int j = 1 + upTo(3); j > 0; --j) table.fields.push_back(newField());
                block.tables.push_back(table);
            }
        m_blocks.push_back(block);
    }
    m_art = {{"frameA3", 10}, {"frameA2", 10}, {"frameTall", 10}, {"title", 10}, {"rev", 10}};
}

bool DefinitionWorld::isTyped(const std::string &blockId, const std::string &tableId,
                              const std::string &id) const
{
    const auto typed = [&](const std::vector<FieldModel> &fields) {
        return std::any_of(fields.begin(), fields.end(), [&](const FieldModel &field) {
            return field.desc.id == id && field.desc.useDefaultInitially != 0;
        });
    };
    for (const BlockModel &block : m_blocks) {
        if (block.desc.id != blockId) continue;
        if (tableId.empty()) return typed(block.fields);
        for (const TableModel &table : block.tables)
            if (table.id == tableId) return typed(table.fields);
    }
    return false;
}

bool DefinitionWorld::isRequired(const std::string &block) const
{
    return std::find(m_format.required.begin(), m_format.required.end(), block) !=
           m_format.required.end();
}

bool DefinitionWorld::computesValues() const
{
    return std::any_of(m_blocks.begin(), m_blocks.end(), [](const BlockModel &block) {
        return std::any_of(block.fields.begin(), block.fields.end(), [](const FieldModel &field) {
            return field.desc.useDefaultInitially == 0;
        });
    });
}

// --- edits ------------------------------------------------------------------------------------------

std::string DefinitionWorld::edit()
{
    const int what = upTo(20);
    if (what < 6) return editFields(anyFields());
    if (what < 14) return editField(oneOf(anyFields()));
    if (what < 16) return editBlock();
    if (what < 18) return editTables();
    return editFormat();
}

std::vector<FieldModel> &DefinitionWorld::anyFields()
{
    BlockModel &block = oneOf(m_blocks);
    if (!block.tables.empty() && upTo(2)) return oneOf(block.tables).fields;
    return block.fields;
}

std::string DefinitionWorld::editFields(std::vector<FieldModel> &fields)
{
    switch (upTo(4)) {
    case 0:
        if (fields.size() > 1) {
            const auto at = fields.begin() + upTo(static_cast<int>(fields.size()));
            const std::string id = at->desc.id;
            fields.erase(at);
            return "deleted " + id;
        }
        break;
    case 1:
        if (fields.size() > 1) {
            std::rotate(fields.begin(), fields.begin() + 1 + upTo(int(fields.size()) - 1),
                        fields.end());
            return "reordered, first is " + fields.front().desc.id;
        }
        break;
    case 2: {
        FieldDesc &desc = oneOf(fields).desc;
        const std::string old = desc.id;
        desc.id = "F" + std::to_string(m_next++);
        return "renamed " + old + " to " + desc.id;
    }
    default:
        break;
    }
    const auto at = fields.begin() + upTo(static_cast<int>(fields.size()) + 1);
    return "inserted " + fields.insert(at, newField())->desc.id;
}

std::string DefinitionWorld::editField(FieldModel &field)
{
    FieldDesc &desc = field.desc;
    const std::string id = desc.id + ": ";
    switch (upTo(17)) {
    case 0:
        desc.x += 1 + upTo(9);
        return id + "x";
    case 1:
        desc.y += 1 + upTo(9);
        return id + "y";
    case 2:
        desc.defaults = {"N" + std::to_string(m_next++)};
        return id + "default";
    case 3:
        field.textSize += 0.5;
        return id + "text size";
    case 4:
        field.textAngle += 15;
        return id + "text angle";
    case 5:
        desc.width = desc.width == 0.0 || upTo(3) ? desc.width + 5 : 0.0;
        return id + "width";
    case 6:
        desc.height = desc.height == 0.0 || upTo(3) ? desc.height + 2 : 0.0;
        return id + "height";
    case 7: {
        const int which = upTo(5);
        if (which == 2 && sparing) break;
        int &policy = desc.borders[static_cast<std::size_t>(which)];
        policy = policy ? 0 : 1;
        return id + "border policy";
    }
    case 8:
        if (sparing) break;
        desc.useDefaultInitially = desc.useDefaultInitially ? 0 : 1;
        return id + "initially";
    case 9:
        field.defaultType = field.defaultType ? 0 : 3;
        return id + "source";
    case 10:
        field.indentation = field.indentation ? 0 : 1 + upTo(3);
        return id + "indentation";
    case 11:
        desc.textSite = desc.textSite % 9 + 1;
        return id + "site";
    case 12:
        field.borderColor = field.borderColor == 7 ? 3 : 7;
        return id + "border color";
    case 13:
        field.margin += 1;
        return id + "margin";
    case 14:
        field.flip = 1 - field.flip;
        return id + "flip";
    case 15:
        field.multiline = 1 - field.multiline;
        return id + "multiline";
    default:
        break;
    }
    return id + editHiddenSlot(field);
}

// What nobody sees on the sheet at once.
std::string DefinitionWorld::editHiddenSlot(FieldModel &field)
{
    switch (upTo(7)) {
    case 5:
        field.syncAll = 1 - field.syncAll;
        return "all sheets";
    case 0:
        field.broadcastType = 1 - field.broadcastType;
        return "broadcast type";
    case 1:
        field.broadcastTable = (field.broadcastTable + 1) % 3;
        return "broadcast of tables";
    case 2:
        field.zoneField = 1 - field.zoneField;
        return "zone field";
    case 3:
        field.symbolFile = 1 - field.symbolFile;
        return "symbol file";
    case 4:
        field.userSymbol += 2.0;
        return "user symbols";
    default:
        field.broadcast = "B" + std::to_string(m_next++);
        return "broadcast";
    }
}

std::string DefinitionWorld::editBlock()
{
    BlockModel &block = oneOf(m_blocks);
    BlockDesc &desc = block.desc;
    switch (upTo(6)) {
    case 0:
        desc.textLayer = 31 + m_next++ % 50;
        return desc.id + ": text layer";
    case 1:
        desc.patternLayer = 100 + m_next++ % 50;
        return desc.id + ": pattern layer";
    case 2:
        desc.pattern = desc.pattern == "rev" ? "title" : desc.pattern == "title" ? "" : "rev";
        return desc.id + ": pattern";
    case 3:
        for (auto &[size, places] : desc.places[0].sizes)
            for (PlaceDesc &place : places)
                if (place.x >= 0) place.x += 1;
        return desc.id + ": places";
    case 4:
        desc.movable = 1 - desc.movable;
        return desc.id + ": movable";
    default: {
        const std::string name = pick<const char *>({"title", "rev", "frameA3", "frameA2"});
        m_art[name] += 1;
        return "art " + name;
    }
    }
}

std::string DefinitionWorld::editTables()
{
    for (BlockModel &block : m_blocks) {
        if (block.desc.id != "REV") continue;
        auto &tables = block.tables;
        switch (sparing ? 3 + upTo(2) : upTo(5)) {
        case 0:
            if (tables.size() > 1) {
                std::rotate(tables.begin(), tables.begin() + 1, tables.end());
                return "tables reordered";
            }
            break;
        case 1:
            if (tables.size() > 1) {
                tables.erase(tables.begin());
                return "table deleted";
            }
            break;
        case 2:
            if (tables.size() < 3) {
                TableModel table{"T" + std::to_string(m_next++), 40, 8, 1, {newField()}};
                tables.insert(tables.begin() + upTo(int(tables.size()) + 1), table);
                return "table inserted";
            }
            break;
        case 3:
            tables[0].direction = tables[0].direction ? 0 : 1;
            return "direction";
        default:
            break;
        }
        tables[0].x += 3;
        return "table moved";
    }
    return {};
}

std::string DefinitionWorld::editFormat()
{
    SizeDesc &size = m_format.sizes[static_cast<std::size_t>(upTo(2))];
    switch (upTo(sparing ? 4 : 5)) {
    case 4:
        if (isRequired("NOTES"))
            m_format.required.pop_back();
        else
            m_format.required.push_back("NOTES");
        return "required blocks";
    case 0:
        size.label = "L" + std::to_string(m_next++);
        return size.id + ": label";
    case 1:
        size.frame = size.frame == "frameA3" ? "frameA2" : "frameA3";
        return size.id + ": frame";
    case 2:
        size.code = 0;
        size.length += 10;
        return size.id + ": length";
    default:
        size.frameLayer = 10 + m_next++ % 9;
        if (size.frameLayer == 10) size.frameLayer = 19;
        return size.id + ": frame layer";
    }
}
