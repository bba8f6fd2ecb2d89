// Definitions made through their classes, in the work part.
#pragma once

#include "definitions/block_def.h"
#include "definitions/definition_file_manager.h"
#include "definitions/field_def.h"
#include "definitions/format_def.h"
#include "definitions/format_size.h"
#include "definitions/locations.h"
#include "definitions/table_def.h"
#include "drawing/drawing.h"
#include "drawing/format.h"
#include "tests/support/story.h"

#include <string>
#include <utility>
#include <vector>

inline TrFieldDefV1 makeField(const std::string &id)
{
    TrFieldDefV1 field;
    field.SetId(id);
    return field;
}

inline TrTableDefV1 makeTable(const std::string &id, const std::vector<std::string> &fields = {})
{
    TrTableDefV1 table;
    table.SetId(id);
    for (const std::string &field : fields) table.AddFieldDefinition(makeField(field));
    return table;
}

inline boost::shared_ptr<QelFmt::LocationBase> makePlace(const std::string &name, double x,
                                                         double y, int offset_type = 0)
{
    const auto place = QelFmt::LocationBase::createLocation();
    place->SetName(name);
    place->setLocation({x, y});
    place->SetOffsetType(offset_type);
    return place;
}

using Places = std::vector<boost::shared_ptr<QelFmt::LocationBase>>;

inline boost::shared_ptr<QelFmt::SizeLocationBase> makeSizePlaces(const std::string &size_id,
                                                                  const Places &places)
{
    const auto size = QelFmt::SizeLocationBase::createSizeLocation();
    size->SetSizeId(size_id);
    for (const auto &place : places) size->addLocation(place);
    return size;
}

// Places for a format, size by size.
inline boost::shared_ptr<QelFmt::BlockLocationBase>
makeBlockPlaces(const std::string &format_id,
                const std::vector<std::pair<std::string, Places>> &sizes)
{
    const auto location = QelFmt::BlockLocationBase::createBlockLocation();
    location->SetFormatId(format_id);
    for (const auto &[size_id, places] : sizes)
        location->addSizeLocation(makeSizePlaces(size_id, places));
    return location;
}

struct OldPlace {
    std::string size;
    double x, y;
};

// The first generation.
inline boost::shared_ptr<QelFmt::TrBlockLocationV1>
makeOldBlockPlaces(const std::string &format_id, const std::vector<OldPlace> &places,
                   int offset_type = 0)
{
    const boost::shared_ptr<QelFmt::TrBlockLocationV1> location(new QelFmt::TrBlockLocationV1);
    location->SetFormatId(format_id);
    std::vector<std::string> names;
    for (unsigned i = 0; i < places.size(); ++i) {
        names.push_back(places[i].size);
        location->SetSizeXLoc(i, places[i].x);
        location->SetSizeYLoc(i, places[i].y);
    }
    location->SetSizeNames(names);
    location->SetOffsetType(offset_type);
    return location;
}

// A metric block with one place, (10, 10), on all sheets of a format.
inline TrBlockDefV1 makeBlock(const std::string &id, const std::string &format_id = "F")
{
    TrBlockDefV1 block;
    block.SetId(id);
    block.SetUnits(1);
    block.addBlockLocation(
        makeBlockPlaces(format_id, {{"Default", {makePlace("only", 10.0, 10.0)}}}));
    return block;
}

inline TrFormatSizeV1 makeSize(const std::string &id, double length = 420.0, double height = 297.0)
{
    TrFormatSizeV1 size;
    size.SetId(id);
    size.SetLength(length);
    size.SetHeight(height);
    return size;
}

// A metric format without required blocks.
inline TrFormatDefV1 makeFormat(const std::string &id, const std::vector<std::string> &sizes)
{
    TrFormatDefV1 format;
    format.SetId(id);
    format.SetUnits(1);
    for (const std::string &size : sizes) format.AddSize(makeSize(size));
    return format;
}

// A definition part in the site's folder: what `fill` makes goes into it. The work part stays.
template <class Fill>
std::string writeDefinitionPart(const Story &story, const std::string &name, Fill &&fill)
{
    const tag_t work = UF_ASSEM_ask_work_part();
    const std::string path = story.definitionsFolder() + "/" + name;
    tag_t part = NULL_TAG;
    UgException::throwOnFailure(UF_PART_new(path.c_str(), UF_PART_METRIC, &part));
    fill();
    UgException::throwOnFailure(UF_PART_save());
    UgException::throwOnFailure(UF_PART_close(part, 0, 1));
    if (work != NULL_TAG) {
        UgException::throwOnFailure(UF_PART_set_display_part(work));
        UgException::throwOnFailure(UF_ASSEM_set_work_part(work));
    }
    return path;
}

// Definition files that a test loads are unloaded at its end.
struct LoadedDefinitions {
    LoadedDefinitions() { TrDefinitionFileManager::LoadDefinitionFiles(); }
    ~LoadedDefinitions() { TrDefinitionFileManager::UnloadDefinitionFiles(); }
    LoadedDefinitions(const LoadedDefinitions &) = delete;
    LoadedDefinitions &operator=(const LoadedDefinitions &) = delete;
};
