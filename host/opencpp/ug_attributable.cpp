#include "ug_attributable.hxx"

#include "opencpp/member.h"

using host::Failure;
using host::Session;

UgAttributableObject::~UgAttributableObject() = default;

bool UgAttributableObject::hasStringAttribute(const std::string &title) const
{
    try {
        return host::member("UgAttributableObject::hasStringAttribute",
                            [&] { return Session::get().attribute(getTag(), title) != nullptr; });
    } catch (const UgException &) {
        return false; // a dead object has no attributes
    }
}

std::string UgAttributableObject::getStringAttributeValue(const std::string &title) const
{
    return host::member("UgAttributableObject::getStringAttributeValue", [&] {
        const std::string *value = Session::get().attribute(getTag(), title);
        if (!value) throw Failure{UF_err_attribute_missing, title};
        return *value;
    });
}

void UgAttributableObject::setStringAttributeValue(const std::string &title,
                                                   const std::string &value)
{
    host::member("UgAttributableObject::setStringAttributeValue", [&] {
        if (!Session::get().attribute(getTag(), title))
            throw Failure{UF_err_attribute_missing, title};
        Session::get().setAttribute(getTag(), title, value);
    });
}

void UgAttributableObject::addStringAttribute(const std::string &title, const std::string &value)
{
    host::member("UgAttributableObject::addStringAttribute", [&] {
        if (Session::get().attribute(getTag(), title))
            throw Failure{UF_err_attribute_exists, title};
        Session::get().setAttribute(getTag(), title, value);
    });
}

void UgAttributableObject::deleteStringAttribute(const std::string &title)
{
    host::member("UgAttributableObject::deleteStringAttribute", [&] {
        if (!Session::get().removeAttribute(getTag(), title))
            throw Failure{UF_err_attribute_missing, title};
    });
}

std::vector<std::string> UgAttributableObject::askStringAttributeTitles() const
{
    return host::member("UgAttributableObject::askStringAttributeTitles", [&] {
        std::vector<std::string> titles;
        for (const host::Attribute &attribute : Session::get().attributesOf(getTag()))
            titles.push_back(attribute.title);
        return titles;
    });
}
