#include "content/note_style.h"

#include "definitions/field_def.h"

#include "uf_obj.h"
#include "uf_ugfont.h"
#include "ug_exception.hxx"
#include "ug_part.hxx"
#include "ug_session.hxx"

#include <algorithm>

namespace QelFmt {

namespace {

using Def = TrFieldDefV1;

// Font numbers are those of one part: the definition's font is looked up by its name. 0: none.
int fontIndex(const std::string &name)
{
    if (name.empty()) return 0;
    tag_t table = NULL_TAG;
    UgException::throwOnFailure(
        UF_OBJ_cycle_objs_in_part(UgSession::getWorkPart()->getTag(), UF_font_table_type, &table));
    int index = 0;
    std::string font = name; // the platform asks for a text that it may write to
    UgException::throwOnFailure(UF_UGFONT_add_font(table, &index, font.data()));
    return index;
}

} // namespace

NoteStyle::NoteStyle(const LumUg::Record &fieldDef)
    : site(fieldDef.get(Def::kTextSite)), justification(fieldDef.get(Def::kTextJustification)),
      font(fontIndex(fieldDef.get(Def::kTextFontName))), width(fieldDef.get(Def::kTextWidthType)),
      color(fieldDef.get(Def::kTextColor)), angle(fieldDef.get(Def::kTextAngle)),
      lineSpace(fieldDef.get(Def::kLineSpace))
{}

LetteringForNote::LetteringForNote(const NoteStyle &style)
{
    UgException::throwOnFailure(UF_DRF_ask_lettering_preferences(&m_saved));
    UF_DRF_lettering_preferences_t working = m_saved;
    if (style.hasSite()) working.align_position = style.site;
    working.horiz_text_just = style.justification;
    working.angle = style.angle;
    working.general_text.line_space_factor = style.lineSpace;
    if (style.hasFont()) working.general_text.cfw.font = style.font;
    working.general_text.cfw.width = style.width;
    working.general_text.cfw.color = style.color;
    UgException::throwOnFailure(UF_DRF_set_lettering_preferences(&working));
}

LetteringForNote::~LetteringForNote()
{
    if (m_changed) UF_DRF_set_lettering_preferences(&m_saved);
}

void LetteringForNote::restore()
{
    UgException::throwOnFailure(UF_DRF_set_lettering_preferences(&m_saved));
    m_changed = false;
}

Alternative altSize(const LumUg::Record &fieldDef)
{
    return {fieldDef.get(Def::kAltTextSizeNumChars), fieldDef.get(Def::kAltTextSize)};
}

Alternative altAspect(const LumUg::Record &fieldDef)
{
    return {fieldDef.get(Def::kAltTextAspectNumChars), fieldDef.get(Def::kAltTextAspect)};
}

std::size_t charactersIn(const std::string &utf8)
{
    return static_cast<std::size_t>(std::count_if(utf8.begin(), utf8.end(), [](char byte) {
        return (static_cast<unsigned char>(byte) & 0xC0) != 0x80;
    }));
}

} // namespace QelFmt
