// The note that shows a field's value.
#include "content/field.h"
#include "content/new_object.h"
#include "content/note_style.h"
#include "content/note_text.h"
#include "content/recompute_guard.h"
#include "definitions/block_def.h"
#include "definitions/field_def.h"
#include "drawing/block.h"
#include "drawing/sheet_view.h"
#include "drawing/transformation.h"
#include "foundation/log.h"

#include "NXOpen/Annotations_SimpleDraftingAid.hxx"
#include "NXOpen/NXObjectManager.hxx"
#include "uf_drf.h"
#include "uf_obj.h"
#include "ug_exception.hxx"
#include "ug_session.hxx"

#include <stdexcept>

namespace {

using Def = TrFieldDefV1;

bool isEmptyValue(const TrFieldBase::Value &lines)
{
    return lines.empty() || (lines.size() == 1 && lines.front().empty());
}

tag_t createNote(const TrFieldBase::Value &lines, double x, double y)
{
    std::vector<char *> texts;
    for (std::size_t i = 0; i < lines.size(); ++i) {
        QELFMT_INFO << "  line " << i << ": " << lines[i];
        texts.push_back(const_cast<char *>(lines[i].c_str())); // only read
    }
    double origin[3] = {x, y, 0.0};
    tag_t note = NULL_TAG;
    UgException::throwOnFailure(
        UF_DRF_create_note(static_cast<int>(texts.size()), texts.data(), origin, 0, &note));
    QELFMT_INFO << "UG noteTag = " << note;
    return note;
}

} // namespace

TrFieldBase::Value TrFieldBase::GetNoteValue() const
{
    const UgDisplayableObject *note = GetNote();
    return note ? QelFmt::NoteText(note->getTag()).lines() : Value();
}

bool TrFieldBase::IsSameValue(const Value &lines) const { return lines == GetNoteValue(); }

// --- a new note -----------------------------------------------------------------------------------

void TrFieldBase::CreateNote(const Value &lines)
{
    if (isEmptyValue(lines)) return;
    QELFMT_INFO << "line 1 value = " << lines.front();
    QELFMT_INFO << "CreateUgNote()....";
    UgDisplayableObject *note = CreateUgNote(lines);
    QelFmt::NewObject fresh(note->getTag());
    SetNote(note);
    fresh.keep();
    refreshNotePrefs();
}

UgDisplayableObject *TrFieldBase::CreateUgNote(const Value &lines)
{
    const TrFieldDefV1 definition = GetDefinition();
    if (definition.IsNull())
        throw std::runtime_error("Field " + GetFieldDefName() +
                                 " has no definition: bring the format up to date first");
    const LumUg::Record def(definition);
    QELFMT_INFO << "Creating UG note " << def.get(Def::kId);
    QELFMT_INFO << "Number of lines = " << lines.size();

    const QelFmt::WritingField writing(tag());
    QelFmt::LetteringForNote lettering{QelFmt::NoteStyle(def)};
    locate();
    const tag_t note = createNote(lines, GetX(), GetY());
    QelFmt::NewObject fresh(note);
    lettering.restore();

    auto *displayable = dynamic_cast<UgDisplayableObject *>(UgObject::find(note));
    putOnSheetOf(*this, note);
    putOnTextLayer(*displayable);
    fresh.keep();
    return displayable;
}

void TrFieldBase::putOnTextLayer(UgDisplayableObject &note) const
{
    const boost::shared_ptr<TrBlockBase> block = GetBlock();
    if (!block) return;
    const boost::shared_ptr<TrBlockDefV1> def = block->GetDefinition();
    if (def->IsNull()) return;
    const int layer = def->GetTextLayer();
    note.setLayer(layer);
    UgSession::setLayerStatus(layer, 2);
}

// --- how it looks -----------------------------------------------------------------------------------

void TrFieldBase::setNotePrefs()
{
    const UgDisplayableObject *note = GetNote();
    const TrFieldDefV1 definition = GetDefinition();
    if (!note || definition.IsNull()) return;
    const LumUg::Record def(definition);
    const QelFmt::NoteStyle style(def);
    const QelFmt::Alternative size = QelFmt::altSize(def), aspect = QelFmt::altAspect(def);
    const bool alternatives = size.exists() || aspect.exists();
    const std::size_t length = alternatives ? QelFmt::charactersIn(GetValue().front()) : 0;

    QelFmt::AnnotationPreferences prefs(note->getTag());
    if (style.hasSite()) prefs.ints[UF_DRF_MPI_align_site] = style.site;
    prefs.ints[UF_DRF_MPI_text_justification] = style.justification;
    if (style.hasFont()) prefs.ints[UF_DRF_MPI_text_font] = style.font;
    prefs.ints[UF_DRF_MPI_text_width] = style.width;
    prefs.ints[UF_DRF_MPI_text_color] = style.color;
    prefs.reals[UF_DRF_MPR_text_angle] = style.angle;
    prefs.reals[UF_DRF_MPR_line_space_factor] = style.lineSpace;

    const double textSize = size.applies(length) ? size.value : def.get(Def::kTextSize);
    if (textSize > 0.0) prefs.reals[UF_DRF_MPR_char_size] = textSize; // a note has some size
    const double space = def.get(Def::kCharSpaceFactor);
    prefs.reals[UF_DRF_MPR_char_space_factor] = space != 0.0 ? space : 1.0;
    prefs.reals[UF_DRF_MPR_aspect_ratio] =
        aspect.applies(length) ? aspect.value : def.get(Def::kTextAspect);
    prefs.write();
}

