#include "ug_udo.hxx"

#include "opencpp/member.h"
#include "opencpp/wrapper_table.h"

#include <algorithm>
#include <cstring>

namespace {

using host::Link;
using host::Session;
using host::Udo;

// Doubles by their bits: writing a NaN over the same NaN changes nothing.
template <class T> bool sameStored(const std::vector<T> &a, const std::vector<T> &b)
{
    if constexpr (std::is_arithmetic_v<T>)
        return a.empty() || std::memcmp(a.data(), b.data(), a.size() * sizeof(T)) == 0;
    else
        return a == b;
}

template <class T>
void replace(const UgUDO &wrapper, const char *what, std::vector<T> Udo::*array,
             const std::vector<T> &values)
{
    std::vector<T> &stored = host::bodyOf<Udo>(wrapper).*array;
    host::require(stored.size() == values.size(), UF_err_count_mismatch);
    if (sameStored(stored, values)) return;
    Session::get().changing(host::objectOf(wrapper), what);
    stored = values;
}

template <class T>
void append(const UgUDO &wrapper, const char *what, std::vector<T> Udo::*array,
            const std::vector<T> &values)
{
    std::vector<T> &stored = host::bodyOf<Udo>(wrapper).*array;
    if (values.empty()) return;
    Session::get().changing(host::objectOf(wrapper), what);
    stored.insert(stored.end(), values.begin(), values.end());
}

int checkedLinkType(unsigned type)
{
    host::require(type >= 1 && type <= 4, UF_err_bad_parameter_number_1);
    return static_cast<int>(type);
}

// A dead object is refused like an unknown tag.
std::vector<tag_t> tagsOf(const std::vector<UgObject *> &objects)
{
    std::vector<tag_t> tags;
    tags.reserve(objects.size());
    for (const UgObject *object : objects) {
        const tag_t tag = object ? object->getTag() : NULL_TAG;
        if (tag != NULL_TAG) Session::get().require(tag);
        tags.push_back(tag);
    }
    return tags;
}

std::vector<UgObject *> wrappersOfType(const Udo &udo, int type)
{
    std::vector<UgObject *> objects;
    for (const Link &link : udo.links) {
        if (link.type == type) objects.push_back(UgWrapperTable::get().find(link.target));
    }
    return objects;
}

// The links of one type get new targets where they stand. Only the stretch from the first to the
// last that differs is rewritten; links of other types inside it stay as they are.
void retarget(host::Object &udo, int type, const std::vector<tag_t> &targets)
{
    std::vector<Link> links = udo.as<Udo>()->links;
    auto target = targets.begin();
    auto first = links.end(), last = links.end();
    for (auto link = links.begin(); link != links.end(); ++link) {
        if (link->type != type) continue;
        host::require(target != targets.end(), UF_err_count_mismatch);
        if (link->target != *target) {
            if (first == links.end()) first = link;
            last = link;
        }
        link->target = *target++;
    }
    host::require(target == targets.end(), UF_err_count_mismatch);
    if (first == links.end()) return;
    const auto place = static_cast<std::size_t>(first - links.begin());
    Session::get().rewriteLinks(udo, place, {first, last + 1});
}

} // namespace

UgUDO::~UgUDO() = default;

unsigned int UgUDO::askClassId() const
{
    return host::member("UgUDO::askClassId", [&] { return host::bodyOf<Udo>(*this).classId; });
}

std::vector<int> UgUDO::getInts() const
{
    return host::member("UgUDO::getInts", [&] { return host::bodyOf<Udo>(*this).ints; });
}

void UgUDO::setInts(const std::vector<int> &values)
{
    host::member("UgUDO::setInts", [&] { replace(*this, "ints", &Udo::ints, values); });
}

void UgUDO::addInts(const std::vector<int> &values)
{
    host::member("UgUDO::addInts", [&] { append(*this, "ints", &Udo::ints, values); });
}

