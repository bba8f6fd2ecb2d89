// The host keeps string attributes; other types are refused.
#include "uf_attr.h"

#include "model/calls.h"
#include "model/session.h"
#include "uf.h"

using host::Session;

namespace {

bool covers(int type) { return type == UF_ATTR_string || type == UF_ATTR_any; }

void requireType(int type, int code)
{
    host::require(type >= UF_ATTR_integer && type <= UF_ATTR_bool, code);
}

// Into the caller's buffer of 133 bytes, or into memory that the caller frees.
void handOut(const std::string &value, UF_ATTR_value_p_t out)
{
    out->type = UF_ATTR_string;
    if (out->value.string)
        out->value.string[value.copy(out->value.string, UF_ATTR_MAX_STRING_LEN)] = '\0';
    else
        out->value.string = host::allocateText(value);
}

} // namespace

int UF_ATTR_assign(tag_t object, char *title, UF_ATTR_value_t value)
{
    return host::call("UF_ATTR_assign", [&] {
        host::require(title != nullptr, UF_err_bad_parameter_number_2);
        host::require(value.type == UF_ATTR_string && value.value.string,
                      UF_err_bad_parameter_number_3);
        Session::get().setAttribute(object, title, value.value.string);
    });
}

int UF_ATTR_read_value(tag_t object, char *title, int type, UF_ATTR_value_p_t value)
{
    return host::call("UF_ATTR_read_value", [&] {
        host::require(title != nullptr, UF_err_bad_parameter_number_2);
        requireType(type, UF_err_bad_parameter_number_3);
        host::require(value != nullptr, UF_err_bad_parameter_number_4);
        value->type = 0;
        const std::string *stored = Session::get().attribute(object, title);
        if (stored && covers(type)) handOut(*stored, value);
    });
}

int UF_ATTR_find_attribute(tag_t object, int type, char *title, int *title_type)
{
    return host::call("UF_ATTR_find_attribute", [&] {
        requireType(type, UF_err_bad_parameter_number_2);
        host::require(title != nullptr, UF_err_bad_parameter_number_3);
        host::require(title_type != nullptr, UF_err_bad_parameter_number_4);
        const bool found = Session::get().attribute(object, title) && covers(type);
        *title_type = found ? UF_ATTR_string : 0;
    });
}

int UF_ATTR_delete(tag_t object, int type, char *title)
{
    return host::call("UF_ATTR_delete", [&] {
        requireType(type, UF_err_bad_parameter_number_2);
        host::require(title != nullptr, UF_err_bad_parameter_number_3);
        host::require(covers(type) && Session::get().removeAttribute(object, title),
                      UF_err_attribute_missing);
    });
}

int UF_ATTR_delete_all(tag_t object, int type)
{
    return host::call("UF_ATTR_delete_all", [&] {
        requireType(type, UF_err_bad_parameter_number_2);
        auto &attributes = Session::get().attributesOf(object);
        if (!covers(type)) return;
        while (!attributes.empty()) Session::get().removeAttribute(object, attributes.back().title);
    });
}

int UF_ATTR_count_attributes(tag_t object, int type, int *count)
{
    return host::call("UF_ATTR_count_attributes", [&] {
        requireType(type, UF_err_bad_parameter_number_2);
        host::require(count != nullptr, UF_err_bad_parameter_number_3);
        const auto &attributes = Session::get().attributesOf(object);
        *count = covers(type) ? static_cast<int>(attributes.size()) : 0;
    });
}

int UF_ATTR_cycle(tag_t object, int *index, int type, char title[51], UF_ATTR_value_p_t value)
{
    return host::call("UF_ATTR_cycle", [&] {
        host::require(index && *index >= 0, UF_err_bad_parameter_number_2);
        requireType(type, UF_err_bad_parameter_number_3);
        host::require(title != nullptr, UF_err_bad_parameter_number_4);
        host::require(value != nullptr, UF_err_bad_parameter_number_5);
        const auto &attributes = Session::get().attributesOf(object);
        if (!covers(type) || static_cast<std::size_t>(*index) >= attributes.size()) {
            *index = 0;
            return;
        }
        const host::Attribute &next = attributes[static_cast<std::size_t>((*index)++)];
        title[next.title.copy(title, UF_ATTR_MAX_TITLE_LEN)] = '\0';
        value->value.string = nullptr;
        handOut(next.value, value);
    });
}
