#include "udo/udo.h"

#include "udo/growth.h"
#include "udo/udo_class.h"
#include "udo/udo_data.h"

#include "uf.h"
#include "uf_obj.h"
#include "ug_exception.hxx"

#include <memory>
#include <stdexcept>

namespace LumUg {

namespace {

// The platform's own lists of tags are given back with UF_free.
struct Freed {
    void operator()(tag_t *list) const { UF_free(list); }
};

UgTypedObject *typedObject(tag_t tag)
{
    return tag == NULL_TAG ? nullptr : dynamic_cast<UgTypedObject *>(UgObject::find(tag));
}

std::vector<UgTypedObject *> typedObjects(const std::vector<tag_t> &tags)
{
    std::vector<UgTypedObject *> objects;
    for (const tag_t tag : tags) {
        if (UgTypedObject *object = typedObject(tag)) objects.push_back(object);
    }
    return objects;
}

std::vector<tag_t> ownedBy(tag_t udo)
{
    unsigned count = 0;
    tag_t *list = nullptr;
    UgException::throwOnFailure(UF_UDOBJ_ask_owned_objects(udo, &count, &list));
    const std::unique_ptr<tag_t, Freed> freed(list);
    return {list, list + count};
}

tag_t tagOf(const UgObject *object) { return object ? object->getTag() : NULL_TAG; }

UF_UDOBJ_link_t linkTo(unsigned type, tag_t object) { return {static_cast<int>(type), object, 0}; }

void requireObject(const UDO &udo, const char *operation)
{
    if (!udo.IsNull()) return;
    throw std::runtime_error("UDO::" + std::string(operation) + ": UDO object has a NULL UgUDO");
}

void requireBelow(std::size_t index, std::size_t count, const char *kind)
{
    if (index < count) return;
    throw std::runtime_error("Requested " + std::string(kind) +
                             " offset that is greater than UDO has.");
}

// The growth rule: within the array one element is replaced and the whole written back; past its
// end a run is appended.
template <class T>
void setElement(UgUDO &udo, unsigned index, const T &value, std::vector<T> (UgUDO::*read)() const,
                void (UgUDO::*replace)(const std::vector<T> &),
                void (UgUDO::*append)(const std::vector<T> &))
{
    std::vector<T> elements = (udo.*read)();
    if (index < elements.size()) {
        elements[index] = value;
        (udo.*replace)(elements);
    } else {
        (udo.*append)(appendedRun(elements.size(), index, value));
    }
}

} // namespace

UDO::UDO() = default;

UDO::UDO(UgUDO *udo) : m_udo(udo) {}

UDO::~UDO() = default;

void UDO::InfoObject() {}

void UDO::MemberDeletion(UgTypedObject *) {}

void UDO::Update(UgTypedObject *) {}

UDOClass *UDO::GetUDOClass() const { return nullptr; }

// --- finding, making, deleting --------------------------------------------------------------------

boost::shared_ptr<UDO> UDO::Create(unsigned tag)
{
    try {
        return Create(typedObject(tag));
    } catch (const UgException &) { // a tag that is gone finds nothing
        return {};
    }
}

boost::shared_ptr<UDO> UDO::Create(const UgTypedObject *object)
{
    const auto *udo = dynamic_cast<const UgUDO *>(object);
    if (!udo || !udo->isAlive()) return {};
    return boost::shared_ptr<UDO>(UDOClass::CreateInstance(udo));
}

boost::shared_ptr<UDO> UDO::createWanted(tag_t tag, IsWanted isWanted)
{
    if (tag == NULL_TAG) return {};
    const auto *udo = dynamic_cast<const UgUDO *>(UgObject::find(tag));
    if (!udo) return {};
    const UDOClass *udo_class = UDOClass::of(*udo);
    if (!udo_class || !isWanted(&udo_class->sample())) return {};
    return boost::shared_ptr<UDO>(udo_class->wrap(*udo));
}

std::vector<UgUDO *> UDO::GetAllUgUDOsOfClass(UgObject *context, unsigned class_id)
{
    if (tagOf(context) == NULL_TAG)
        throw std::runtime_error("Null context passed to UDO::GetAllUgUDOsOfClass");
    std::vector<UgUDO *> found;
    for (tag_t tag = NULL_TAG;;) {
        UgException::throwOnFailure(
            UF_UDOBJ_cycle_udos_by_class(context->getTag(), class_id, &tag));
        if (tag == NULL_TAG) return found;
        if (auto *udo = dynamic_cast<UgUDO *>(UgObject::find(tag))) found.push_back(udo);
    }
}

tag_t UDO::tag() const { return tagOf(m_udo); }

void UDO::CreateUDO()
{
    if (m_udo) return;
    const UDOClass *udo_class = GetUDOClass();
    if (!udo_class)
        throw std::logic_error("UDO::CreateUDO: a view without a class cannot make its object");
    tag_t tag = NULL_TAG;
    UgException::throwOnFailure(UF_UDOBJ_create_udo(udo_class->GetClassId(), &tag));
    auto *udo = dynamic_cast<UgUDO *>(UgObject::find(tag));
    if (!udo) throw std::runtime_error("UDO::CreateUDO: the new object cannot be found");
    m_udo = udo;
    m_udo->setLayer(kUdoLayer);
}

void UDO::DeleteUDO()
{
    if (!m_udo) return;
    UgException::throwOnFailure(UF_OBJ_delete_object(tag()));
    m_udo = nullptr;
}

// --- reading --------------------------------------------------------------------------------------

// No test for a missing object: the platform is asked, and refuses.
int UDO::GetInt(unsigned index, int fallback) const
{
    const UdoData data(tag());
    return index < data.ints().size() ? data.ints()[index] : fallback;
}

double UDO::GetDouble(unsigned index) const
{
    requireObject(*this, "GetDouble");
    const UdoData data(tag());
    return index < data.doubles().size() ? data.doubles()[index] : 0.0;
}

std::string UDO::GetString(unsigned index) const
{
    requireObject(*this, "GetString");
    const UdoData data(tag());
    return index < data.strings().size() ? data.strings()[index] : std::string();
}

double UDO::GetLength(unsigned index) const
{
    requireObject(*this, "GetLength");
    const UdoData data(tag());
    requireBelow(index, data.lengths().size(), "length");
    return data.lengths()[index];
}

double UDO::GetArea(unsigned index) const
{
    requireObject(*this, "GetArea");
    const UdoData data(tag());
    requireBelow(index, data.areas().size(), "area");
    return data.areas()[index];
}

double UDO::GetVolume(unsigned index) const
{
    requireObject(*this, "GetVolume");
    const UdoData data(tag());
    requireBelow(index, data.volumes().size(), "volume");
    return data.volumes()[index];
}

UgTypedObject *UDO::GetLink(unsigned type, unsigned index) const
{
    requireObject(*this, "GetLink");
    const std::vector<tag_t> links = UdoData(tag()).links(type);
    requireBelow(index, links.size(), "link");
    return typedObject(links[index]);
}

UgTypedObject *UDO::getOwnedObject(unsigned index) const
{
    requireObject(*this, "getOwnedObject");
    const std::vector<tag_t> owned = ownedBy(tag());
    requireBelow(index, owned.size(), "owned object");
    return typedObject(owned[index]);
}

std::vector<int> UDO::GetInts() const { return copyOf(UdoData(tag()).ints()); }

std::vector<double> UDO::GetDoubles() const { return copyOf(UdoData(tag()).doubles()); }

std::vector<std::string> UDO::GetStrings() const { return copyOf(UdoData(tag()).strings()); }

unsigned UDO::GetNumberOfStrings() const
{
    requireObject(*this, "GetString"); // the text names its sister
    return static_cast<unsigned>(UdoData(tag()).strings().size());
}

std::vector<UgTypedObject *> UDO::GetLinks(unsigned type) const
{
    return typedObjects(UdoData(tag()).links(type));
}

std::vector<unsigned> UDO::linkTags(unsigned type) const { return UdoData(tag()).links(type); }

std::vector<UgTypedObject *> UDO::GetOwnedObjects() const { return typedObjects(ownedBy(tag())); }

// Asked by tag: those of other types are not looked up.
std::vector<UgTypedObject *> UDO::GetOwnedObjects(int type) const
{
    std::vector<tag_t> tags = ownedTags();
    std::erase_if(tags, [&](tag_t owned) {
        int found = 0, subtype = 0;
        UgException::throwOnFailure(UF_OBJ_ask_type_and_subtype(owned, &found, &subtype));
        return found != type;
    });
    return typedObjects(tags);
}

std::vector<unsigned> UDO::ownedTags() const { return ownedBy(tag()); }

// --- writing --------------------------------------------------------------------------------------

void UDO::SetInt(unsigned index, int value)
{
    CreateUDO();
    setElement(*m_udo, index, value, &UgUDO::getInts, &UgUDO::setInts, &UgUDO::addInts);
}

void UDO::SetDouble(unsigned index, double value)
{
    CreateUDO();
    setElement(*m_udo, index, value, &UgUDO::getDoubles, &UgUDO::setDoubles, &UgUDO::addDoubles);
}

void UDO::SetString(unsigned index, const std::string &value)
{
    CreateUDO();
    setElement(*m_udo, index, value, &UgUDO::getStrings, &UgUDO::setStrings, &UgUDO::addStrings);
}

void UDO::SetLength(unsigned index, double value)
{
    CreateUDO();
    setElement(*m_udo, index, value, &UgUDO::getLengths, &UgUDO::setLengths, &UgUDO::addLengths);
}

void UDO::SetArea(unsigned index, double value)
{
    CreateUDO();
    setElement(*m_udo, index, value, &UgUDO::getAreas, &UgUDO::setAreas, &UgUDO::addAreas);
}

void UDO::SetVolume(unsigned index, double value)
{
    CreateUDO();
    setElement(*m_udo, index, value, &UgUDO::getVolumes, &UgUDO::setVolumes, &UgUDO::addVolumes);
}

void UDO::SetLink(unsigned type, unsigned index, const UgTypedObject *object)
{
    CreateUDO();
    auto *value = const_cast<UgTypedObject *>(object);
    std::vector<UgObject *> links = m_udo->getLinks(type);
    if (index < links.size()) {
        links[index] = value;
        m_udo->setLinks(type, links);
    } else {
        std::vector<UgObject *> run(index - links.size(), nullptr);
        run.push_back(value);
        m_udo->addLinks(type, run);
    }
}

void UDO::removeLink(unsigned type, const UgTypedObject *object)
{
    CreateUDO();
    UF_UDOBJ_link_t link = linkTo(type, tagOf(object));
    UgException::throwOnFailure(UF_UDOBJ_delete_link(tag(), &link));
}

void UDO::AddOwnedObjects(const std::vector<UgTypedObject *> &objects)
{
    CreateUDO();
    if (objects.empty()) return;
    std::vector<tag_t> tags;
    for (const UgTypedObject *object : objects) tags.push_back(tagOf(object));
    UgException::throwOnFailure(
        UF_UDOBJ_add_owning_links(tag(), static_cast<unsigned>(tags.size()), tags.data()));
}

void UDO::DeleteOwnedObject(const UgTypedObject *object)
{
    if (tagOf(object) == NULL_TAG) return;
    CreateUDO();
    UgException::throwOnFailure(UF_UDOBJ_delete_owning_link(tag(), object->getTag()));
}

// --- slots ----------------------------------------------------------------------------------------

std::vector<std::string> UDO::get(const StringTail &slot) const
{
    if (IsNull()) return {};
    return Record(*this).get(slot);
}

void UDO::set(const StringTail &slot, const std::vector<std::string> &values)
{
    CreateUDO();
    const std::size_t wanted = slot.index + values.size();
    const std::size_t stored = GetNumberOfStrings();
    if (stored < wanted) m_udo->addStrings(std::vector<std::string>(wanted - stored));
    if (stored > wanted) keepStrings(wanted);

    std::vector<std::string> strings = GetStrings();
    std::copy(values.begin(), values.end(), strings.begin() + slot.index);
    if (!strings.empty()) m_udo->setStrings(strings);
}

std::string UDO::get(const AttributeSlot &slot) const
{
    return has(slot) ? m_udo->getStringAttributeValue(slot.title) : std::string();
}

bool UDO::has(const AttributeSlot &slot) const
{
    return m_udo && m_udo->hasStringAttribute(slot.title);
}

void UDO::set(const AttributeSlot &slot, const std::string &value)
{
    CreateUDO();
    if (m_udo->hasStringAttribute(slot.title))
        m_udo->setStringAttributeValue(slot.title, value);
    else
        m_udo->addStringAttribute(slot.title, value);
}

// The platform deletes all strings or none: what is kept is added again, and when that fails, all.
void UDO::keepStrings(std::size_t count)
{
    const std::vector<std::string> all = GetStrings();
    UgException::throwOnFailure(UF_UDOBJ_delete_strings(tag()));
    if (count == 0) return;
    try {
        m_udo->addStrings({all.begin(), all.begin() + count});
    } catch (...) {
        m_udo->addStrings(all);
        throw;
    }
}

// --- children -------------------------------------------------------------------------------------

void UDO::attach(unsigned linkType, const UDO &child)
{
    if (child.IsNull()) throw std::logic_error("UDO::attach: the child has no object yet");
    CreateUDO();
    UF_UDOBJ_link_t link = linkTo(linkType, child.tag());
    UgException::throwOnFailure(UF_UDOBJ_add_links(tag(), 1, &link));
}

void UDO::detach(unsigned linkType, const UDO &child)
{
    UF_UDOBJ_link_t link = linkTo(linkType, child.tag());
    UgException::throwOnFailure(UF_UDOBJ_delete_link(tag(), &link));
}

void UDO::discard(unsigned linkType, UDO &child)
{
    detach(linkType, child);
    child.DeleteUDO();
}

void UDO::exchange(unsigned linkType, const UDO &old, const UDO &fresh)
{
    if (fresh.IsNull()) throw std::logic_error("UDO::exchange: the new child has no object yet");
    UF_UDOBJ_link_t link = linkTo(linkType, old.tag());
    UgException::throwOnFailure(UF_UDOBJ_edit_link(tag(), &link, fresh.tag()));
}

} // namespace LumUg
