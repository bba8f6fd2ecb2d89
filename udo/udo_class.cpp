#include "udo/udo_class.h"

#include "uf.h"
#include "ug_exception.hxx"
#include "ug_session.hxx"

#include <map>
#include <memory>
#include <unordered_map>

namespace LumUg {

namespace {

// The platform's texts are given back with UF_free.
struct Freed {
    void operator()(char *text) const { UF_free(text); }
};
using PlatformText = std::unique_ptr<char, Freed>;

using Directory = std::map<std::string, UDOClass *>;

// Made by the first registration, whichever library's static objects come first.
Directory &directory()
{
    static Directory by_name;
    return by_name;
}

std::string classNameOf(unsigned class_id)
{
    char *class_name = nullptr, *friendly_name = nullptr;
    UgException::throwOnFailure(UF_UDOBJ_ask_class_data(class_id, &class_name, &friendly_name));
    const PlatformText name(class_name), friendly(friendly_name);
    return name.get();
}

} // namespace

UDOClass::UDOClass(std::string class_name, std::string friendly_name, Factory factory)
    : m_factory(factory), m_class_id(0)
{
    // This runs while the library is being loaded, before anyone has opened a session.
    if (!UgSession::isInitialized()) UgSession::initialize();
    if (const UDOClass *registered = GetClass(class_name)) {
        m_class_id = registered->m_class_id;
        return;
    }
    UgException::throwOnFailure(
        UF_UDOBJ_create_class(class_name.c_str(), friendly_name.c_str(), &m_class_id));
    UgException::throwOnFailure(UF_UDOBJ_register_delete_cb(m_class_id, UDO::DeleteMethod));
    UgException::throwOnFailure(UF_UDOBJ_register_info_obj_cb(m_class_id, UDO::InfoObjMethod));
    UgException::throwOnFailure(UF_UDOBJ_register_update_cb(m_class_id, UDO::UpdateMethod));
    directory().emplace(std::move(class_name), this);
}

UDOClass *UDOClass::GetClass(const std::string &class_name)
{
    const auto found = directory().find(class_name);
    return found == directory().end() ? nullptr : found->second;
}

bool UDOClass::sameClass(const UgUDO *udo, const std::string &class_name)
{
    const UDOClass *registered = GetClass(class_name);
    return registered && udo && registered->m_class_id == udo->askClassId();
}

void UDOClass::setOwnedObjSelection(const std::string &class_name,
                                    UF_UDOBJ_owned_object_selection_e mode)
{
    const UDOClass *registered = GetClass(class_name);
    if (!registered) return;
    UgException::throwOnFailure(UF_UDOBJ_set_owned_object_selection(registered->m_class_id, mode));
}

// The class of an id is the same as long as the process lives, so the platform is asked for its name
// once. One that is not registered yet may be later.
const UDOClass *UDOClass::ofId(unsigned class_id)
{
    static std::unordered_map<unsigned, const UDOClass *> known;
    const auto found = known.find(class_id);
    if (found != known.end()) return found->second;
    const UDOClass *registered = GetClass(classNameOf(class_id));
    if (registered) known.emplace(class_id, registered);
    return registered;
}

UDO *UDOClass::CreateInstance(const UgUDO *udo)
{
    const UDOClass *registered = of(*udo);
    return registered ? registered->wrap(*udo) : nullptr;
}

const UDOClass *UDOClass::of(const UgUDO &udo) { return ofId(udo.askClassId()); }

UDO *UDOClass::wrap(const UgUDO &udo) const
{
    UDO *wrapper = m_factory();
    wrapper->SetUdoObject(const_cast<UgUDO *>(&udo));
    return wrapper;
}

const UDO &UDOClass::sample() const
{
    if (!m_sample) m_sample.reset(m_factory());
    return *m_sample;
}

std::string GetUDOClassName(UgUDO *udo)
{
    char *name = nullptr;
    UgException::throwOnFailure(UF_UDOBJ_ask_udo_class_name(udo ? udo->getTag() : NULL_TAG, &name));
    return PlatformText(name).get();
}

} // namespace LumUg
