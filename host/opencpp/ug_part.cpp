#include "ug_part.hxx"

#include "opencpp/member.h"
#include "opencpp/wrapper_table.h"

#include "uf_part.h"

namespace {

// The first object after a place in the order of creation; condemned ones are passed over.
UgTypedObject *objectAfter(const host::Part &part, std::uint64_t ordinal)
{
    for (auto at = part.objects.upper_bound(ordinal); at != part.objects.end(); ++at) {
        if (at->second->status != host::Status::alive) continue;
        return dynamic_cast<UgTypedObject *>(UgWrapperTable::get().find(at->second->tag));
    }
    return nullptr;
}

} // namespace

UgPart::~UgPart() = default;

bool UgPart::isMillimeters() const
{
    return host::member("UgPart::isMillimeters", [&] {
        return host::Session::get().requirePart(getTag()).units == UF_PART_METRIC;
    });
}

std::string UgPart::getFullName() const
{
    return host::member("UgPart::getFullName",
                        [&] { return host::Session::get().requirePart(getTag()).path; });
}

UgTypedObject *UgPart::iterateFirst() const
{
    return host::member("UgPart::iterateFirst",
                        [&] { return objectAfter(host::Session::get().requirePart(getTag()), 0); });
}

UgTypedObject *UgPart::iterateNext(UgTypedObject *object) const
{
    return host::member("UgPart::iterateNext", [&] {
        host::require(object, UF_err_bad_parameter_number_1);
        const host::Object &last = host::objectOf(*object);
        return objectAfter(host::Session::get().requirePart(getTag()), last.ordinal);
    });
}
