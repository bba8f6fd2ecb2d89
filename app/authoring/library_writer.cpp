#include "app/authoring/library_writer.h"

#include "app/authoring/pattern_writer.h"
#include "app/problem.h"

#include "definitions/block_def.h"
#include "definitions/field_def.h"
#include "definitions/format_def.h"
#include "definitions/format_size.h"
#include "definitions/locations.h"
#include "definitions/table_def.h"

#include "uf_part.h"
#include "ug_exception.hxx"

#include <filesystem>

namespace app::authoring {

namespace {

namespace fs = std::filesystem;

// Puts the slots that `values` names into the record's snapshot; the layout finds them.
template <class... Slots>
void putSlots(LumUg::Record &record, const std::tuple<Slots...> &layout, const SlotValues &values)
{
    const auto put = [&](const auto &slot) {
        using Slot = std::remove_cvref_t<decltype(slot)>;
        const auto &from = [&]() -> const auto & {
            if constexpr (std::is_same_v<Slot, LumUg::IntSlot>)
                return values.ints;
            else if constexpr (std::is_same_v<Slot, LumUg::DoubleSlot>)
                return values.doubles;
            else if constexpr (std::is_same_v<Slot, LumUg::StringTail>)
                return values.lists;
            else
                return values.strings;
        }();
        if (const auto found = from.find(slot.name); found != from.end())
            record.put(slot, found->second);
    };
    std::apply([&](const auto &...slot) { (put(slot), ...); }, layout);
}

// A whole record: every slot of the layout, those not named as 0 or empty, then the named ones.
template <class Definition> void writeRecord(Definition &definition, const SlotValues &values)
{
    LumUg::Record record(definition);
    SlotValues empty;
    std::apply(
        [&](const auto &...slot) {
            const auto clear = [&](const auto &one) {
                using Slot = std::remove_cvref_t<decltype(one)>;
                if constexpr (std::is_same_v<Slot, LumUg::IntSlot>)
                    empty.ints[one.name] = one.fallback;
                else if constexpr (std::is_same_v<Slot, LumUg::DoubleSlot>)
                    empty.doubles[one.name] = 0.0;
                else if constexpr (std::is_same_v<Slot, LumUg::StringSlot>)
                    empty.strings[one.name] = "";
            };
            (clear(slot), ...);
        },
        Definition::kLayout);
    putSlots(record, Definition::kLayout, empty);
    putSlots(record, Definition::kLayout, values);
    record.write(definition);
}

void writeLocations(TrBlockDefV1 &definition, const Block &block)
{
    for (const BlockLocation &location : block.locations) {
        auto record = QelFmt::BlockLocationBase::createBlockLocation();
        record->SetFormatId(location.formatId);
        for (const SizeLocation &size : location.sizes) {
            auto sizeRecord = QelFmt::SizeLocationBase::createSizeLocation();
            sizeRecord->SetSizeId(size.sizeId);
            for (const Location &place : size.locations) {
                auto placeRecord = QelFmt::LocationBase::createLocation();
                placeRecord->SetName(place.name);
                placeRecord->SetOffsetType(place.offsetType);
                placeRecord->setLocation(Point2(place.at.x, place.at.y));
                sizeRecord->addLocation(placeRecord);
            }
            record->addSizeLocation(sizeRecord);
        }
        definition.addBlockLocation(record);
    }
}

template <class Parent> void writeFields(Parent &parent, const std::vector<Field> &fields)
{
    for (const Field &field : fields) {
        TrFieldDefV1 definition;
        writeRecord(definition, field.slots);
        parent.AddFieldDefinition(definition);
    }
}

void writeBlock(const Block &block, const std::string &pattern)
{
    TrBlockDefV1 definition;
    SlotValues slots = block.slots;
    slots.strings["Id"] = block.id;
    slots.strings["PatternName"] = pattern;
    writeRecord(definition, slots);
    writeLocations(definition, block);
    writeFields(definition, block.fields);
    for (const Table &table : block.tables) {
        TrTableDefV1 tableDefinition;
        writeRecord(tableDefinition, table.slots);
        writeFields(tableDefinition, table.fields);
        definition.AddTableDefinition(tableDefinition);
    }
}

void writeFormat(const Format &format, const std::vector<std::string> &frames)
{
    TrFormatDefV1 definition;
    SlotValues slots = format.slots;
    slots.strings["Id"] = format.id;
    writeRecord(definition, slots);
    for (std::size_t i = 0; i < format.sizes.size(); ++i) {
        TrFormatSizeV1 size;
        SlotValues sizeSlots = format.sizes[i].slots;
        sizeSlots.strings["FrameName"] = frames[i];
        writeRecord(size, sizeSlots);
        definition.AddSize(size);
    }
}

void replaceFile(const fs::path &fresh, const fs::path &final)
{
    std::error_code error;
    fs::rename(fresh, final, error);
    if (error)
        throw Problem(final.string() + ": cannot be written (" + error.message() +
                      "): check the folder's permissions");
}

} // namespace

WrittenLibrary writeLibrary(const Library &library, const std::string &name,
                            const std::string &folder)
{
    const fs::path definitions = fs::path(folder) / "format_defs";
    const fs::path patterns = fs::path(folder) / "patterns";
    std::error_code error;
    fs::create_directories(definitions, error);
    fs::create_directories(patterns, error);
    if (error)
        throw Problem(folder + ": cannot be made (" + error.message() + "): choose another -o");

    WrittenLibrary written;
    const auto pattern = [&](const std::string &stem, const Art &art) {
        const std::string patternPart = patternName(stem, art, library.units);
        writePattern(patterns.string(), patternPart, art, library.units);
        written.patterns += !patternPart.empty();
        return patternPart;
    };
    // Patterns first: each is a part of its own, and the definition part is the work part afterwards.
    std::vector<std::vector<std::string>> frames;
    for (const Format &format : library.formats) {
        auto &names = frames.emplace_back();
        for (const Size &size : format.sizes)
            names.push_back(pattern(format.id + "-" + size.slots.strings.at("Id"), size.frame));
    }
    std::vector<std::string> blockPatterns;
    for (const Block &block : library.blocks) blockPatterns.push_back(pattern(block.id, block.art));

    const fs::path final = definitions / (name + ".prt");
    const fs::path fresh = definitions / ("." + name + ".new.prt");
    fs::remove(fresh, error);
    tag_t part = NULL_TAG;
    if (const int code = UF_PART_new(fresh.c_str(), library.units, &part))
        throw Problem::ofPart(fresh.string(), code);
    for (std::size_t i = 0; i < library.formats.size(); ++i)
        writeFormat(library.formats[i], frames[i]);
    for (std::size_t i = 0; i < library.blocks.size(); ++i)
        writeBlock(library.blocks[i], blockPatterns[i]);
    if (const int code = UF_PART_save()) throw Problem::ofPart(fresh.string(), code);
    UgException::throwOnFailure(UF_PART_close(part, 0, 1));
    replaceFile(fresh, final);

    written.definitionPart = final.string();
    written.formats = library.formats.size();
    written.blocks = library.blocks.size();
    return written;
}

} // namespace app::authoring
