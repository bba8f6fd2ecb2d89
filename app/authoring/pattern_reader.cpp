#include "app/authoring/pattern_reader.h"

#include "nxhost/authoring.h"
#include "uf.h"
#include "uf_curve.h"
#include "uf_drf.h"
#include "uf_obj.h"
#include "uf_part.h"
#include "uf_ugfont.h"
#include "ug_exception.hxx"

namespace app::authoring {

namespace {

void check(int status) { UgException::throwOnFailure(status); }

// An open part that is closed again, whatever happens.
class OpenPart {
public:
    explicit OpenPart(const std::string &path)
    {
        UF_PART_load_status_t status{};
        if (UF_PART_open_quiet(path.c_str(), &m_tag, &status) != 0) m_tag = NULL_TAG;
        UF_PART_free_load_status(&status);
    }
    ~OpenPart()
    {
        if (m_tag != NULL_TAG) UF_PART_close(m_tag, 0, 1);
    }
    OpenPart(const OpenPart &) = delete;
    OpenPart &operator=(const OpenPart &) = delete;

    tag_t tag() const { return m_tag; }

private:
    tag_t m_tag = NULL_TAG;
};

std::string fontName(tag_t part, int index)
{
    tag_t table = NULL_TAG;
    check(UF_OBJ_cycle_objs_in_part(part, UF_font_table_type, &table));
    char *name = nullptr;
    check(UF_UGFONT_ask_font_name(table, index, &name));
    const std::string result = name ? name : "";
    UF_free(name);
    return result;
}

int penOf(tag_t object)
{
    UF_OBJ_disp_props_t shown{};
    check(UF_OBJ_ask_display_properties(object, &shown));
    return shown.line_width;
}

Shape lineOf(tag_t object)
{
    UF_CURVE_line_t ends{};
    check(UF_CURVE_ask_line_data(object, &ends));
    return ArtLine{{ends.start_point[0], ends.start_point[1]},
                   {ends.end_point[0], ends.end_point[1]},
                   penOf(object)};
}

Shape arcOf(tag_t object)
{
    const nxhost::AuthoredArc arc = nxhost::askArc(object);
    return ArtArc{
        {arc.centre.x, arc.centre.y}, arc.radius, arc.startAngle, arc.endAngle, penOf(object)};
}

Shape areaOf(tag_t object)
{
    ArtArea area;
    for (const auto &outline : nxhost::askFilledArea(object)) {
        auto &points = area.outlines.emplace_back();
        for (const auto &point : outline) points.push_back({point.x, point.y});
    }
    return area;
}

// Nothing for a note of several lines.
std::optional<Shape> textOf(tag_t part, tag_t note)
{
    int count = 0;
    UF_DRF_draft_aid_text_info_t *info = nullptr;
    check(UF_DRF_ask_draft_aid_text_info(note, &count, &info));
    std::optional<std::string> line;
    if (count == 1 && info[0].num_lines == 1) line = info[0].text[0].full_string;
    UF_DRF_free_text(count, &info);
    if (!line) return {};

    double origin[3];
    check(UF_DRF_ask_origin(note, origin));
    int mpi[NUM_INT_PARAMS];
    double mpr[NUM_REAL_PARAMS];
    char radius[27], diameter[27];
    check(UF_DRF_ask_object_preferences(note, mpi, mpr, radius, diameter));
    return ArtText{*line,
                   {origin[0], origin[1]},
                   mpi[UF_DRF_MPI_align_site],
                   mpr[UF_DRF_MPR_char_size],
                   fontName(part, mpi[UF_DRF_MPI_text_font]),
                   mpr[UF_DRF_MPR_aspect_ratio],
                   mpr[UF_DRF_MPR_text_angle]};
}

std::optional<Shape> shapeOf(tag_t part, tag_t object)
{
    int type = 0, subtype = 0;
    check(UF_OBJ_ask_type_and_subtype(object, &type, &subtype));
    if (type == UF_line_type) return lineOf(object);
    if (type == UF_circle_type) return arcOf(object);
    if (type != UF_drafting_entity_type) return {};
    if (subtype == UF_draft_crosshatch_subtype) return areaOf(object);
    if (subtype == UF_draft_note_subtype) return textOf(part, object);
    return {};
}

} // namespace

std::optional<Art> readPattern(const std::string &path)
{
    const OpenPart part(path);
    if (part.tag() == NULL_TAG) return {};
    Art art;
    for (tag_t object = UF_OBJ_cycle_all(part.tag(), NULL_TAG); object != NULL_TAG;
         object = UF_OBJ_cycle_all(part.tag(), object)) {
        int type = 0, subtype = 0;
        check(UF_OBJ_ask_type_and_subtype(object, &type, &subtype));
        if (type == UF_font_table_type || type == UF_view_type) continue;
        const auto shape = shapeOf(part.tag(), object);
        if (!shape) return {};
        art.push_back(*shape);
    }
    return art;
}

} // namespace app::authoring
