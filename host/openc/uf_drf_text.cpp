// Texts read back: one record an annotation, with all its lines.
#include "openc/drafting.h"
#include "openc/vec3_args.h"

#include "model/calls.h"
#include "model/text_metrics.h"

#include "uf.h"

#include <algorithm>
#include <cstring>

using host::Lettering;
using host::Object;
using host::Session;
namespace drafting = host::drafting;

namespace {

constexpr int kGeneralText = 1; // the only text type of notes and symbols here

// At most 132 bytes, never half a character.
std::size_t cutLength(const std::string &line)
{
    std::size_t length = std::min<std::size_t>(line.size(), MAX_LINE_LENGTH);
    if (length == line.size()) return length;
    while (length > 0 && (static_cast<unsigned char>(line[length]) & 0xC0) == 0x80) --length;
    return length;
}

void fill(UF_DRF_draft_aid_text_t &text, const std::string &line)
{
    const std::size_t cut = cutLength(line);
    std::memset(text.string, 0, sizeof text.string);
    std::memcpy(text.string, line.data(), cut);
    text.num_chars = static_cast<int>(cut);
    text.num_ints = static_cast<int>((line.size() + sizeof(int) - 1) / sizeof(int));
    text.full_num_chars = static_cast<int>(line.size());
    text.full_string = host::allocateText(line);
}

UF_DRF_draft_aid_text_t *textArray(const std::vector<std::string> &lines)
{
    if (lines.empty()) return nullptr;
    auto *array = static_cast<UF_DRF_draft_aid_text_t *>(
        host::allocate(lines.size() * sizeof(UF_DRF_draft_aid_text_t)));
    for (std::size_t i = 0; i < lines.size(); ++i) fill(array[i], lines[i]);
    return array;
}

// A vertical note is turned a quarter before its own angle.
double angleOf(const Object &annotation, const Lettering &lettering)
{
    const host::Note *note = annotation.as<host::Note>();
    const double quarter = note && note->orientation == 1 ? 90.0 : 0.0;
    return (lettering.angle + quarter) * DEGRA;
}

// The extent is that of the displayed text, references resolved; the lines are the stored ones.
void fillExtent(UF_DRF_draft_aid_text_info_t &info, const Object &annotation,
                const Lettering &lettering, const std::vector<std::string> &lines)
{
    std::vector<std::string> displayed;
    displayed.reserve(lines.size());
    for (const std::string &line : lines)
        displayed.push_back(Session::get().evaluated(*annotation.part, line));
    info.length = host::textWidth(displayed, lettering);
    info.height = host::textHeight(lines.size(), lettering);
    info.distance = host::boxOffset(lettering.site, info.length, info.height).y + info.height;
}

UF_DRF_draft_aid_text_info_t *infoOf(Object &annotation)
{
    const Lettering &lettering = drafting::letteringOf(annotation);
    const std::vector<std::string> lines = drafting::linesOf(annotation);
    UF_DRF_draft_aid_text_info_t info{};
    info.text_type = kGeneralText;
    info.text_font = lettering.font;
    info.size = lettering.size;
    info.angle = angleOf(annotation, lettering);
    host::copyTo(info.origin, drafting::originOf(annotation));
    fillExtent(info, annotation, lettering, lines);
    info.aspect_ratio = lettering.aspect;
    info.gap = lettering.charSpace;
    info.line_spacing = lettering.lineSpace;
    info.num_lines = static_cast<int>(lines.size());
    info.text = textArray(lines);
    void *block = host::allocate(sizeof info);
    return static_cast<UF_DRF_draft_aid_text_info_t *>(std::memcpy(block, &info, sizeof info));
}

void freeLines(const UF_DRF_draft_aid_text_info_t &info)
{
    for (int i = 0; i < info.num_lines; ++i) host::release(info.text[i].full_string);
    host::release(info.text);
}

} // namespace

extern "C" int UF_DRF_ask_draft_aid_text_info(tag_t draft_aid, int *num_text,
                                              UF_DRF_draft_aid_text_info_t **text_info)
{
    return host::call("UF_DRF_ask_draft_aid_text_info", [&] {
        host::require(num_text, UF_err_bad_parameter_number_2);
        host::require(text_info, UF_err_bad_parameter_number_3);
        *num_text = 0;
        *text_info = nullptr;
        *text_info = infoOf(drafting::requireAnnotation(draft_aid));
        *num_text = 1;
    });
}

// Memory goes back at any time, after the last UF_terminate too.
extern "C" int UF_DRF_free_text(int num_text, UF_DRF_draft_aid_text_info_t **text_info)
{
    if (const int code = host::enterAnytime("UF_DRF_free_text")) return code;
    if (!text_info) return UF_err_bad_parameter_number_2;
    if (!*text_info) return 0;
    for (int i = 0; i < num_text; ++i) freeLines((*text_info)[i]);
    host::release(*text_info);
    *text_info = nullptr;
    return 0;
}
