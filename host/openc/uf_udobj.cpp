// Classes and objects. The data arrays stand in uf_udobj_data.cpp, links in uf_udobj_links.cpp.
#include "uf_udobj.h"

#include "model/calls.h"
#include "model/session.h"
#include "uf.h"

using host::Session;

// --- classes ----------------------------------------------------------------------------------------

int UF_UDOBJ_create_class(const char *class_name, const char *friendly_name,
                          UF_UDOBJ_class_t *class_id)
{
    return host::call("UF_UDOBJ_create_class", [&] {
        host::require(class_name && *class_name, UF_err_bad_parameter_number_1);
        host::require(friendly_name != nullptr, UF_err_bad_parameter_number_2);
        host::require(class_id != nullptr, UF_err_bad_parameter_number_3);
        *class_id = Session::get().createClass(class_name, friendly_name);
    });
}

int UF_UDOBJ_ask_class_data(UF_UDOBJ_class_t class_id, char **class_name, char **friendly_name)
{
    return host::call("UF_UDOBJ_ask_class_data", [&] {
        host::require(class_name != nullptr, UF_err_bad_parameter_number_2);
        host::require(friendly_name != nullptr, UF_err_bad_parameter_number_3);
        const host::UdoClassRecord &record = Session::get().classRecord(class_id);
        *class_name = host::allocateText(record.name);
        *friendly_name = host::allocateText(record.friendlyName);
    });
}

int UF_UDOBJ_ask_class_id_of_name(const char *class_name, UF_UDOBJ_class_t *class_id)
{
    return host::call("UF_UDOBJ_ask_class_id_of_name", [&] {
        host::require(class_name != nullptr, UF_err_bad_parameter_number_1);
        host::require(class_id != nullptr, UF_err_bad_parameter_number_2);
        *class_id = 0;
        const host::UdoClassRecord *record = Session::get().findClass(class_name);
        host::require(record && record->registered, UF_err_unknown_class_id);
        host::require(record->queryAllowed, UF_err_class_query_refused);
        *class_id = record->id;
    });
}

int UF_UDOBJ_set_query_class_id(UF_UDOBJ_class_t class_id, UF_UDOBJ_query_class_id_t value)
{
    return host::call("UF_UDOBJ_set_query_class_id", [&] {
        host::require(value == UF_UDOBJ_DONT_ALLOW_QUERY_CLASS_ID ||
                          value == UF_UDOBJ_ALLOW_QUERY_CLASS_ID,
                      UF_err_bad_parameter_number_2);
        Session::get().classRecord(class_id).queryAllowed = value == UF_UDOBJ_ALLOW_QUERY_CLASS_ID;
    });
}

int UF_UDOBJ_register_delete_cb(UF_UDOBJ_class_t class_id, UF_UDOBJ_delete_f_t callback)
{
    return host::call("UF_UDOBJ_register_delete_cb",
                      [&] { Session::get().classRecord(class_id).onDelete = callback; });
}

int UF_UDOBJ_register_update_cb(UF_UDOBJ_class_t class_id, UF_UDOBJ_update_f_t callback)
{
    return host::call("UF_UDOBJ_register_update_cb",
                      [&] { Session::get().classRecord(class_id).onUpdate = callback; });
}

int UF_UDOBJ_register_info_obj_cb(UF_UDOBJ_class_t class_id, UF_UDOBJ_info_obj_f_t callback)
{
    return host::call("UF_UDOBJ_register_info_obj_cb",
                      [&] { Session::get().classRecord(class_id).onInfo = callback; });
}

int UF_UDOBJ_register_edit_cb(UF_UDOBJ_class_t class_id, UF_UDOBJ_edit_f_t callback)
{
    return host::call("UF_UDOBJ_register_edit_cb",
                      [&] { Session::get().classRecord(class_id).onEdit = callback; });
}

int UF_UDOBJ_set_owned_object_selection(UF_UDOBJ_class_t class_id,
                                        UF_UDOBJ_owned_object_selection_t value)
{
    return host::call("UF_UDOBJ_set_owned_object_selection", [&] {
        host::require(value == UF_UDOBJ_DONT_ALLOW_SELECTION || value == UF_UDOBJ_ALLOW_SELECTION,
                      UF_err_bad_parameter_number_2);
        Session::get().classRecord(class_id).selection = value;
    });
}

// --- objects ----------------------------------------------------------------------------------------

int UF_UDOBJ_create_udo(UF_UDOBJ_class_t class_id, tag_t *udo)
{
    return host::call("UF_UDOBJ_create_udo", [&] {
        host::require(udo != nullptr, UF_err_bad_parameter_number_2);
        Session &session = Session::get();
        host::require(session.classRecord(class_id).registered, UF_err_unknown_class_id);
        host::Udo made;
        made.classId = class_id;
        *udo = session.create(session.workPart(), std::move(made)).tag;
    });
}

int UF_UDOBJ_ask_udo_class_name(tag_t udo, char **class_name)
{
    return host::call("UF_UDOBJ_ask_udo_class_name", [&] {
        host::require(class_name != nullptr, UF_err_bad_parameter_number_2);
        Session &session = Session::get();
        const auto &data = session.requireBody<host::Udo>(udo, UF_err_wrong_class);
        *class_name = host::allocateText(session.classRecord(data.classId).name);
    });
}

int UF_UDOBJ_cycle_udos_by_class(tag_t part, UF_UDOBJ_class_t class_id, tag_t *udo)
{
    return host::call("UF_UDOBJ_cycle_udos_by_class", [&] {
        host::require(udo != nullptr, UF_err_bad_parameter_number_3);
        Session &session = Session::get();
        const host::Part &inside = session.requirePart(part);
        session.classRecord(class_id);
        std::uint64_t after = 0; // ordinals start at 1
        if (*udo != NULL_TAG) {
            const host::Object &last = session.require(*udo);
            host::require(last.part == &inside, UF_err_other_part);
            after = last.ordinal;
        }
        *udo = NULL_TAG;
        const auto ofClass = inside.udosByClass.find(class_id);
        if (ofClass == inside.udosByClass.end()) return;
        auto next = ofClass->second.upper_bound(after);
        while (next != ofClass->second.end() && next->second->status != host::Status::alive) ++next;
        if (next != ofClass->second.end()) *udo = next->second->tag;
    });
}
