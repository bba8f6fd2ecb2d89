#include "app/authoring/record_builder.h"

#include "app/authoring/pattern_writer.h"

namespace app::authoring {

namespace {

void putValues(RecordTree &record, const SlotValues &values)
{
    const auto put = [&](const auto &named) {
        for (const auto &[name, value] : named)
            if (const SlotInfo *slot = record.kind->slot(snakeCase(name))) record.put(*slot, value);
    };
    put(values.ints);
    put(values.doubles);
    // Attributes in the order of the slot table, whatever the values' own.
    for (const SlotInfo &slot : record.kind->slots) {
        for (const auto &[name, value] : values.strings)
            if (snakeCase(name) == slot.key) record.put(slot, value);
    }
    put(values.lists);
}

// Every slot of the layout is stored: what is not named as 0 or empty.
RecordTree recordOf(const std::string &word, const SlotValues &values)
{
    RecordTree record;
    record.kind = kindOfWord(word);
    for (const SlotInfo &slot : record.kind->slots) {
        if (slot.shape == SlotShape::integer) record.put(slot, 0);
        if (slot.shape == SlotShape::real) record.put(slot, 0.0);
        if (slot.shape == SlotShape::text) record.put(slot, std::string());
    }
    putValues(record, values);
    record.origin = values.origin;
    record.origins = values.origins;
    return record;
}

RecordTree recordOf(const Location &place)
{
    SlotValues slots;
    slots.strings["Name"] = place.name;
    slots.doubles = {{"X", place.at.x}, {"Y", place.at.y}};
    slots.ints["OffsetType"] = place.offsetType;
    return recordOf("location", slots);
}

} // namespace

std::string frameOf(const Format &format, const Size &size, int units)
{
    if (size.whole) return {};
    return patternName(format.id + "-" + size.slots.strings.at("Id"), size.frame, units);
}

std::string patternOf(const Block &block, int units)
{
    return block.whole ? std::string() : patternName(block.id, block.art, units);
}

RecordTree recordOf(const Field &field)
{
    return field.whole ? *field.whole : recordOf("field", field.slots);
}

RecordTree recordOf(const BlockLocation &location)
{
    if (location.whole) return *location.whole;
    SlotValues slots;
    slots.origin = location.origin;
    slots.origins["format_id"] = location.origin;
    slots.strings["FormatId"] = location.formatId;
    RecordTree record = recordOf("block_location", slots);
    for (const SizeLocation &size : location.sizes) {
        SlotValues sizeSlots;
        sizeSlots.strings["SizeId"] = size.sizeId;
        sizeSlots.origin = size.origin;
        sizeSlots.origins["size_id"] = size.origin;
        RecordTree &child = record.children.emplace_back(recordOf("size_location", sizeSlots));
        for (const Location &place : size.locations) child.children.push_back(recordOf(place));
    }
    return record;
}

RecordTree recordOf(const Table &table)
{
    if (table.whole) return *table.whole;
    RecordTree record = recordOf("table", table.slots);
    for (const Field &field : table.fields) record.children.push_back(recordOf(field));
    return record;
}

RecordTree recordOf(const Block &block, int units)
{
    if (block.whole) return *block.whole;
    const std::string pattern = patternOf(block, units);
    SlotValues slots = block.slots;
    slots.strings["Id"] = block.id;
    if (!pattern.empty()) slots.strings["PatternName"] = pattern;
    RecordTree record = recordOf("block", slots);
    for (const BlockLocation &location : block.locations)
        record.children.push_back(recordOf(location));
    for (const Field &field : block.fields) record.children.push_back(recordOf(field));
    for (const Table &table : block.tables) record.children.push_back(recordOf(table));
    return record;
}

RecordTree recordOf(const Format &format, const Size &size, int units)
{
    if (size.whole) return *size.whole;
    const std::string frame = frameOf(format, size, units);
    SlotValues slots = size.slots;
    if (!frame.empty()) slots.strings["FrameName"] = frame;
    return recordOf("size", slots);
}

RecordTree recordOf(const Format &format, int units)
{
    if (format.whole) return *format.whole;
    SlotValues slots = format.slots;
    slots.strings["Id"] = format.id;
    RecordTree record = recordOf("format", slots);
    for (const Size &size : format.sizes) record.children.push_back(recordOf(format, size, units));
    return record;
}

std::vector<RecordTree> recordsOf(const Library &library)
{
    std::vector<RecordTree> records;
    for (const Format &format : library.formats) records.push_back(recordOf(format, library.units));
    for (const Block &block : library.blocks) records.push_back(recordOf(block, library.units));
    records.insert(records.end(), library.records.begin(), library.records.end());
    return records;
}

} // namespace app::authoring