// The preferences hold the angle of a text that is not flipped: it is turned round anew.
void TrFieldBase::refreshNotePrefs()
{
    setNotePrefs();
    if (GetNote() && GetDefinition().GetFlipText() != 0) FlipNote();
}

void TrFieldBase::FlipNote()
{
    const tag_t note = GetNote()->getTag();
    double origin[3] = {};
    UgException::throwOnFailure(UF_DRF_ask_origin(note, origin));
    turnObject(note, origin[0], origin[1], 180.0);
}

// --- another text -----------------------------------------------------------------------------------

void TrFieldBase::UpdateNote(const Value &lines)
{
    QELFMT_INFO << "...in updateNote()";
    if (IsSameValue(lines)) {
        QELFMT_INFO << "IsSameValue == 1 MATCH";
        return;
    }
    QELFMT_INFO << "IsSameValue == 0 DONT MATCH";
    const TrFieldDefV1 definition = GetDefinition();
    const LumUg::Record def(definition);
    if (def.get(Def::kSymbolFile) != 0) {
        QELFMT_INFO << "Setting customer symbol file";
        UgException::throwOnFailure(UF_DRF_set_customer_sbf_file());
    } else {
        QELFMT_INFO << "Setting default symbol file";
        UgException::throwOnFailure(UF_DRF_set_ugdefault_sbf_file());
    }
    if (GetNote()) {
        QELFMT_INFO << "Found previous note - Modify using uc5566";
        QELFMT_INFO << "Modifying field " << def.get(Def::kId) << "'s note";
        rewriteNote(lines);
        // The size may depend on how long the value is.
        if (QelFmt::altSize(def).exists() || QelFmt::altAspect(def).exists()) refreshNotePrefs();
    } else {
        QELFMT_INFO << "Did not find note - CreateNote()";
        CreateNote(lines);
    }
    setUserSymbolSize(def.get(Def::kUserSymbolLength), def.get(Def::kUserSymbolHeight));
}

// An empty value leaves a note without lines.
void TrFieldBase::rewriteNote(const Value &lines)
{
    const Value shown = isEmptyValue(lines) ? Value() : lines;
    for (std::size_t i = 0; i < shown.size(); ++i)
        QELFMT_INFO << "  Line " << i << " = " << shown[i];
    QelFmt::replaceText(GetNote()->getTag(), shown);
}

void TrFieldBase::setUserSymbolSize(double length, double height)
{
    const UgDisplayableObject *note = GetNote();
    if (!note || !(length > 0.0 && height > 0.0)) return;
    using namespace NXOpen;
    auto *aid =
        dynamic_cast<Annotations::SimpleDraftingAid *>(NXObjectManager::Get(note->getTag()));
    if (!aid) return;
    aid->SetUserSymbolSize(Annotations::UserSymbolPreferences::SizeTypeLengthHeight, length,
                           height);
}

TrFieldBase::Value TrFieldBase::EvaluateNoteValue(const Value &lines) const
{
    const UgDisplayableObject *note = GetNote();
    if (lines.empty() || !note) return lines;
    using namespace NXOpen;
    const auto *aid =
        dynamic_cast<Annotations::SimpleDraftingAid *>(NXObjectManager::Get(note->getTag()));
    if (!aid) return lines;
    Value evaluated;
    for (const std::string &line : lines) evaluated.push_back(aid->GetEvaluatedText(line));
    return evaluated;
}

// --- the note taken away ----------------------------------------------------------------------------

// A note that the platform will not delete stays the field's.
void TrFieldV1::deleteNote()
{
    UgDisplayableObject *note = GetNote();
    if (!note) return;
    RemoveNote();
    if (const int failure = UF_OBJ_delete_object(note->getTag())) {
        SetNote(note);
        UgException::throwOnFailure(failure);
    }
}

// What the note shows is remembered: the attributes of the record may not hold all lines. When the
// new note cannot be made they do.
void TrFieldV1::RecreateNote()
{
    const Value value = GetValue();
    const TrFieldDefV1 def = GetDefinition();
    const bool keepsValue = def.IsNull() || def.GetUseDefaultInitially() != 0;
    try {
        deleteNote();
        if (keepsValue)
            ModifyValue(value);
        else
            SetToDefaultValue();
    } catch (...) {
        if (!GetNote()) keepInAttributes(value);
        throw;
    }
}
