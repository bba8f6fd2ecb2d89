#include "opencpp/wrapper_table.h"

#include "model/session.h"

#include "ug_line.hxx"
#include "ug_part.hxx"
#include "ug_point.hxx"
#include "ug_udo.hxx"

// Never destroyed: statics of other libraries may still use their wrappers at exit.
UgWrapperTable &UgWrapperTable::get()
{
    static auto *table = new UgWrapperTable;
    return *table;
}

UgObject *UgWrapperTable::find(tag_t tag)
{
    if (tag == NULL_TAG) return nullptr;
    host::Session &session = host::Session::get();
    if (!session.find(tag) && !session.findPart(tag)) return nullptr;
    UgObject *&wrapper = m_wrappers[tag];
    if (!wrapper) wrapper = make(tag);
    return wrapper;
}

UgObject *UgWrapperTable::make(tag_t tag)
{
    const host::Object *object = host::Session::get().find(tag);
    UgObject *wrapper = object ? makeFor(*object) : static_cast<UgObject *>(new UgPart);
    wrapper->m_tag = tag;
    return wrapper;
}

UgObject *UgWrapperTable::makeFor(const host::Object &object)
{
    if (object.as<host::Udo>()) return new UgUDO;
    if (object.as<host::Point>()) return new UgPoint;
    if (object.as<host::Line>()) return new UgLine;
    if (object.as<host::Sheet>() || object.as<host::View>() || object.as<host::FontTable>())
        return new UgTypedObject;
    return new UgDisplayableObject;
}
