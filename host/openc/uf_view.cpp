#include "uf_view.h"

#include "openc/objects_of_kind.h"
#include "openc/raw_enum.h"

#include "model/calls.h"
#include "model/session.h"

#include "uf.h"

#include <cstring>

using host::Object;
using host::Ordered;
using host::Part;
using host::Session;

namespace {

constexpr tag_t kModel = 0; // the key of objects that depend on no view

// What stands in one view, or in the model when there is none.
struct Stage {
    const Part &part;
    tag_t view;
};

// NULL_TAG is the work view: the current sheet's, or the model.
Stage stageOf(tag_t view)
{
    if (view == NULL_TAG) {
        const Part &part = Session::get().workPart();
        if (part.currentSheet == NULL_TAG) return {part, kModel};
        return stageOf(Session::get().require(part.currentSheet).as<host::Sheet>()->view);
    }
    Session::get().requireBody<host::View>(view, UF_err_wrong_class);
    return {*Session::get().require(view).part, view};
}

bool counts(const Object &object, bool visibleOnly)
{
    if (object.status != host::Status::alive) return false;
    return !visibleOnly || !object.appearance.blanked;
}

// The first object of a view that was made after the given place; null at the end.
const Object *nextIn(const Part &part, tag_t view, std::uint64_t after, bool visibleOnly)
{
    const auto members = part.byView.find(view);
    if (members == part.byView.end()) return nullptr;
    for (auto at = members->second.upper_bound(after); at != members->second.end(); ++at) {
        if (counts(*at->second, visibleOnly)) return at->second;
    }
    return nullptr;
}

const Object *earlier(const Object *a, const Object *b)
{
    if (!a || !b) return a ? a : b;
    return a->ordinal < b->ordinal ? a : b;
}

// Neither layers nor the sheet's edges hide an object from cycling; blanking does.
const Object *next(const Stage &stage, int type, std::uint64_t after)
{
    switch (type) {
    case UF_VIEW_DEPENDENT_OBJECTS:
        if (stage.view == kModel) return nullptr;
        return nextIn(stage.part, stage.view, after, false);
    case UF_VIEW_VISIBLE_OBJECTS:
        if (stage.view == kModel) return nextIn(stage.part, kModel, after, true);
        return earlier(nextIn(stage.part, stage.view, after, true),
                       nextIn(stage.part, kModel, after, true));
    case UF_VIEW_ERASED_OBJECTS:
    case UF_VIEW_MODIFIED_OBJECTS: // the host neither erases nor modifies objects in a view
        return nullptr;
    }
    throw host::Failure{UF_err_bad_parameter_number_2, {}};
}

// Objects that a view can hold.
Object &requireInView(tag_t tag)
{
    Object &object = Session::get().require(tag);
    const bool displayed = !object.as<host::Udo>() && !object.as<host::Sheet>() &&
                           !object.as<host::View>() && !object.as<host::FontTable>();
    host::require(displayed, UF_err_wrong_class);
    return object;
}

} // namespace

extern "C" int UF_VIEW_cycle_objects(tag_t view, UF_VIEW_cycle_objects_t type, tag_t *object)
{
    return host::call("UF_VIEW_cycle_objects", [&] {
        host::require(object, UF_err_bad_parameter_number_3);
        const Stage stage = stageOf(view);
        std::uint64_t after = 0;
        if (*object != NULL_TAG) after = Session::get().require(*object).ordinal;
        const Object *found = next(stage, host::rawValue(type), after);
        *object = found ? found->tag : NULL_TAG;
    });
}

// Also moves an object that depends on another view.
extern "C" int UF_VIEW_convert_to_view(tag_t view, tag_t object_tag)
{
    return host::call("UF_VIEW_convert_to_view", [&] {
        const Stage stage = stageOf(view);
        host::require(stage.view != kModel, UF_err_bad_parameter_number_1);
        Object &object = requireInView(object_tag);
        host::require(object.part == &stage.part, UF_err_other_part);
        if (object.view != stage.view) Session::get().setView(object, stage.view);
    });
}

extern "C" int UF_VIEW_convert_to_model(tag_t view, tag_t object_tag)
{
    return host::call("UF_VIEW_convert_to_model", [&] {
        const Stage stage = stageOf(view);
        Object &object = requireInView(object_tag);
        if (object.view == kModel) return;
        host::require(object.view == stage.view, UF_err_bad_parameter_number_1);
        Session::get().setView(object, kModel);
    });
}

extern "C" int UF_VIEW_ask_tag_of_view_name(const char *view_name, tag_t *view)
{
    return host::call("UF_VIEW_ask_tag_of_view_name", [&] {
        host::require(view_name, UF_err_bad_parameter_number_1);
        host::require(view, UF_err_bad_parameter_number_2);
        *view = NULL_TAG;
        for (const auto &[ordinal, object] :
             host::objectsOfKind<host::View>(Session::get().workPart())) {
            if (object->name != view_name) continue;
            *view = object->tag;
            return;
        }
        throw host::Failure{UF_err_bad_parameter_number_1, view_name};
    });
}

extern "C" int UF_VIEW_ask_work_view(tag_t *view)
{
    return host::call("UF_VIEW_ask_work_view", [&] {
        host::require(view, UF_err_bad_parameter_number_1);
        *view = NULL_TAG;
        *view = stageOf(NULL_TAG).view;
    });
}

extern "C" int uc6409(tag_t object_tag, int *status, char *view_name)
{
    return host::call("uc6409", [&] {
        host::require(status, UF_err_bad_parameter_number_2);
        const Object &object = requireInView(object_tag);
        *status = object.view == kModel ? 0 : 1;
        if (!view_name) return;
        const Object *view = Session::get().find(object.view);
        std::strcpy(view_name, view ? view->name.c_str() : "");
    });
}
