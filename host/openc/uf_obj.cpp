#include "uf_obj.h"

#include "model/calls.h"
#include "model/session.h"
#include "uf.h"

#include <cstring>
#include <iterator>

using host::Object;
using host::Ordered;
using host::Part;
using host::Session;
using host::Status;

// --- deletion -------------------------------------------------------------------------------------

int UF_OBJ_delete_object(tag_t object)
{
    return host::call("UF_OBJ_delete_object", [&] { Session::get().remove(object); });
}

int UF_OBJ_delete_array_of_objects(int num_objects, tag_t objects[], int **statuses)
{
    return host::call("UF_OBJ_delete_array_of_objects", [&] {
        host::require(num_objects >= 0, UF_err_bad_parameter_number_1);
        host::require(num_objects == 0 || objects, UF_err_bad_parameter_number_2);
        if (statuses) *statuses = nullptr;
        std::vector<int> codes(static_cast<std::size_t>(num_objects), 0);
        int firstFailure = 0;
        for (int i = 0; i < num_objects; ++i) {
            try {
                Session::get().remove(objects[i]);
            } catch (const host::Failure &failure) {
                codes[static_cast<std::size_t>(i)] = failure.code;
                if (!firstFailure) firstFailure = failure.code;
            }
        }
        if (!firstFailure) return;
        if (statuses) {
            *statuses = static_cast<int *>(host::allocate(codes.size() * sizeof(int)));
            std::copy(codes.begin(), codes.end(), *statuses);
        }
        throw host::Failure{firstFailure, {}};
    });
}

int UF_OBJ_ask_status(tag_t object)
{
    return host::callForValue("UF_OBJ_ask_status", UF_OBJ_DELETED, [&]() -> int {
        if (const Object *found = Session::get().find(object))
            return static_cast<int>(found->status);
        return Session::get().findPart(object) ? UF_OBJ_ALIVE : UF_OBJ_DELETED;
    });
}

// --- cycling: in the order of creation, without condemned objects -----------------------------------

namespace {

// The first object behind `after` (NULL_TAG: the very first) that passes; null at the end.
template <class Passes> Object *nextIn(const Ordered &objects, const Object *after, Passes passes)
{
    auto place = after ? objects.upper_bound(after->ordinal) : objects.begin();
    while (place != objects.end() &&
           (place->second->status != Status::alive || !passes(*place->second)))
        ++place;
    return place == objects.end() ? nullptr : place->second;
}

const auto kAny = [](const Object &) { return true; };

// The object to go on from; one of another part, or a dead one, is an error.
const Object *startOf(const Part &part, tag_t tag)
{
    if (tag == NULL_TAG) return nullptr;
    const Object &object = Session::get().require(tag);
    host::require(object.part == &part, UF_err_other_part);
    return &object;
}

Object *nextOfType(const Part &part, int type, const Object *after)
{
    Object *nearest = nullptr; // several kinds share the type of drafting objects
    for (const auto &[kind, objects] : part.byKind) {
        if (host::typeOf(*objects.begin()->second).type != type) continue;
        Object *next = nextIn(objects, after, kAny);
        if (next && (!nearest || next->ordinal < nearest->ordinal)) nearest = next;
    }
    return nearest;
}

template <class Passes>
Object *nextOfName(const Part &part, const char *name, const Object *after, Passes passes)
{
    const auto found = part.byName.find(std::string_view(name));
    return found == part.byName.end() ? nullptr : nextIn(found->second, after, passes);
}

} // namespace

int UF_OBJ_cycle_objs_in_part(tag_t part, int type, tag_t *object)
{
    return host::call("UF_OBJ_cycle_objs_in_part", [&] {
        host::require(object != nullptr, UF_err_bad_parameter_number_3);
        const Part &inside = Session::get().requirePart(part);
        const Object *next = nextOfType(inside, type, startOf(inside, *object));
        *object = next ? next->tag : NULL_TAG;
    });
}

tag_t UF_OBJ_cycle_all(tag_t part, tag_t object)
{
    return host::callForValue("UF_OBJ_cycle_all", NULL_TAG, [&] {
        const Part &inside = Session::get().requirePart(part);
        const Object *next = nextIn(inside.objects, startOf(inside, object), kAny);
        return next ? next->tag : NULL_TAG;
    });
}

int UF_OBJ_cycle_by_name(const char *name, tag_t *object)
{
    return host::call("UF_OBJ_cycle_by_name", [&] {
        host::require(name != nullptr, UF_err_bad_parameter_number_1);
        host::require(object != nullptr, UF_err_bad_parameter_number_2);
        const Part &work = Session::get().workPart();
        const Object *next = nextOfName(work, name, startOf(work, *object), kAny);
        *object = next ? next->tag : NULL_TAG;
    });
}

// There are no assemblies here and so no occurrences.
int UF_OBJ_cycle_by_name_and_type(tag_t part, const char *name, int type, logical, tag_t *object)
{
    return host::call("UF_OBJ_cycle_by_name_and_type", [&] {
        host::require(name != nullptr, UF_err_bad_parameter_number_2);
        host::require(object != nullptr, UF_err_bad_parameter_number_5);
        const Part &inside = Session::get().requirePart(part);
        const Object *next =
            nextOfName(inside, name, startOf(inside, *object),
                       [&](const Object &named) { return host::typeOf(named).type == type; });
        *object = next ? next->tag : NULL_TAG;
    });
}

