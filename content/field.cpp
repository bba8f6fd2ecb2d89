// The record of a field: slots, definition, owned objects, older generations.
#include "content/field.h"

#include "content/attributes.h"
#include "content/entry.h"
#include "content/owner_walk.h"
#include "content/row_memo.h"
#include "definitions/field_def.h"
#include "drawing/block.h"
#include "foundation/log.h"

#include "uf_obj.h"
#include "uf_object_types.h"
#include "ug_exception.hxx"
#include "ug_line.hxx"

using QelFmt::RowMemo;

namespace {

UgDisplayableObject *firstNote(const std::vector<tag_t> &objects)
{
    for (const tag_t object : objects) {
        int type = 0, subtype = 0;
        UgException::throwOnFailure(UF_OBJ_ask_type_and_subtype(object, &type, &subtype));
        if (type == UF_drafting_entity_type && subtype == UF_draft_note_subtype)
            return dynamic_cast<UgDisplayableObject *>(UgObject::find(object));
    }
    return nullptr;
}

// How high a row is depends on the notes of its fields. Asked before a note comes or goes: what may
// fail comes first.
tag_t rowOf(const LumUg::UDO &field) { return QelFmt::firstLinking(field.tag()); }

} // namespace

TrFieldBase::TrFieldBase() = default;
TrFieldBase::TrFieldBase(UgUDO *udo) : LumUg::UDO(udo) {}
TrFieldBase::~TrFieldBase() = default;

std::string TrFieldBase::GetFieldDefName() const { return get(kFieldDefName); }
void TrFieldBase::SetFieldDefName(const std::string &name) { set(kFieldDefName, name); }
double TrFieldBase::GetX() const { return get(kX); }
void TrFieldBase::SetX(double x) { set(kX, x); }
double TrFieldBase::GetY() const { return get(kY); }
void TrFieldBase::SetY(double y) { set(kY, y); }
int TrFieldBase::GetHasBottomBorder() const { return get(kHasBottomBorder); }
void TrFieldBase::SetHasBottomBorder(int on) { set(kHasBottomBorder, on); }
int TrFieldBase::GetHasLeftBorder() const { return get(kHasLeftBorder); }
void TrFieldBase::SetHasLeftBorder(int on) { set(kHasLeftBorder, on); }
int TrFieldBase::GetHasMiddleBorder() const { return get(kHasMiddleBorder); }
void TrFieldBase::SetHasMiddleBorder(int on) { set(kHasMiddleBorder, on); }
int TrFieldBase::GetHasRightBorder() const { return get(kHasRightBorder); }
void TrFieldBase::SetHasRightBorder(int on) { set(kHasRightBorder, on); }
int TrFieldBase::GetHasTopBorder() const { return get(kHasTopBorder); }
void TrFieldBase::SetHasTopBorder(int on) { set(kHasTopBorder, on); }
int TrFieldBase::GetNumberOfLines() const { return get(kNumberOfLines); }
void TrFieldBase::SetNumberOfLines(int lines) { set(kNumberOfLines, lines); }

// What follows is done by the current generation only.
void TrFieldBase::ModifyValue(const Value &) {}
void TrFieldBase::SetDefinition(const TrFieldDefV1 &) {}
void TrFieldBase::RecreateNote() {}
TrFieldDefV1 TrFieldBase::GetDefinition() const { return TrFieldDefV1(); }
int TrFieldBase::GetIsEditable() const { return 0; }
void TrFieldBase::SetIsEditable(int) {}
void TrFieldBase::RemoveDraftingObjects(bool) {}
boost::shared_ptr<TrBlockBase> TrFieldBase::GetBlock() const { return {}; }
UgDisplayableObject *TrFieldBase::GetNote() const { return nullptr; }
void TrFieldBase::SetNote(UgDisplayableObject *) {}
void TrFieldBase::ModifyBorder(const Rect &, int) {}

std::vector<UgLine *> TrFieldBase::GetBorders() const
{
    std::vector<UgLine *> lines;
    if (IsNull()) return lines;
    for (UgTypedObject *object : GetOwnedObjects(UF_line_type)) {
        if (auto *line = dynamic_cast<UgLine *>(object)) lines.push_back(line);
    }
    return lines;
}

void TrFieldBase::RemoveNote()
{
    const tag_t row = rowOf(*this);
    DeleteOwnedObject(GetNote());
    RowMemo::rowChanged(row);
}

boost::shared_ptr<TrEntryBase> TrFieldBase::owningEntry() const
{
    return QelFmt::ownerOf<TrEntryBase>(*this);
}

std::string TrFieldBase::getBlockId() const
{
    const boost::shared_ptr<TrBlockBase> block = GetBlock();
    return block ? block->GetBlockDefName() : std::string();
}

// --- against a new definition, and older generations ------------------------------------------------

