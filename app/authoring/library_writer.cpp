#include "app/authoring/library_writer.h"

#include "app/authoring/pattern_writer.h"
#include "app/authoring/stored_order.h"
#include "app/problem.h"

#include "uf_part.h"
#include "ug_exception.hxx"

#include <filesystem>

namespace app::authoring {

namespace {

namespace fs = std::filesystem;

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

RecordTree recordOf(const BlockLocation &location)
{
    SlotValues slots;
    slots.strings["FormatId"] = location.formatId;
    RecordTree record = recordOf("block_location", slots);
    for (const SizeLocation &size : location.sizes) {
        SlotValues sizeSlots;
        sizeSlots.strings["SizeId"] = size.sizeId;
        RecordTree &child = record.children.emplace_back(recordOf("size_location", sizeSlots));
        for (const Location &place : size.locations) child.children.push_back(recordOf(place));
    }
    return record;
}

RecordTree recordOf(const Table &table)
{
    RecordTree record = recordOf("table", table.slots);
    for (const Field &field : table.fields)
        record.children.push_back(recordOf("field", field.slots));
    return record;
}

RecordTree recordOf(const Block &block, const std::string &pattern)
{
    SlotValues slots = block.slots;
    slots.strings["Id"] = block.id;
    if (!pattern.empty()) slots.strings["PatternName"] = pattern;
    RecordTree record = recordOf("block", slots);
    for (const BlockLocation &location : block.locations)
        record.children.push_back(recordOf(location));
    for (const Field &field : block.fields)
        record.children.push_back(recordOf("field", field.slots));
    for (const Table &table : block.tables) record.children.push_back(recordOf(table));
    return record;
}

RecordTree recordOf(const Format &format, const std::vector<std::string> &frames)
{
    SlotValues slots = format.slots;
    slots.strings["Id"] = format.id;
    RecordTree record = recordOf("format", slots);
    for (std::size_t i = 0; i < format.sizes.size(); ++i) {
        SlotValues sizeSlots = format.sizes[i].slots;
        if (!frames[i].empty()) sizeSlots.strings["FrameName"] = frames[i];
        record.children.push_back(recordOf("size", sizeSlots));
    }
    return record;
}

void replaceFile(const fs::path &fresh, const fs::path &final)
{
    std::error_code error;
    fs::rename(fresh, final, error);
    if (error)
        throw Problem(final.string() + ": cannot be written (" + error.message() +
                      "): check the folder's permissions");
}

// The art of each format's sizes and of each block, by the names that their patterns get.
struct PatternNames {
    std::vector<std::vector<std::string>> frames;
    std::vector<std::string> blocks;
};

template <class Pattern> PatternNames namePatterns(const Library &library, Pattern pattern)
{
    PatternNames names;
    for (const Format &format : library.formats) {
        auto &frames = names.frames.emplace_back();
        for (const Size &size : format.sizes)
            frames.push_back(pattern(format.id + "-" + size.slots.strings.at("Id"), size.frame));
    }
    for (const Block &block : library.blocks) names.blocks.push_back(pattern(block.id, block.art));
    return names;
}

std::vector<RecordTree> recordsWith(const Library &library, const PatternNames &names)
{
    std::vector<RecordTree> records;
    for (std::size_t i = 0; i < library.formats.size(); ++i)
        records.push_back(recordOf(library.formats[i], names.frames[i]));
    for (std::size_t i = 0; i < library.blocks.size(); ++i)
        records.push_back(recordOf(library.blocks[i], names.blocks[i]));
    records.insert(records.end(), library.records.begin(), library.records.end());
    return records;
}

} // namespace

std::vector<RecordTree> recordsOf(const Library &library)
{
    return recordsWith(library, namePatterns(library, [&](const std::string &stem, const Art &art) {
                           return patternName(stem, art, library.units);
                       }));
}

WrittenLibrary writeLibrary(const Library &library, const std::string &name,
                            const std::string &folder, const RecordFile *keepOrderOf)
{
    const fs::path definitions = fs::path(folder) / "format_defs";
    const fs::path patterns = fs::path(folder) / "patterns";
    std::error_code error;
    fs::create_directories(definitions, error);
    fs::create_directories(patterns, error);
    if (error)
        throw Problem(folder + ": cannot be made (" + error.message() + "): choose another -o");

    WrittenLibrary written;
    // Patterns first: each is a part of its own, and the definition part is the work part afterwards.
    const PatternNames names = namePatterns(library, [&](const std::string &stem, const Art &art) {
        const std::string patternPart = patternName(stem, art, library.units);
        writePattern(patterns.string(), patternPart, art, library.units);
        written.patterns += !patternPart.empty();
        return patternPart;
    });
    std::vector<RecordTree> records = recordsWith(library, names);
    if (keepOrderOf) keepOrder(records, keepOrderOf->records);

    const fs::path final = definitions / (name + ".prt");
    const fs::path fresh = definitions / ("." + name + ".new.prt");
    fs::remove(fresh, error);
    tag_t part = NULL_TAG;
    if (const int code = UF_PART_new(fresh.c_str(), library.units, &part))
        throw Problem::ofPart(fresh.string(), code);
    writeRecords(records);
    if (const int code = UF_PART_save()) throw Problem::ofPart(fresh.string(), code);
    UgException::throwOnFailure(UF_PART_close(part, 0, 1));
    replaceFile(fresh, final);

    written.definitionPart = final.string();
    for (const RecordTree &record : records) {
        written.formats += record.kind->word == "format";
        written.blocks += record.kind->word == "block";
    }
    return written;
}

} // namespace app::authoring
