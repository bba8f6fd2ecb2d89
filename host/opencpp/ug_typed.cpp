#include "ug_typed.hxx"

#include "opencpp/member.h"
#include "opencpp/wrapper_table.h"

#include "uf_obj.h"

UgTypedObject::~UgTypedObject() = default;

int UgTypedObject::askType() const
{
    return host::member("UgTypedObject::askType",
                        [&] { return host::typeOf(host::objectOf(*this)).type; });
}

int UgTypedObject::askSubtype() const
{
    return host::member("UgTypedObject::askSubtype",
                        [&] { return host::typeOf(host::objectOf(*this)).subtype; });
}

std::string UgTypedObject::getName() const
{
    return host::member("UgTypedObject::getName", [&] { return host::objectOf(*this).name; });
}

void UgTypedObject::setName(const std::string &name)
{
    host::member("UgTypedObject::setName", [&] {
        host::require(name.size() <= UF_OBJ_NAME_LEN, UF_err_bad_parameter_number_1);
        host::Object &object = host::objectOf(*this);
        if (object.name != name) host::Session::get().rename(object, name);
    });
}