// The value is left alone, and so is the name. A field whose definition was lost follows the new
// one in everything.
void TrFieldBase::UpdateDefinition(const TrFieldDefV1 &def)
{
    QELFMT_INFO << "Checking to update field definition " << def.GetId();
    const TrFieldDefV1 linked = GetDefinition();
    if (!linked.IsNull() && def == linked) {
        if (def.tag() != linked.tag()) SetDefinition(def);
        return;
    }
    QELFMT_INFO << "Updating field " << def.GetId();
    const bool known = !linked.IsNull();
    const LumUg::Record before(linked);
    SetDefinition(def);
    refreshNotePrefs();
    RowMemo::rowChanged(rowOf(*this));

    const LumUg::Record after(def);
    const auto same = [&](const auto &slot) { return before.get(slot) == after.get(slot); };
    if (known && same(TrFieldDefV1::kTextSite) && same(TrFieldDefV1::kLocationX) &&
        same(TrFieldDefV1::kLocationY))
        return;
    locate();
}

void TrFieldBase::keepDefinition()
{
    const TrFieldDefV1 def = GetDefinition();
    if (def.IsNull()) return;
    QelFmt::detachFromParents(def);
    attach(LumUg::kChildLink, def);
}

boost::shared_ptr<TrFieldBase> TrFieldBase::checkAndUpgrade()
{
    if (!dynamic_cast<const TrFieldV1 *>(this)) return upgrade();
    const boost::shared_ptr<TrFieldBase> same(new TrFieldV1(GetUdoObject()));
    same->getBaseLocationCmd() = m_baseLocationCmd;
    return same;
}

// Note and border lines change hands and stay what they are on the sheet. A field without a note
// has its value in its attributes only.
boost::shared_ptr<TrFieldBase> TrFieldBase::upgrade()
{
    const boost::shared_ptr<TrFieldV1> fresh(new TrFieldV1);
    fresh->copySlots(*this, FieldSlots::kLayout);
    fresh->SetIsEditable(1);
    fresh->getBaseLocationCmd() = m_baseLocationCmd;
    for (int i = 0; i < GetNumberOfLines(); ++i) {
        const std::string title = QelFmt::indexed("VALUE", i);
        if (const auto line = QelFmt::readAttribute(*GetUdoObject(), title))
            QelFmt::writeAttribute(*fresh->GetUdoObject(), title, *line);
    }
    if (UgDisplayableObject *note = GetNote()) {
        fresh->SetNumberOfLines(static_cast<int>(GetNoteValue().size()));
        RemoveNote();
        fresh->SetNote(note);
    }
    for (UgLine *line : GetBorders()) {
        DeleteOwnedObject(line);
        fresh->AddOwnedObjects({line});
    }
    return fresh;
}

// --- the current generation -----------------------------------------------------------------------

TrFieldV1::TrFieldV1() = default;
TrFieldV1::TrFieldV1(UgUDO *udo) : TrFieldBase(udo) {}
TrFieldV1::~TrFieldV1() = default;

LumUg::UDOClass *TrFieldV1::GetUDOClass() const { return &mUDOClass; }
LumUg::UDO *TrFieldV1::CreateInstance() { return new TrFieldV1; }

int TrFieldV1::GetIsEditable() const { return get(kIsEditable); }
void TrFieldV1::SetIsEditable(int editable) { set(kIsEditable, editable); }

TrFieldDefV1 TrFieldV1::GetDefinition() const
{
    if (IsNull()) return TrFieldDefV1();
    for (const unsigned linked : linkTags(kDefinition.linkType)) {
        if (const auto def = createChild<TrFieldDefV1>(linked)) return *def;
    }
    return TrFieldDefV1();
}

void TrFieldV1::SetDefinition(const TrFieldDefV1 &def)
{
    CreateUDO();
    TrFieldDefV1 old = GetDefinition();
    if (!old.IsNull()) detach(kDefinition.linkType, old);
    const auto kept = firstChild(kKeptDefinition);
    if (kept && kept->tag() != def.tag()) discard(kKeptDefinition.linkType, *kept);
    if (!def.IsNull()) attach(kDefinition.linkType, def);
}

boost::shared_ptr<TrBlockBase> TrFieldV1::GetBlock() const { return QelFmt::blockAbove(*this); }

UgDisplayableObject *TrFieldV1::GetNote() const
{
    return IsNull() ? nullptr : firstNote(ownedTags());
}

void TrFieldV1::SetNote(UgDisplayableObject *note)
{
    const tag_t row = IsNull() ? NULL_TAG : rowOf(*this);
    AddOwnedObjects({note});
    RowMemo::rowChanged(row);
}

void TrFieldV1::RemoveDraftingObjects(bool keepNote)
{
    if (!keepNote) RemoveNote();
    for (UgLine *line : GetBorders()) DeleteOwnedObject(line);
}

// --- the older one --------------------------------------------------------------------------------

ZemFieldV1::ZemFieldV1() = default;
ZemFieldV1::ZemFieldV1(UgUDO *udo) : TrFieldBase(udo) {}
ZemFieldV1::~ZemFieldV1() = default;

LumUg::UDOClass *ZemFieldV1::GetUDOClass() const { return &mUDOClass; }
LumUg::UDO *ZemFieldV1::CreateInstance() { return new ZemFieldV1; }

UgDisplayableObject *ZemFieldV1::GetNote() const
{
    if (IsNull()) return nullptr;
    std::vector<tag_t> objects;
    for (const UgObject *object : GetUdoObject()->getOwnedObjects())
        if (object) objects.push_back(object->getTag());
    return firstNote(objects);
}
