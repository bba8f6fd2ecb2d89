#include "tests/content/block_on_sheet.h"

#include "definitions/location_info.h"

#include "uf_curve.h"
#include "uf_obj.h"
#include "uf_object_types.h"
#include "uf_udobj.h"
#include "uf_view.h"
#include "ug_line.hxx"

#include <cstring>

namespace {

// Writing past the end of a record's array fills the gap with 0, 1, 2, ...: definitions are written
// from the first slot on.
void zeroSlots(LumUg::UDO &record, unsigned ints, unsigned doubles, unsigned strings)
{
    for (unsigned i = 0; i < ints; ++i) record.SetInt(i, 0);
    for (unsigned i = 0; i < doubles; ++i) record.SetDouble(i, 0.0);
    for (unsigned i = 0; i < strings; ++i) record.SetString(i, "");
}

} // namespace

BlockOnSheet::BlockOnSheet()
{
    sheet = story.newSheet();
    addFormat(sheet);
}

void BlockOnSheet::addFormat(tag_t on) const
{
    const boost::shared_ptr<TrFormatDefV1> def(new TrFormatDefV1);
    def->SetId("ISO");
    def->SetUnits(1);
    TrFormatSizeV1 size;
    zeroSlots(size, 6, 5, 5);
    size.SetId("A3");
    size.SetLabel("ISO A3");
    size.SetHeight(297.0);
    size.SetLength(420.0);
    size.SetNumberHorzZones(8); // 52.5 wide
    size.SetNumberVertZones(6); // 49.5 high
    size.SetVertZoneType(1);    // letters
    def->AddSize(size);
    TrDrawing::getDrawing(on)->addFormat(def, size);
}

TrFieldDefV1 BlockOnSheet::fieldDef(const std::string &id, const EditField &edit) const
{
    TrFieldDefV1 def;
    zeroSlots(def, 23, 15, 5);
    def.SetId(id);
    def.SetTextSize(3.5);
    def.SetTextAspect(1.0);
    def.SetLineSpace(1.0);
    def.SetCharSpaceFactor(1.0);
    def.SetTextSite(7);
    def.SetTextJustification(1);
    def.SetTextColor(White);
    def.SetBorderColor(Green);
    def.SetUseDefaultInitially(1);
    if (edit) edit(def);
    return def;
}

TrTableDefV1 BlockOnSheet::tableDef(const std::string &id, const std::vector<TrFieldDefV1> &fields,
                                    const EditTable &edit) const
{
    TrTableDefV1 def;
    zeroSlots(def, 5, 5, 5);
    def.SetId(id);
    def.SetSymbolType(UF_DRF_sym_circle);
    def.SetSymbolColor(Red);
    def.SetSymbolLayer(22);
    def.SetSymbolTextSize(2.5);
    def.SetSymbolTextAspect(1.0);
    for (const TrFieldDefV1 &one : fields) def.AddFieldDefinition(one);
    if (edit) edit(def);
    return def;
}

boost::shared_ptr<TrBlockBase> BlockOnSheet::place(double x, double y)
{
    const boost::shared_ptr<TrBlockDefV1> def(new TrBlockDefV1);
    zeroSlots(*def, 5, 0, 3);
    def->SetId("TITLE");
    def->SetUnits(1);
    def->SetMovable(1);
    def->SetPatternLayer(20);
    def->SetTextLayer(21);
    for (const TrFieldDefV1 &one : m_fields) def->AddFieldDefinition(one);
    for (const TrTableDefV1 &one : m_tables) def->AddTableDefinition(one);
    const tag_t current = story.currentSheet();
    return TrDrawing::getDrawing(current)->format()->addBlock(
        def, QelFmt::LocationInfoType{"", Point2(x, y)});
}

boost::shared_ptr<TrBlockBase> BlockOnSheet::placeOnNewSheet(const std::string &name)
{
    addFormat(story.addSheet(name, 420, 297));
    return place();
}

void BlockOnSheet::saveAndReopen()
{
    story.saveAndReopen();
    sheet = story.sheet(0);
}

boost::shared_ptr<TrBlockBase> BlockOnSheet::block(std::size_t index) const
{
    return TrDrawing::getDrawing(sheet)->format()->getBlocks().at(index);
}

boost::shared_ptr<TrFieldBase> BlockOnSheet::fieldOn(const TrBlockBase &on,
                                                     const std::string &id) const
{
    for (const auto &one : const_cast<TrBlockBase &>(on).getFields())
        if (one->GetFieldDefName() == id) return one;
    throw std::out_of_range("no field " + id);
}

boost::shared_ptr<TrFieldBase> BlockOnSheet::field(const std::string &id) const
{
    return fieldOn(*block(), id);
}