std::vector<double> UgUDO::getDoubles() const
{
    return host::member("UgUDO::getDoubles", [&] { return host::bodyOf<Udo>(*this).doubles; });
}

void UgUDO::setDoubles(const std::vector<double> &values)
{
    host::member("UgUDO::setDoubles", [&] { replace(*this, "doubles", &Udo::doubles, values); });
}

void UgUDO::addDoubles(const std::vector<double> &values)
{
    host::member("UgUDO::addDoubles", [&] { append(*this, "doubles", &Udo::doubles, values); });
}

std::vector<std::string> UgUDO::getStrings() const
{
    return host::member("UgUDO::getStrings", [&] { return host::bodyOf<Udo>(*this).strings; });
}

void UgUDO::setStrings(const std::vector<std::string> &values)
{
    host::member("UgUDO::setStrings", [&] { replace(*this, "strings", &Udo::strings, values); });
}

void UgUDO::addStrings(const std::vector<std::string> &values)
{
    host::member("UgUDO::addStrings", [&] { append(*this, "strings", &Udo::strings, values); });
}

std::vector<double> UgUDO::getLengths() const
{
    return host::member("UgUDO::getLengths", [&] { return host::bodyOf<Udo>(*this).lengths; });
}

void UgUDO::setLengths(const std::vector<double> &values)
{
    host::member("UgUDO::setLengths", [&] { replace(*this, "lengths", &Udo::lengths, values); });
}

void UgUDO::addLengths(const std::vector<double> &values)
{
    host::member("UgUDO::addLengths", [&] { append(*this, "lengths", &Udo::lengths, values); });
}

std::vector<double> UgUDO::getAreas() const
{
    return host::member("UgUDO::getAreas", [&] { return host::bodyOf<Udo>(*this).areas; });
}

void UgUDO::setAreas(const std::vector<double> &values)
{
    host::member("UgUDO::setAreas", [&] { replace(*this, "areas", &Udo::areas, values); });
}

void UgUDO::addAreas(const std::vector<double> &values)
{
    host::member("UgUDO::addAreas", [&] { append(*this, "areas", &Udo::areas, values); });
}

std::vector<double> UgUDO::getVolumes() const
{
    return host::member("UgUDO::getVolumes", [&] { return host::bodyOf<Udo>(*this).volumes; });
}

void UgUDO::setVolumes(const std::vector<double> &values)
{
    host::member("UgUDO::setVolumes", [&] { replace(*this, "volumes", &Udo::volumes, values); });
}

void UgUDO::addVolumes(const std::vector<double> &values)
{
    host::member("UgUDO::addVolumes", [&] { append(*this, "volumes", &Udo::volumes, values); });
}

std::vector<UgObject *> UgUDO::getLinks(unsigned int type) const
{
    return host::member("UgUDO::getLinks", [&] {
        return wrappersOfType(host::bodyOf<Udo>(*this), checkedLinkType(type));
    });
}

void UgUDO::setLinks(unsigned int type, const std::vector<UgObject *> &objects)
{
    host::member("UgUDO::setLinks",
                 [&] { retarget(host::objectOf(*this), checkedLinkType(type), tagsOf(objects)); });
}

void UgUDO::addLinks(unsigned int type, const std::vector<UgObject *> &objects)
{
    host::member("UgUDO::addLinks", [&] {
        host::Object &udo = host::objectOf(*this);
        const int checked = checkedLinkType(type);
        std::vector<Link> links;
        links.reserve(objects.size());
        for (const tag_t tag : tagsOf(objects)) links.push_back({checked, tag});
        Session::get().addLinks(udo, links);
    });
}

std::vector<UgObject *> UgUDO::getOwnedObjects() const
{
    return host::member("UgUDO::getOwnedObjects", [&] {
        std::vector<UgObject *> objects;
        for (const tag_t tag : host::bodyOf<Udo>(*this).owned)
            objects.push_back(UgWrapperTable::get().find(tag));
        return objects;
    });
}
