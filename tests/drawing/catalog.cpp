#include "tests/drawing/catalog.h"

#include "definitions/block_def.h"
#include "definitions/definition_file_manager.h"
#include "definitions/field_def.h"
#include "definitions/format_def.h"
#include "definitions/format_size.h"
#include "definitions/locations.h"
#include "definitions/table_def.h"

#include <algorithm>

namespace {

template <class Descs> auto &byId(Descs &descs, const std::string &id)
{
    const auto found =
        std::find_if(descs.begin(), descs.end(), [&](const auto &desc) { return desc.id == id; });
    if (found == descs.end()) throw std::out_of_range("the catalog has no " + id);
    return *found;
}

// A number that is written first leaves counting numbers in the slots before it.
void zeroNumbers(LumUg::UDO &record, unsigned ints, unsigned doubles)
{
    for (unsigned i = 0; i < ints; ++i) record.SetInt(i, 0);
    for (unsigned i = 0; i < doubles; ++i) record.SetDouble(i, 0.0);
}

TrFieldDefV1 made(const FieldDesc &desc)
{
    TrFieldDefV1 def;
    zeroNumbers(def, 23, 15);
    def.SetId(desc.id);
    def.SetDefaultString(desc.defaults);
    def.SetLocationX(desc.x);
    def.SetLocationY(desc.y);
    def.SetWidth(desc.width);
    def.SetHeight(desc.height);
    def.SetBottomBorderPolicy(desc.borders[0]);
    def.SetLeftBorderPolicy(desc.borders[1]);
    def.SetMiddleBorderPolicy(desc.borders[2]);
    def.SetRightBorderPolicy(desc.borders[3]);
    def.SetTopBorderPolicy(desc.borders[4]);
    def.SetRelativeOffsetType(desc.corner);
    def.SetTextSite(desc.textSite);
    def.SetTextJustification(1);
    def.SetTextSize(3.5);
    def.SetTextAspect(1.0);
    def.SetLineSpace(1.0);
    def.SetTextColor(7);
    def.SetBorderColor(7);
    def.SetTextFontName("blockfont");
    def.SetUseDefaultInitially(desc.useDefaultInitially);
    if (desc.more) desc.more(def);
    return def;
}

TrTableDefV1 made(const TableDesc &desc)
{
    TrTableDefV1 def;
    zeroNumbers(def, 5, 5);
    def.SetId(desc.id);
    def.SetLocationX(desc.x);
    def.SetLocationY(desc.y);
    def.SetDirection(desc.direction);
    for (const FieldDesc &field : desc.fields) def.AddFieldDefinition(made(field));
    return def;
}

boost::shared_ptr<QelFmt::BlockLocationBase> made(const PlacesDesc &desc)
{
    const auto places = QelFmt::BlockLocationBase::createBlockLocation();
    places->SetFormatId(desc.format);
    for (const auto &[size, points] : desc.sizes) {
        const auto onSize = QelFmt::SizeLocationBase::createSizeLocation();
        onSize->SetSizeId(size);
        for (const PlaceDesc &point : points) {
            const auto place = QelFmt::LocationBase::createLocation();
            place->SetName(point.name);
            place->setLocation({point.x, point.y});
            place->SetOffsetType(point.corner);
            onSize->addLocation(place);
        }
        places->addSizeLocation(onSize);
    }
    return places;
}

void make(const BlockDesc &desc)
{
    TrBlockDefV1 def;
    def.SetId(desc.id);
    def.SetPatternName(desc.pattern);
    def.SetUnits(desc.units);
    def.SetMovable(desc.movable);
    def.SetPatternLayer(desc.patternLayer);
    def.SetTextLayer(desc.textLayer);
    def.SetCanDelete(desc.canDelete);
    for (const PlacesDesc &places : desc.places) def.addBlockLocation(made(places));
    for (const FieldDesc &field : desc.fields) def.AddFieldDefinition(made(field));
    for (const TableDesc &table : desc.tables) def.AddTableDefinition(made(table));
}

TrFormatSizeV1 made(const SizeDesc &desc)
{
    TrFormatSizeV1 size;
    size.SetId(desc.id);
    size.SetFrameName(desc.frame);
    size.SetLabel(desc.label);
    size.SetSuiteName(desc.suite);
    size.SetHeight(desc.height);
    size.SetLength(desc.length);
    size.SetRightOffset(desc.rightOffset);
    size.SetHorzZoneLength(desc.horzZoneLength);
    size.SetVertZoneLength(desc.vertZoneLength);
    size.SetFrameLayer(desc.frameLayer);
    size.SetUgSizeCode(desc.code);
    size.SetNumberHorzZones(desc.horzZones);
    size.SetNumberVertZones(desc.vertZones);
    size.SetHorzZoneType(desc.horzZoneType);
    size.SetVertZoneType(desc.vertZoneType);
    return size;
}

void make(const FormatDesc &desc)
{
    TrFormatDefV1 def;
    def.SetId(desc.id);
    if (!desc.category.empty()) def.SetCategory(desc.category);
    def.SetSuiteName(desc.suite);
    def.SetRequiredBlockIds(desc.required);
    def.SetUnits(desc.units);
    for (const SizeDesc &size : desc.sizes) def.AddSize(made(size));
}

} // namespace

