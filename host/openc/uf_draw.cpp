#include "uf_draw.h"

#include "openc/objects_of_kind.h"
#include "openc/raw_enum.h"

#include "model/calls.h"
#include "model/session.h"

#include "uf.h"
#include "uf_part.h"

#include <cmath>
#include <cstring>

using host::Object;
using host::Part;
using host::Session;
using host::Sheet;

namespace {

void requireValid(bool condition) { host::require(condition, UF_DRAW_err_invalid_parameter); }

// NULL_TAG is the current sheet.
Object &sheetOrCurrent(tag_t tag)
{
    if (tag == NULL_TAG) tag = Session::get().workPart().currentSheet;
    host::require(tag != NULL_TAG, UF_DRAW_err_null_object);
    Object &object = Session::get().require(tag);
    requireValid(object.as<Sheet>());
    return object;
}

Object &sheetObject(tag_t tag)
{
    host::require(tag != NULL_TAG, UF_DRAW_err_null_object);
    return sheetOrCurrent(tag);
}

void check(const Sheet &sheet)
{
    requireValid(sheet.scale > 0.0 && std::isfinite(sheet.scale));
    requireValid(sheet.units == UF_PART_METRIC || sheet.units == UF_PART_ENGLISH);
    requireValid(sheet.projection == UF_DRAW_THIRD_ANGLE_PROJECTION ||
                 sheet.projection == UF_DRAW_FIRST_ANGLE_PROJECTION);
    const host::SheetSize size = sizeOf(sheet);
    requireValid(std::isfinite(size.width) && size.width > 0.0);
    requireValid(std::isfinite(size.height) && size.height > 0.0);
}

// A sheet with the given values; `base` lends what they do not say.
Sheet sheetFrom(const UF_DRAW_info_t &info, Sheet base)
{
    base.sizeState = host::rawValue(info.size_state);
    base.sizeCode = 0;
    base.customHeight = base.customLength = 0.0;
    if (base.sizeState == UF_DRAW_METRIC_SIZE) {
        base.sizeCode = host::rawValue(info.size.metric_size_code);
    } else if (base.sizeState == UF_DRAW_ENGLISH_SIZE) {
        base.sizeCode = host::rawValue(info.size.english_size_code);
    } else {
        requireValid(base.sizeState == UF_DRAW_CUSTOM_SIZE);
        base.customHeight = info.size.custom_size[0];
        base.customLength = info.size.custom_size[1];
    }
    base.scale = info.drawing_scale;
    base.units = info.units;
    base.projection = host::rawValue(info.projection_angle);
    check(base);
    return base;
}

UF_DRAW_info_t infoFrom(const Sheet &sheet)
{
    UF_DRAW_info_t info;
    std::memset(&info, 0, sizeof info);
    info.size_state = static_cast<UF_DRAW_size_state_t>(sheet.sizeState);
    if (sheet.sizeState == UF_DRAW_METRIC_SIZE) {
        info.size.metric_size_code = static_cast<UF_DRAW_metric_size_t>(sheet.sizeCode);
    } else if (sheet.sizeState == UF_DRAW_ENGLISH_SIZE) {
        info.size.english_size_code = static_cast<UF_DRAW_english_size_t>(sheet.sizeCode);
    } else {
        info.size.custom_size[0] = sheet.customHeight;
        info.size.custom_size[1] = sheet.customLength;
    }
    info.drawing_scale = sheet.scale;
    info.units = sheet.units;
    info.projection_angle = static_cast<UF_DRAW_projection_angle_t>(sheet.projection);
    return info;
}

std::vector<tag_t> sheetsOf(const Part &part)
{
    std::vector<tag_t> sheets;
    for (const auto &[ordinal, object] : host::objectsOfKind<Sheet>(part)) {
        if (object->status == host::Status::alive) sheets.push_back(object->tag);
    }
    return sheets;
}

std::string checkedNewName(const Part &part, const char *name)
{
    requireValid(name && *name && std::strlen(name) <= UF_DRAW_MAX_NAME_LEN);
    for (const auto &[ordinal, object] : host::objectsOfKind<Sheet>(part))
        host::require(object->name != name, UF_DRAW_err_name_in_use);
    return name;
}

bool sameInfo(const Sheet &a, const Sheet &b)
{
    return a.sizeState == b.sizeState && a.sizeCode == b.sizeCode &&
           a.customHeight == b.customHeight && a.customLength == b.customLength &&
           a.scale == b.scale && a.units == b.units && a.projection == b.projection;
}

} // namespace

extern "C" int UF_DRAW_ask_current_drawing(tag_t *drawing)
{
    return host::call("UF_DRAW_ask_current_drawing", [&] {
        host::require(drawing, UF_err_bad_parameter_number_1);
        *drawing = NULL_TAG;
        *drawing = Session::get().workPart().currentSheet;
    });
}

