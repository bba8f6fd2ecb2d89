#include "ug_object.hxx"

#include "opencpp/member.h"
#include "opencpp/wrapper_table.h"

#include "ug_in_part.hxx"

UgObject::~UgObject() { UgWrapperTable::get().forget(this); }

UgObject *UgObject::find(tag_t tag)
{
    return host::member("UgObject::find", [&] { return UgWrapperTable::get().find(tag); });
}

bool UgObject::isAlive() const
{
    host::Session &session = host::Session::get();
    return session.find(m_tag) || session.findPart(m_tag);
}

void UgObject::setTag(tag_t tag)
{
    UgWrapperTable &table = UgWrapperTable::get();
    if (tag == NULL_TAG)
        table.forget(this);
    else
        table.keep(this);
    m_tag = tag;
}

UgInPartObject::~UgInPartObject() = default;

UgPart *UgInPartObject::getOwningPart() const
{
    return host::member("UgInPartObject::getOwningPart", [&] {
        const host::Object &object = host::objectOf(*this);
        return dynamic_cast<UgPart *>(UgWrapperTable::get().find(object.part->tag));
    });
}