boost::shared_ptr<TrTableBase> BlockOnSheet::table(const std::string &id) const
{
    return block()->getTable(id);
}

// --- what stands on the sheet -------------------------------------------------------------------

tag_t noteTag(const TrFieldBase &field)
{
    const UgDisplayableObject *note = field.GetNote();
    return note ? note->getTag() : NULL_TAG;
}

At noteAt(const TrFieldBase &field)
{
    double at[3] = {};
    UgException::throwOnFailure(UF_DRF_ask_origin(noteTag(field), at));
    return {at[0], at[1]};
}

At storedAt(const TrFieldBase &field) { return {field.GetX(), field.GetY()}; }

namespace {

struct Preferences {
    int ints[100];
    double reals[70];
    explicit Preferences(tag_t object)
    {
        char radius[27], diameter[27];
        UgException::throwOnFailure(
            UF_DRF_ask_object_preferences(object, ints, reals, radius, diameter));
    }
};

} // namespace

int notePref(const TrFieldBase &field, int index)
{
    return Preferences(noteTag(field)).ints[index];
}

double noteNumber(const TrFieldBase &field, int index)
{
    return Preferences(noteTag(field)).reals[index];
}

UF_OBJ_disp_props_t shown(tag_t object)
{
    UF_OBJ_disp_props_t properties{};
    UgException::throwOnFailure(UF_OBJ_ask_display_properties(object, &properties));
    return properties;
}

std::vector<Stroke> strokes(const TrFieldBase &field)
{
    std::vector<Stroke> all;
    for (const UgLine *line : field.GetBorders()) {
        const Point3 start = line->getStartPoint(), end = line->getEndPoint();
        all.push_back({{start[0], start[1]}, {end[0], end[1]}});
    }
    return all;
}

std::vector<tag_t> borderTags(const TrFieldBase &field)
{
    std::vector<tag_t> tags;
    for (const UgLine *line : field.GetBorders()) tags.push_back(line->getTag());
    return tags;
}

Lines valueAttributes(const TrFieldBase &field)
{
    Lines lines;
    const UgUDO &record = *field.GetUdoObject();
    for (const std::string &title : record.askStringAttributeTitles()) {
        const std::size_t index = std::stoul(title.substr(std::strlen("VALUE")));
        if (lines.size() <= index) lines.resize(index + 1, "-");
        lines[index] = record.getStringAttributeValue(title);
    }
    return lines;
}

UF_DRF_lettering_preferences_t lettering()
{
    UF_DRF_lettering_preferences_t preferences{};
    UgException::throwOnFailure(UF_DRF_ask_lettering_preferences(&preferences));
    return preferences;
}

bool sameLettering(const UF_DRF_lettering_preferences_t &a, const UF_DRF_lettering_preferences_t &b)
{
    return a.align_position == b.align_position && a.horiz_text_just == b.horiz_text_just &&
           a.angle == b.angle && a.general_text.size == b.general_text.size &&
           a.general_text.line_space_factor == b.general_text.line_space_factor &&
           a.general_text.cfw.color == b.general_text.cfw.color &&
           a.general_text.cfw.font == b.general_text.cfw.font &&
           a.general_text.cfw.width == b.general_text.cfw.width;
}

std::size_t looseObjects(tag_t part)
{
    std::size_t loose = 0;
    for (const int type : {UF_drafting_entity_type, UF_line_type, UF_point_type}) {
        for (tag_t object = NULL_TAG;;) {
            UgException::throwOnFailure(UF_OBJ_cycle_objs_in_part(part, type, &object));
            if (object == NULL_TAG) break;
            logical owned = 0;
            UgException::throwOnFailure(UF_UDOBJ_is_owned(object, &owned));
            if (!owned) ++loose;
        }
    }
    return loose;
}

std::string attributeOf(const UgAttributableObject &object, const std::string &title)
{
    return object.hasStringAttribute(title) ? object.getStringAttributeValue(title) : "-";
}

std::vector<UgAttributableObject *> carriers(tag_t sheet)
{
    tag_t view = NULL_TAG;
    UgException::throwOnFailure(UF_DRAW_ask_view_of_drawing(sheet, &view));
    std::vector<UgAttributableObject *> points;
    for (tag_t object = NULL_TAG;;) {
        UgException::throwOnFailure(UF_VIEW_cycle_objects(view, UF_VIEW_VISIBLE_OBJECTS, &object));
        if (object == NULL_TAG) return points;
        auto *typed = dynamic_cast<UgTypedObject *>(UgObject::find(object));
        if (typed->askType() == UF_point_type) points.push_back(typed);
    }
}
