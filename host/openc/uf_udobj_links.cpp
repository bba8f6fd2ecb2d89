// Links and owned objects of user defined objects.
#include "uf_udobj.h"

#include "model/calls.h"
#include "model/session.h"
#include "uf.h"

#include <algorithm>

using host::Link;
using host::Object;
using host::Session;
using host::Udo;

namespace {

Object &requireUdo(tag_t tag)
{
    Session::get().requireBody<Udo>(tag, UF_err_wrong_class);
    return Session::get().require(tag);
}

template <class T> T *copyOut(const std::vector<T> &values)
{
    if (values.empty()) return nullptr;
    T *const copy = static_cast<T *>(host::allocate(values.size() * sizeof(T)));
    std::copy(values.begin(), values.end(), copy);
    return copy;
}

auto sameLink(const UF_UDOBJ_link_t &wanted)
{
    return [&wanted](const Link &link) {
        return link.type == wanted.link_type && link.target == wanted.assoc_ug_tag;
    };
}

} // namespace

int UF_UDOBJ_add_links(tag_t udo, unsigned int num_links, UF_UDOBJ_link_t link_defs[])
{
    return host::call("UF_UDOBJ_add_links", [&] {
        Object &linking = requireUdo(udo);
        host::require(num_links == 0 || link_defs, UF_err_bad_parameter_number_3);
        std::vector<Link> links;
        links.reserve(num_links);
        for (unsigned i = 0; i < num_links; ++i)
            links.push_back({link_defs[i].link_type, link_defs[i].assoc_ug_tag});
        Session::get().addLinks(linking, links);
    });
}

int UF_UDOBJ_edit_link(tag_t udo, UF_UDOBJ_link_p_t old_link, tag_t new_tag)
{
    return host::call("UF_UDOBJ_edit_link", [&] {
        Object &linking = requireUdo(udo);
        host::require(old_link != nullptr, UF_err_bad_parameter_number_2);
        std::vector<Link> links = linking.as<Udo>()->links;
        bool found = false;
        for (Link &link : links) {
            if (!sameLink(*old_link)(link)) continue;
            link.target = new_tag;
            found = true;
        }
        host::require(found, UF_err_no_such_link);
        Session::get().rewriteLinks(linking, 0, links);
    });
}

int UF_UDOBJ_edit_links(tag_t udo, const UF_UDOBJ_link_t *link_defs, unsigned int start,
                        unsigned int count)
{
    return host::call("UF_UDOBJ_edit_links", [&] {
        Object &linking = requireUdo(udo);
        host::require(count == 0 || link_defs, UF_err_bad_parameter_number_2);
        const std::size_t stored = linking.as<Udo>()->links.size();
        host::require(start <= stored && count <= stored - start, UF_err_count_mismatch);
        std::vector<Link> links;
        links.reserve(count);
        for (unsigned i = start; i < start + count; ++i)
            links.push_back({link_defs[i].link_type, link_defs[i].assoc_ug_tag});
        Session::get().rewriteLinks(linking, start, links);
    });
}

int UF_UDOBJ_delete_link(tag_t udo, UF_UDOBJ_link_p_t link_to_delete)
{
    return host::call("UF_UDOBJ_delete_link", [&] {
        Object &linking = requireUdo(udo);
        host::require(link_to_delete != nullptr, UF_err_bad_parameter_number_2);
        const auto &links = linking.as<Udo>()->links;
        const auto found = std::find_if(links.begin(), links.end(), sameLink(*link_to_delete));
        host::require(found != links.end(), UF_err_no_such_link);
        Session::get().removeLinkAt(linking, static_cast<std::size_t>(found - links.begin()));
    });
}

int UF_UDOBJ_ask_udo_links_to_obj(tag_t object, int *num_links, UF_UDOBJ_link_t **udo_links)
{
    return host::call("UF_UDOBJ_ask_udo_links_to_obj", [&] {
        host::require(num_links != nullptr, UF_err_bad_parameter_number_2);
        host::require(udo_links != nullptr, UF_err_bad_parameter_number_3);
        Session::get().require(object);
        std::vector<UF_UDOBJ_link_t> answer;
        for (const Session::Inbound &inbound : Session::get().linksTo(object))
            answer.push_back({inbound.link.type, inbound.udo, inbound.link.status});
        *num_links = static_cast<int>(answer.size());
        *udo_links = copyOut(answer);
    });
}

int UF_UDOBJ_is_obj_linked_to_udo(tag_t object, logical *is_linked)
{
    return host::call("UF_UDOBJ_is_obj_linked_to_udo", [&] {
        host::require(is_linked != nullptr, UF_err_bad_parameter_number_2);
        Session::get().require(object);
        *is_linked = !Session::get().linksTo(object).empty();
    });
}

// --- owned objects ----------------------------------------------------------------------------------

int UF_UDOBJ_add_owning_links(tag_t udo, unsigned int n, tag_t ug_objs[])
{
    return host::call("UF_UDOBJ_add_owning_links", [&] {
        Object &owner = requireUdo(udo);
        host::require(n == 0 || ug_objs, UF_err_bad_parameter_number_3);
        Session::get().own(owner, n ? std::vector<host::Tag>(ug_objs, ug_objs + n)
                                    : std::vector<host::Tag>());
    });
}

int UF_UDOBJ_delete_owning_link(tag_t udo, tag_t object)
{
    return host::call("UF_UDOBJ_delete_owning_link",
                      [&] { Session::get().release(requireUdo(udo), object); });
}

int UF_UDOBJ_ask_owned_objects(tag_t udo, unsigned int *n, tag_t **objects)
{
    return host::call("UF_UDOBJ_ask_owned_objects", [&] {
        host::require(n != nullptr, UF_err_bad_parameter_number_2);
        host::require(objects != nullptr, UF_err_bad_parameter_number_3);
        const std::vector<host::Tag> &owned = requireUdo(udo).as<Udo>()->owned;
        *n = static_cast<unsigned>(owned.size());
        *objects = copyOut(owned);
    });
}

int UF_UDOBJ_ask_owning_udo(tag_t object, tag_t *udo)
{
    return host::call("UF_UDOBJ_ask_owning_udo", [&] {
        host::require(udo != nullptr, UF_err_bad_parameter_number_2);
        *udo = Session::get().require(object).owner;
    });
}

int UF_UDOBJ_is_owned(tag_t object, logical *is_owned)
{
    return host::call("UF_UDOBJ_is_owned", [&] {
        host::require(is_owned != nullptr, UF_err_bad_parameter_number_2);
        *is_owned = Session::get().require(object).owner != NULL_TAG;
    });
}