extern "C" int UF_DRAW_ask_drawings(int *num_drawings, tag_p_t *drawings)
{
    return host::call("UF_DRAW_ask_drawings", [&] {
        host::require(num_drawings, UF_err_bad_parameter_number_1);
        host::require(drawings, UF_err_bad_parameter_number_2);
        *num_drawings = 0;
        *drawings = nullptr;
        const std::vector<tag_t> sheets = sheetsOf(Session::get().workPart());
        if (sheets.empty()) return;
        const std::size_t bytes = sheets.size() * sizeof(tag_t);
        *drawings = static_cast<tag_t *>(std::memcpy(host::allocate(bytes), sheets.data(), bytes));
        *num_drawings = static_cast<int>(sheets.size());
    });
}

extern "C" int UF_DRAW_ask_num_drawings(int *num_drawings)
{
    return host::call("UF_DRAW_ask_num_drawings", [&] {
        host::require(num_drawings, UF_err_bad_parameter_number_1);
        *num_drawings = static_cast<int>(sheetsOf(Session::get().workPart()).size());
    });
}

extern "C" int UF_DRAW_ask_view_of_drawing(const tag_t drawing, tag_t *view)
{
    return host::call("UF_DRAW_ask_view_of_drawing", [&] {
        host::require(view, UF_err_bad_parameter_number_2);
        *view = NULL_TAG;
        *view = sheetObject(drawing).as<Sheet>()->view;
    });
}

extern "C" int UF_DRAW_ask_drawing_of_view(const tag_t view, tag_t *drawing)
{
    return host::call("UF_DRAW_ask_drawing_of_view", [&] {
        host::require(drawing, UF_err_bad_parameter_number_2);
        *drawing = NULL_TAG;
        host::require(view != NULL_TAG, UF_DRAW_err_null_object);
        *drawing =
            Session::get().requireBody<host::View>(view, UF_DRAW_err_invalid_parameter).sheet;
    });
}

extern "C" int UF_DRAW_ask_drawing_info(tag_t drawing, UF_DRAW_info_t *info)
{
    return host::call("UF_DRAW_ask_drawing_info", [&] {
        host::require(info, UF_err_bad_parameter_number_2);
        *info = infoFrom(*sheetOrCurrent(drawing).as<Sheet>());
    });
}

extern "C" int UF_DRAW_set_drawing_info(const tag_t drawing, UF_DRAW_info_p_t info)
{
    return host::call("UF_DRAW_set_drawing_info", [&] {
        host::require(info, UF_err_bad_parameter_number_2);
        Object &object = sheetOrCurrent(drawing);
        const bool current = object.part->currentSheet == object.tag;
        host::require(current || !Session::get().strictDrawingInfo, UF_DRAW_err_not_current);
        Sheet &sheet = *object.as<Sheet>();
        const Sheet edited = sheetFrom(*info, sheet);
        if (sameInfo(edited, sheet)) return;
        Session::get().changing(object, "drawing information");
        sheet = edited;
    });
}

// The new sheet gets a view of its own. It is not current before it is opened.
extern "C" int UF_DRAW_create_drawing(const char *name, UF_DRAW_info_p_t info, tag_t *drawing)
{
    return host::call("UF_DRAW_create_drawing", [&] {
        host::require(drawing, UF_err_bad_parameter_number_3);
        *drawing = NULL_TAG;
        host::require(info, UF_err_bad_parameter_number_2);
        Part &part = Session::get().workPart();
        const std::string checked = checkedNewName(part, name);
        *drawing = Session::get().createSheet(part, checked, sheetFrom(*info, Sheet{})).tag;
    });
}

extern "C" int UF_DRAW_open_drawing(tag_t drawing)
{
    return host::call("UF_DRAW_open_drawing", [&] {
        Part &part = *sheetObject(drawing).part;
        if (part.currentSheet == drawing) return;
        Session::get().changing(part, "current sheet");
        part.currentSheet = drawing;
    });
}

extern "C" int UF_DRAW_delete_drawing(tag_t drawing)
{
    return host::call("UF_DRAW_delete_drawing",
                      [&] { Session::get().removeSheet(sheetObject(drawing).tag); });
}

// Member views show the model; sheets here carry annotation alone.
extern "C" int UF_DRAW_ask_views(const tag_t drawing, int *num_views, tag_p_t *views)
{
    return host::call("UF_DRAW_ask_views", [&] {
        host::require(num_views, UF_err_bad_parameter_number_2);
        host::require(views, UF_err_bad_parameter_number_3);
        sheetObject(drawing);
        *num_views = 0;
        *views = nullptr;
    });
}
