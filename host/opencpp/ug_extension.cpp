#include "ug_extension.hxx"

#include "ug_typed.hxx"

#include <map>

struct UgDerivedClassManager::Registration {
    std::string name;
    UgTypedObject *(*creator)();
};

namespace {

// Handles by class name: filled while libraries are loaded, never emptied.
std::map<std::string, UgDerivedClassManager> &managers()
{
    static auto *map = new std::map<std::string, UgDerivedClassManager>;
    return *map;
}

} // namespace

UgDerivedClassManager::UgDerivedClassManager(const std::string &class_name,
                                             UgTypedObject *(*creator)())
{
    UgDerivedClassManager &first = managers()[class_name];
    if (!first.m_registration)
        first.m_registration = std::make_shared<Registration>(Registration{class_name, creator});
    m_registration = first.m_registration;
}

std::string UgDerivedClassManager::askClassName() const
{
    return m_registration ? m_registration->name : std::string();
}

UgTypedObject *UgDerivedClassManager::createInstance() const
{
    return m_registration ? m_registration->creator() : nullptr;
}

UgDerivedClassManager UgDerivedClassManager::find(const std::string &class_name)
{
    const auto found = managers().find(class_name);
    return found == managers().end() ? UgDerivedClassManager() : found->second;
}

UgExtensionObject::~UgExtensionObject() = default;

UgDerivedClassManager UgExtensionObject::askClassManager() const { return {}; }