// --- type and name ----------------------------------------------------------------------------------

int UF_OBJ_ask_type_and_subtype(tag_t object, int *type, int *subtype)
{
    return host::call("UF_OBJ_ask_type_and_subtype", [&] {
        host::require(type != nullptr, UF_err_bad_parameter_number_2);
        host::require(subtype != nullptr, UF_err_bad_parameter_number_3);
        const host::TypeNumbers numbers = Session::get().findPart(object)
                                              ? host::TypeNumbers{UF_part_type, 0}
                                              : host::typeOf(Session::get().require(object));
        *type = numbers.type;
        *subtype = numbers.subtype;
    });
}

int UF_OBJ_ask_name(tag_t object, char name[UF_OBJ_NAME_LEN + 1])
{
    return host::call("UF_OBJ_ask_name", [&] {
        host::require(name != nullptr, UF_err_bad_parameter_number_2);
        name[0] = '\0';
        const Object &named = Session::get().require(object);
        host::require(!named.name.empty(), UF_OBJ_err_no_name);
        name[named.name.copy(name, UF_OBJ_NAME_LEN)] = '\0';
    });
}

int UF_OBJ_set_name(tag_t object, const char *name)
{
    return host::call("UF_OBJ_set_name", [&] {
        host::require(name && *name && std::strlen(name) <= UF_OBJ_NAME_LEN,
                      UF_err_bad_parameter_number_2);
        Session::get().rename(Session::get().require(object), name);
    });
}

int UF_OBJ_delete_name(tag_t object)
{
    return host::call("UF_OBJ_delete_name", [&] {
        Object &named = Session::get().require(object);
        host::require(!named.name.empty(), UF_OBJ_err_no_name);
        Session::get().rename(named, "");
    });
}

int UF_OBJ_ask_owning_part(tag_t object, tag_t *part)
{
    return host::call("UF_OBJ_ask_owning_part", [&] {
        host::require(part != nullptr, UF_err_bad_parameter_number_2);
        *part = Session::get().require(object).part->tag;
    });
}

// --- display ----------------------------------------------------------------------------------------

namespace {

bool isDisplayable(const Object &object)
{
    return !object.as<host::Sheet>() && !object.as<host::View>() && !object.as<host::FontTable>();
}

Object &displayable(tag_t tag)
{
    Object &object = Session::get().require(tag);
    host::require(isDisplayable(object), UF_err_wrong_class);
    return object;
}

} // namespace

int UF_OBJ_set_layer(tag_t object, int layer)
{
    return host::call("UF_OBJ_set_layer", [&] {
        host::require(layer >= 1 && layer <= 256, UF_err_layer_range);
        Object &drawn = displayable(object);
        if (drawn.appearance.layer == layer) return;
        Session::get().changing(drawn, "layer");
        drawn.appearance.layer = layer;
    });
}

int UF_OBJ_set_color(tag_t object, int color)
{
    return host::call("UF_OBJ_set_color", [&] {
        Object &drawn = displayable(object);
        if (drawn.appearance.color == color) return;
        Session::get().changing(drawn, "color");
        drawn.appearance.color = color;
    });
}

// Font 0 is no line font of the platform, but formats store it; it is kept and drawn solid.
int UF_OBJ_set_font(tag_t object, int font)
{
    return host::call("UF_OBJ_set_font", [&] {
        Object &drawn = displayable(object);
        if (drawn.appearance.lineFont == font) return;
        Session::get().changing(drawn, "line font");
        drawn.appearance.lineFont = font;
    });
}

int UF_OBJ_set_line_width(tag_t object, int width)
{
    return host::call("UF_OBJ_set_line_width", [&] {
        Object &drawn = displayable(object);
        if (drawn.appearance.lineWidth == width) return;
        Session::get().changing(drawn, "line width");
        drawn.appearance.lineWidth = width;
    });
}

int UF_OBJ_set_blank_status(tag_t object, int blank_status)
{
    return host::call("UF_OBJ_set_blank_status", [&] {
        host::require(blank_status == UF_OBJ_BLANKED || blank_status == UF_OBJ_NOT_BLANKED,
                      UF_err_bad_parameter_number_2);
        Object &drawn = displayable(object);
        const bool blanked = blank_status == UF_OBJ_BLANKED;
        if (drawn.appearance.blanked == blanked) return;
        Session::get().changing(drawn, "blank status");
        drawn.appearance.blanked = blanked;
    });
}

int UF_OBJ_ask_display_properties(tag_t object, UF_OBJ_disp_props_p_t properties)
{
    return host::call("UF_OBJ_ask_display_properties", [&] {
        host::require(properties != nullptr, UF_err_bad_parameter_number_2);
        const host::Appearance &look = displayable(object).appearance;
        *properties = {look.layer,
                       look.color,
                       look.blanked ? UF_OBJ_BLANKED : UF_OBJ_NOT_BLANKED,
                       look.lineWidth,
                       look.lineFont,
                       static_cast<logical>(Session::get().highlighted.contains(object))};
    });
}

int UF_OBJ_is_displayable(tag_t object, logical *is_displayable)
{
    return host::call("UF_OBJ_is_displayable", [&] {
        host::require(is_displayable != nullptr, UF_err_bad_parameter_number_2);
        *is_displayable = isDisplayable(Session::get().require(object));
    });
}