FormatDesc &Catalog::format(const std::string &id) { return byId(formats, id); }

BlockDesc &Catalog::block(const std::string &id) { return byId(blocks, id); }

FieldDesc &Catalog::field(const std::string &block_id, const std::string &id)
{
    return byId(block(block_id).fields, id);
}

void Catalog::load(const Story &story) const
{
    unload();
    const tag_t work = UF_ASSEM_ask_work_part();
    const std::string path = story.definitionsFolder() + "/definitions.prt";
    boost::filesystem::remove(path);
    tag_t part = NULL_TAG;
    UgException::throwOnFailure(UF_PART_new(path.c_str(), UF_PART_METRIC, &part));
    for (const FormatDesc &format : formats) make(format);
    for (const BlockDesc &block : blocks) make(block);
    UgException::throwOnFailure(UF_PART_save());
    UgException::throwOnFailure(UF_PART_close(part, 0, 1));
    if (work != NULL_TAG) {
        UgException::throwOnFailure(UF_PART_set_display_part(work));
        UgException::throwOnFailure(UF_ASSEM_set_work_part(work));
    }
    TrDefinitionFileManager::LoadDefinitionFiles();
}

void Catalog::unload() { TrDefinitionFileManager::UnloadDefinitionFiles(); }

Catalog isoCatalog()
{
    FormatDesc iso{"ISO"};
    iso.sizes = {
        {.id = "A3", .height = 297, .length = 420, .code = 4, .frame = "frameA3", .label = "A3"},
        {.id = "A2", .height = 420, .length = 594, .code = 3, .frame = "frameA2", .label = "A2"},
        {.id = "TALL", .height = 900, .length = 300, .frame = "frameTall", .label = "300x900"}};
    iso.required = {"TITLE"};
    FormatDesc plain{"PLAIN"};
    plain.sizes = {{.id = "A3", .height = 297, .length = 420, .code = 4, .frame = "framePlain"}};

    // The title block hangs in the lower right corner, 190 to the left of the edge and 10 above it.
    BlockDesc title{"TITLE"};
    title.places = {{"ISO", {{"Default", {{"corner", 190, 10, 2}}}}},
                    {"PLAIN", {{"Default", {{"corner", 200, 20, 2}}}}}};
    title.fields = {{"NAME", 5, 5, {"PART"}}, {"NUMBER", 5, 15, {"N-1"}}, {"EMPTY", 5, 25}};
    title.pattern = "title";

    // Notes may stand left or right, on A2 only left, on TALL nowhere.
    BlockDesc notes{"NOTES"};
    notes.places = {{"ISO",
                     {{"A3", {{"left", 20, 200}, {"right", 120, 50, 3}}},
                      {"A2", {{"left", 30, 300}, {"right", -1, 0}}},
                      {"TALL", {{"left", -1, -1}, {"right", -1, -1}}}}}};
    notes.fields = {{"TEXT", 2, 3, {"NOTE"}}};
    notes.movable = 1;
    notes.canDelete = 1;

    BlockDesc rev{"REV"};
    rev.places = {{"ISO", {{"Default", {{"top", 100, 10, 3}}}}}};
    rev.fields = {{"HEAD", 1, 1, {"REVISIONS"}}};
    rev.tables = {{"REVS", 0, 8, {{"NO", 1, 1, {"1"}, 20, 8}, {"WHAT", 21, 1, {"made"}, 60, 8}}}};
    rev.pattern = "rev";
    rev.movable = 1;
    rev.canDelete = 1;

    return {{iso, plain}, {title, notes, rev}};
}
