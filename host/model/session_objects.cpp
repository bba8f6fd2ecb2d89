#include "session_inner.h"

#include "calls.h"
#include "uf.h"
#include "uf_draw.h"
#include "uf_object_types.h"

namespace host {

namespace {

struct Kind {
    TypeNumbers numbers;
    const char *name;
};

// In the order of Body's alternatives.
constexpr Kind kKinds[] = {
    {{UF_user_defined_object_type, 0}, "udo"},
    {{UF_point_type, 0}, "point"},
    {{UF_line_type, 0}, "line"},
    {{UF_circle_type, 0}, "arc"},
    {{UF_drafting_entity_type, UF_draft_crosshatch_subtype}, "area"},
    {{UF_drafting_entity_type, UF_draft_note_subtype}, "note"},
    {{UF_drafting_entity_type, UF_draft_id_symbol_subtype}, "symbol"},
    {{UF_pattern_type, 0}, "pattern"},
    {{UF_drawing_type, 0}, "sheet"},
    {{UF_view_type, 0}, "view"},
    {{UF_font_table_type, 0}, "fonts"},
};
static_assert(std::size(kKinds) == std::variant_size_v<Body>);

bool standsInViews(const Object &object)
{
    return !object.as<Udo>() && !object.as<Sheet>() && !object.as<View>() &&
           !object.as<FontTable>();
}

template <class Index, class Key> void dropFrom(Index &index, const Key &key, const Object &object)
{
    const auto found = index.find(key);
    if (found == index.end()) return;
    found->second.erase(object.ordinal);
    if (found->second.empty()) index.erase(found);
}

} // namespace

TypeNumbers typeOf(const Object &object) { return kKinds[object.body.index()].numbers; }

std::string_view kindName(const Object &object) { return kKinds[object.body.index()].name; }

// --- indexes ------------------------------------------------------------------------------------

Session::Inner::Entry *Session::Inner::entry(Tag tag) { return entries.find(tag); }

Object *Session::Inner::find(Tag tag)
{
    Entry *found = entry(tag);
    return found ? found->object.get() : nullptr;
}

void Session::Inner::index(Object &object)
{
    Part &part = *object.part;
    part.objects.set(object.ordinal, &object);
    part.byKind[object.body.index()].set(object.ordinal, &object);
    if (const Udo *udo = object.as<Udo>())
        part.udosByClass[udo->classId].set(object.ordinal, &object);
    if (standsInViews(object)) part.byView[object.view].set(object.ordinal, &object);
    if (!object.name.empty()) part.byName[object.name].set(object.ordinal, &object);
}

void Session::Inner::unindex(Object &object)
{
    Part &part = *object.part;
    part.objects.erase(object.ordinal);
    dropFrom(part.byKind, object.body.index(), object);
    if (const Udo *udo = object.as<Udo>()) dropFrom(part.udosByClass, udo->classId, object);
    if (standsInViews(object)) dropFrom(part.byView, object.view, object);
    if (!object.name.empty()) dropFrom(part.byName, object.name, object);
}

// --- creation and change ------------------------------------------------------------------------

Object &Session::create(Part &part, Body body)
{
    auto made = std::make_unique<Object>();
    Object &object = *made;
    object.tag = newTag();
    object.part = &part;
    object.ordinal = part.nextOrdinal++;
    object.body = std::move(body);
    object.appearance.layer = part.workLayer;
    if (part.currentSheet && standsInViews(object))
        object.view = requireBody<Sheet>(part.currentSheet, UF_err_wrong_class).view;
    m_inner->entries[object.tag].object = std::move(made);
    m_inner->index(object);
    part.modified = true;
    part.noteChange(object);
    m_inner->record("made", object);
    return object;
}

Object &Session::createSheet(Part &part, const std::string &name, const Sheet &info)
{
    host::require(!name.empty() && name.size() <= UF_DRAW_MAX_NAME_LEN,
                  UF_DRAW_err_invalid_parameter);
    sizeOf(info);
    if (const auto same = part.byName.find(name); same != part.byName.end())
        for (const auto &[ordinal, object] : same->second)
            host::require(!object->as<Sheet>(), UF_DRAW_err_name_in_use);
    Object &sheet = create(part, info);
    rename(sheet, name);
    Object &view = create(part, View{sheet.tag});
    rename(view, name + "@0");
    sheet.as<Sheet>()->view = view.tag;
    return sheet;
}

void Session::changing(Object &object, std::string_view what)
{
    object.part->modified = true;
    object.part->noteChange(object);
    m_inner->markOutOfDate(object.tag);
    m_inner->record(what, object);
}

void Session::changing(Part &part, std::string_view what)
{
    part.modified = true;
    if (recordingChanges) changes.push_back(std::string(what) + " part");
}

void Session::Inner::record(std::string_view what, const Object &object)
{
    if (!session.recordingChanges) return;
    std::string line{what};
    line.append(" ").append(kindName(object)).append(" ").append(std::to_string(object.tag));
    if (const Udo *udo = object.as<Udo>())
        line.append(" ").append(session.classRecord(udo->classId).name);
    else if (!object.name.empty())
        line.append(" \"").append(object.name).append("\"");
    session.changes.push_back(std::move(line));
}

void Session::rename(Object &object, const std::string &name)
{
    if (object.name == name) return;
    changing(object, "name");
    if (!object.name.empty()) dropFrom(object.part->byName, object.name, object);
    object.name = name;
    if (!name.empty()) object.part->byName[name].set(object.ordinal, &object);
}

void Session::setView(Object &object, Tag view)
{
    if (object.view == view) return;
    host::require(standsInViews(object), UF_err_wrong_class);
    changing(object, "view");
    dropFrom(object.part->byView, object.view, object);
    object.view = view;
    object.part->byView[view].set(object.ordinal, &object);
}

} // namespace host
