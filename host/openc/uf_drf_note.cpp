// Notes: creation, origin, replacement of the text.
#include "openc/drafting.h"
#include "openc/vec3_args.h"

#include "model/calls.h"

#include "uf.h"

#include <cstring>

using host::IdSymbol;
using host::Note;
using host::Object;
using host::Session;
namespace drafting = host::drafting;

namespace {

constexpr int kMainText = 1;
constexpr std::size_t kRowBytes = 133; // with the NUL, when the line leaves room for one

std::vector<std::string> linesFrom(char *const strings[], int count)
{
    std::vector<std::string> lines;
    for (int i = 0; i < count; ++i) {
        drafting::requireValid(strings[i]);
        lines.emplace_back(strings[i]);
    }
    return lines;
}

std::vector<std::string> linesFrom(const char rows[][kRowBytes], int count)
{
    std::vector<std::string> lines;
    for (int i = 0; i < count; ++i) lines.emplace_back(rows[i], strnlen(rows[i], MAX_LINE_LENGTH));
    return lines;
}

void replaceText(Object &object, Note &note, std::vector<std::string> lines)
{
    if (note.lines == lines) return;
    Session::get().changing(object, "text");
    note.lines = std::move(lines);
}

// A symbol keeps one line where no second one is given.
void replaceText(Object &object, IdSymbol &symbol, std::vector<std::string> lines)
{
    const int count = lines.size() == 2 ? 2 : 1;
    lines.resize(2);
    if (symbol.textLines == count && symbol.upper == lines[0] && symbol.lower == lines[1]) return;
    Session::get().changing(object, "text");
    symbol.textLines = count;
    symbol.upper = std::move(lines[0]);
    symbol.lower = std::move(lines[1]);
}

} // namespace

extern "C" int UF_DRF_create_note(int num_lines_text, char *text_string[], double origin_3d[3],
                                  int orientation, tag_t *note)
{
    return host::call("UF_DRF_create_note", [&] {
        host::require(note, UF_err_bad_parameter_number_5);
        *note = NULL_TAG;
        drafting::requireValid(num_lines_text > 0 && text_string && origin_3d);
        drafting::requireValid(orientation == 0 || orientation == 1);
        host::Part &part = Session::get().workPart();
        Note made;
        made.lines = linesFrom(text_string, num_lines_text);
        made.origin = host::toVec3(origin_3d);
        made.orientation = orientation;
        made.lettering = drafting::letteringForNew(part);
        *note = Session::get().create(part, std::move(made)).tag;
    });
}

extern "C" int UF_DRF_set_origin(tag_t annotation, double new_origin[3])
{
    return host::call("UF_DRF_set_origin", [&] {
        drafting::requireValid(new_origin);
        Object &object = drafting::requireAnnotation(annotation);
        host::Vec3 &origin = drafting::originOf(object);
        const host::Vec3 to = host::toVec3(new_origin);
        if (origin == to) return;
        Session::get().changing(object, "origin");
        origin = to;
    });
}

extern "C" int UF_DRF_ask_origin(tag_t annotation, double origin[3])
{
    return host::call("UF_DRF_ask_origin", [&] {
        drafting::requireValid(origin);
        host::copyTo(origin, drafting::originOf(drafting::requireAnnotation(annotation)));
    });
}

// The origin stays where it is, whatever the site: the text grows around it.
extern "C" int uc5566(tag_t object_tag, int text_kind, int num_lines, char text[][133])
{
    return host::call("uc5566", [&] {
        Object &object = drafting::requireAnnotation(object_tag);
        drafting::requireValid(text_kind == kMainText && num_lines >= 0);
        drafting::requireValid(text || num_lines == 0);
        if (Note *note = object.as<Note>()) {
            replaceText(object, *note, linesFrom(text, num_lines));
        } else {
            drafting::requireValid(num_lines <= 2);
            replaceText(object, *object.as<IdSymbol>(), linesFrom(text, num_lines));
        }
    });
}
