// What the platform calls: a short-lived wrapper of the stored class answers.
#include "udo/udo.h"

#include "udo/udo_class.h"

#include "ug_session.hxx"

namespace LumUg {

namespace {

UgTypedObject *linkedObject(const UF_UDOBJ_link_s *link)
{
    return link ? dynamic_cast<UgTypedObject *>(UgObject::find(link->assoc_ug_tag)) : nullptr;
}

// Empty for a class that is not registered here.
boost::shared_ptr<UDO> wrapperFor(tag_t udo)
{
    if (!UgSession::isInitialized()) UgSession::initialize();
    return UDO::Create(dynamic_cast<const UgUDO *>(UgObject::find(udo)));
}

} // namespace

void UDO::DeleteMethod(tag_t udo, UF_UDOBJ_link_s *link)
{
    if (const auto wrapper = wrapperFor(udo)) wrapper->MemberDeletion(linkedObject(link));
}

void UDO::InfoObjMethod(tag_t udo)
{
    if (const auto wrapper = wrapperFor(udo)) wrapper->InfoObject();
}

void UDO::UpdateMethod(tag_t udo, UF_UDOBJ_link_s *link)
{
    if (const auto wrapper = wrapperFor(udo)) wrapper->Update(linkedObject(link));
}

} // namespace LumUg
