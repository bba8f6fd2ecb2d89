#include "app/authoring/pattern_writer.h"

#include "app/problem.h"

#include "nxhost/authoring.h"
#include "uf.h"
#include "uf_curve.h"
#include "uf_drf.h"
#include "uf_obj.h"
#include "uf_part.h"
#include "uf_ugfont.h"
#include "ug_exception.hxx"

#include <fmt/format.h>

#include <cstdint>
#include <filesystem>

namespace app::authoring {

namespace {

constexpr std::size_t kHashLength = 9; // with its hyphen

void check(int status) { UgException::throwOnFailure(status); }

// What the hash is taken of: every figure with all its digits.
std::string canonical(const Art &art, int units)
{
    std::string text = fmt::format("units {}\n", units);
    const auto point = [](ArtPoint p) { return fmt::format("{} {} ", p.x, p.y); };
    for (const Shape &shape : art) {
        if (const auto *line = std::get_if<ArtLine>(&shape)) {
            text += fmt::format("line {}{}{}\n", point(line->from), point(line->to), line->pen);
        } else if (const auto *arc = std::get_if<ArtArc>(&shape)) {
            text += fmt::format("arc {}{} {} {} {}\n", point(arc->centre), arc->radius, arc->start,
                                arc->end, arc->pen);
        } else if (const auto *area = std::get_if<ArtArea>(&shape)) {
            text += "area";
            for (const auto &outline : area->outlines) {
                text += " |";
                for (const ArtPoint &p : outline) text += " " + point(p);
            }
            text += '\n';
        } else if (const auto *words = std::get_if<ArtText>(&shape)) {
            text += fmt::format("text {}{} {} {} {} {} {}\n", point(words->at), words->site,
                                words->size, words->aspect, words->angle, words->font, words->text);
        }
    }
    return text;
}

std::uint32_t fnv1a(const std::string &text)
{
    std::uint32_t hash = 2166136261u;
    for (const char c : text) hash = (hash ^ static_cast<unsigned char>(c)) * 16777619u;
    return hash;
}

int fontIndex(tag_t part, const std::string &font)
{
    tag_t table = NULL_TAG;
    check(UF_OBJ_cycle_objs_in_part(part, UF_font_table_type, &table));
    int index = 0;
    std::string name = font;
    check(UF_UGFONT_add_font(table, &index, name.data()));
    return index;
}

void draw(const ArtLine &line)
{
    UF_CURVE_line_t ends{{line.from.x, line.from.y, 0.0}, {line.to.x, line.to.y, 0.0}};
    tag_t tag = NULL_TAG;
    check(UF_CURVE_create_line(&ends, &tag));
    check(UF_OBJ_set_line_width(tag, line.pen));
}

void draw(const ArtArc &arc)
{
    const tag_t tag = nxhost::createArc(arc.centre.x, arc.centre.y, arc.radius, arc.start, arc.end);
    check(UF_OBJ_set_line_width(tag, arc.pen));
}

void draw(const ArtArea &area)
{
    std::vector<std::vector<nxhost::AuthoringPoint>> outlines;
    for (const auto &outline : area.outlines) {
        auto &points = outlines.emplace_back();
        for (const ArtPoint &p : outline) points.push_back({p.x, p.y});
    }
    nxhost::createFilledArea(outlines);
}

void draw(const ArtText &text, tag_t part)
{
    std::string line = text.text;
    char *lines[] = {line.data()};
    double origin[3] = {text.at.x, text.at.y, 0.0};
    tag_t note = NULL_TAG;
    check(UF_DRF_create_note(1, lines, origin, 0, &note));
    int mpi[NUM_INT_PARAMS];
    double mpr[NUM_REAL_PARAMS];
    char radius[27], diameter[27];
    check(UF_DRF_ask_object_preferences(note, mpi, mpr, radius, diameter));
    mpi[UF_DRF_MPI_align_site] = text.site;
    mpi[UF_DRF_MPI_text_justification] = (text.site - 1) % 3 + 1;
    mpi[UF_DRF_MPI_text_font] = fontIndex(part, text.font);
    mpr[UF_DRF_MPR_char_size] = text.size;
    mpr[UF_DRF_MPR_aspect_ratio] = text.aspect;
    mpr[UF_DRF_MPR_text_angle] = text.angle;
    check(UF_DRF_set_object_preferences(note, mpi, mpr, radius, diameter));
}

void draw(const Art &art, tag_t part)
{
    for (const Shape &shape : art) {
        std::visit(
            [&](const auto &one) {
                if constexpr (std::is_same_v<std::remove_cvref_t<decltype(one)>, ArtText>)
                    draw(one, part);
                else
                    draw(one);
            },
            shape);
    }
}

} // namespace

std::string patternName(const std::string &stem, const Art &art, int units)
{
    if (art.empty()) return {};
    return fmt::format("{}-{:08x}", stem.substr(0, UF_OBJ_NAME_LEN - kHashLength),
                       fnv1a(canonical(art, units)));
}

void writePattern(const std::string &folder, const std::string &name, const Art &art, int units)
{
    const std::string path = folder + "/" + name + ".prt";
    if (name.empty() || std::filesystem::exists(path)) return;
    tag_t part = NULL_TAG;
    if (const int code = UF_PART_new(path.c_str(), units, &part)) throw Problem::ofPart(path, code);
    draw(art, part);
    nxhost::setPatternDataSaved(part, true);
    if (const int code = UF_PART_save()) throw Problem::ofPart(path, code);
    check(UF_PART_close(part, 0, 1));
}

} // namespace app::authoring
