// The base of every persistent class: a thin, short-lived view on one user defined object.
#pragma once

#include "udo/export.h"
#include "udo/slots.h"
#include "udo/udo_data.h"

#include "uf_udobj.h"
#include "ug_typed.hxx"
#include "ug_udo.hxx"

#include <boost/shared_ptr.hpp>

#include <memory>
#include <optional>
#include <span>
#include <string>
#include <tuple>
#include <vector>

namespace LumUg {

class UDOClass;

inline constexpr int kUdoLayer = 254;          // where every UDO of the library is put
inline constexpr unsigned kChildLink = 2;      // parent to child: the child dies with the parent
inline constexpr unsigned kSheetLink = 1;      // format to sheet: the format dies with the sheet
inline constexpr unsigned kDefinitionLink = 4; // instance to definition record: silent both ways

// One reading of a record's arrays. Every accessor of UDO reads afresh; a comparison or a copy may
// take one Record of each side.
class Record;

class QELFMT_API UDO {
public:
    UDO();                      // no object yet: the first write makes it
    explicit UDO(UgUDO *udo);   // a view on an existing object
    UDO(const UDO &) = default; // views the same object
    UDO &operator=(const UDO &) = default;

    virtual ~UDO();
    // Writes the object's description to the information window.
    virtual void InfoObject();
    // An object that this one links to is being deleted (links of type 2 and 3).
    virtual void MemberDeletion(UgTypedObject *object);
    // An object that this one links to has changed.
    virtual void Update(UgTypedObject *object);
    // The registration of the class; null in this base.
    virtual UDOClass *GetUDOClass() const;

    // The wrapper of the right class; empty when the object is no UDO, is gone, or its class is not
    // one of this library's.
    static boost::shared_ptr<UDO> Create(unsigned tag);
    static boost::shared_ptr<UDO> Create(const UgTypedObject *object);

    // Every UDO of the class in a part, in order of creation. A null context, or one without a tag,
    // raises "Null context passed to UDO::GetAllUgUDOsOfClass".
    static std::vector<UgUDO *> GetAllUgUDOsOfClass(UgObject *context, unsigned class_id);

    bool IsNull() const { return m_udo == nullptr; }
    UgUDO *GetUdoObject() const { return m_udo; }
    tag_t tag() const; // NULL_TAG when there is no object
    void DeleteUDO();  // deletes the object; the view is then empty

    // Out of range: the default, 0.0, an empty text.
    int GetInt(unsigned index, int fallback) const;
    double GetDouble(unsigned index) const;
    std::string GetString(unsigned index) const;
    // Out of range: an error.
    double GetLength(unsigned index) const;
    double GetArea(unsigned index) const;
    double GetVolume(unsigned index) const;
    UgTypedObject *GetLink(unsigned type, unsigned index) const; // null links count
    UgTypedObject *getOwnedObject(unsigned index) const;

    std::vector<int> GetInts() const;
    std::vector<double> GetDoubles() const;
    std::vector<std::string> GetStrings() const;
    unsigned GetNumberOfStrings() const;
    std::vector<UgTypedObject *> GetLinks(unsigned type) const; // without null and dead ones
    std::vector<UgTypedObject *> GetOwnedObjects() const;
    std::vector<UgTypedObject *> GetOwnedObjects(int type) const;

    // Each makes the object first when there is none. An index past the end appends; ints, doubles,
    // lengths, areas and volumes in between are filled with 0, 1, 2, ... counted from the old end
    // (parts in the field hold that, and must compare equal), strings with empty texts, links with
    // null.
    void SetInt(unsigned index, int value);
    void SetDouble(unsigned index, double value);
    void SetString(unsigned index, const std::string &value);
    void SetLength(unsigned index, double value);
    void SetArea(unsigned index, double value);
    void SetVolume(unsigned index, double value);
    void SetLink(unsigned type, unsigned index, const UgTypedObject *object);
    void removeLink(unsigned type, const UgTypedObject *object);
    void AddOwnedObjects(const std::vector<UgTypedObject *> &objects);
    void DeleteOwnedObject(const UgTypedObject *object); // only releases it; null is no error

    // What the platform calls; installed for every class by its registration.
    static void DeleteMethod(tag_t udo, UF_UDOBJ_link_s *link);
    static void InfoObjMethod(tag_t udo);
    static void UpdateMethod(tag_t udo, UF_UDOBJ_link_s *link);

protected:
    void CreateUDO(); // on layer 254; nothing when there is one
    void SetUdoObject(UgUDO *udo) { m_udo = udo; }

    // --- slots ----------------------------------------------------------------------------------
    int get(const IntSlot &slot) const { return GetInt(slot.index, slot.fallback); }
    double get(const DoubleSlot &slot) const { return GetDouble(slot.index); }
    std::string get(const StringSlot &slot) const { return GetString(slot.index); }
    std::vector<std::string> get(const StringTail &slot) const; // empty when there is no object
    std::string get(const AttributeSlot &slot) const;           // empty when absent
    double get(const DoubleFamily &slot, unsigned i) const
    {
        return GetDouble(slot.first + i * slot.stride);
    }
    void set(const IntSlot &slot, int value) { SetInt(slot.index, value); }
    void set(const DoubleSlot &slot, double value) { SetDouble(slot.index, value); }
    void set(const StringSlot &slot, const std::string &value) { SetString(slot.index, value); }
    // Strings from the slot on become exactly these; those before it are never touched.
    void set(const StringTail &slot, const std::vector<std::string> &values);
    void set(const AttributeSlot &slot, const std::string &value); // adds it when missing
    void set(const DoubleFamily &slot, unsigned i, double value)
    {
        SetDouble(slot.first + i * slot.stride, value);
    }
    bool has(const AttributeSlot &slot) const;

    // Compares slot by slot in the order given; doubles exactly, NaN differs from itself.
    template <class... Slots>
    bool sameSlots(const UDO &other, const std::tuple<Slots...> &order) const;
    // Writes the slots of `source` into this record: one write an array.
    template <class... Slots> void copySlots(const UDO &source, const std::tuple<Slots...> &order);

    std::vector<unsigned> ownedTags() const; // of the owned objects, in order

    // --- children -------------------------------------------------------------------------------
    // Tells whether a wrapper is of the class that is looked for.
    using IsWanted = bool (*)(const UDO *wrapper);
    // Like Create, empty also for what is not wanted, which is told without making a wrapper for it.
    static boost::shared_ptr<UDO> createWanted(tag_t tag, IsWanted isWanted);
    template <class Child> static boost::shared_ptr<Child> createChild(tag_t tag)
    {
        const IsWanted isChild = [](const UDO *wrapper) {
            return dynamic_cast<const Child *>(wrapper) != nullptr;
        };
        return boost::static_pointer_cast<Child>(createWanted(tag, isChild));
    }
    std::vector<unsigned> linkTags(unsigned type) const; // as stored, null ones included
    template <class Child>
    std::vector<boost::shared_ptr<Child>> children(const ChildList<Child> &list) const;
    template <class Child> boost::shared_ptr<Child> firstChild(const ChildList<Child> &list) const;
    // Adds one link; makes this record first when there is none.
    void attach(unsigned linkType, const UDO &child);
    void detach(unsigned linkType, const UDO &child); // the child lives on
    void discard(unsigned linkType, UDO &child);      // detached, then deleted
    // The child `old` is replaced by `fresh` in place: the order of links stays. `old` lives on.
    void exchange(unsigned linkType, const UDO &old, const UDO &fresh);

private:
    friend class UDOClass;
    friend class Record;
    void keepStrings(std::size_t count); // the first ones

    UgUDO *m_udo = nullptr;
};

// A snapshot of the three free arrays and, on demand, attributes. Reading one costs a call of the
// platform; its elements are copied when something is put.
class QELFMT_API Record {
public:
    explicit Record(const UDO &udo); // an empty view gives empty arrays
    Record(Record &&) = delete;      // neither copied nor moved: it owns its reading

    int get(const IntSlot &slot) const
    {
        return slot.index < ints().size() ? ints()[slot.index] : slot.fallback;
    }
    double get(const DoubleSlot &slot) const
    {
        return slot.index < doubles().size() ? doubles()[slot.index] : 0.0;
    }
    std::string get(const StringSlot &slot) const
    {
        return slot.index < countStrings() ? text(slot.index) : std::string();
    }
    std::vector<std::string> get(const StringTail &slot) const
    {
        std::vector<std::string> tail;
        for (std::size_t i = slot.index; i < countStrings(); ++i) tail.emplace_back(text(i));
        return tail;
    }
    std::string get(const AttributeSlot &slot) const;

    // Change the snapshot; write() stores it.
    void put(const IntSlot &slot, int value);
    void put(const DoubleSlot &slot, double value);
    void put(const StringSlot &slot, const std::string &value);
    void put(const StringTail &slot, const std::vector<std::string> &values);
    void put(const AttributeSlot &slot, const std::string &value);
    void write(UDO &udo) const; // at most one edit and one append for each array

    std::span<const int> ints() const
    {
        if (m_changed) return m_changed->ints;
        return m_read ? m_read->ints() : std::span<const int>();
    }
    std::span<const double> doubles() const
    {
        if (m_changed) return m_changed->doubles;
        return m_read ? m_read->doubles() : std::span<const double>();
    }
    std::vector<std::string> strings() const { return get(StringTail{0, "strings"}); }

private:
    struct Arrays {
        std::vector<int> ints;
        std::vector<double> doubles;
        std::vector<std::string> strings;
    };
    Arrays copy() const { return {copyOf(ints()), copyOf(doubles()), strings()}; }
    Arrays &changed();
    std::size_t countStrings() const
    {
        if (m_changed) return m_changed->strings.size();
        return m_read ? m_read->strings().size() : 0;
    }
    const char *text(std::size_t index) const
    {
        return m_changed ? m_changed->strings[index].c_str() : m_read->strings()[index];
    }

    const UDO *m_source;
    std::optional<UdoData> m_read;
    std::optional<Arrays> m_changed;                               // after the first put
    std::vector<std::pair<std::string, std::string>> m_attributes; // put, not yet written
};

template <class... Slots>
bool UDO::sameSlots(const UDO &other, const std::tuple<Slots...> &order) const
{
    const Record mine(*this), theirs(other);
    return std::apply(
        [&](const auto &...slot) { return ((mine.get(slot) == theirs.get(slot)) && ...); }, order);
}

template <class... Slots> void UDO::copySlots(const UDO &source, const std::tuple<Slots...> &order)
{
    CreateUDO();
    const Record from(source);
    Record to(*this);
    std::apply([&](const auto &...slot) { (to.put(slot, from.get(slot)), ...); }, order);
    to.write(*this);
}

template <class Child>
std::vector<boost::shared_ptr<Child>> UDO::children(const ChildList<Child> &list) const
{
    std::vector<boost::shared_ptr<Child>> found;
    if (IsNull()) return found;
    for (const unsigned child_tag : linkTags(list.linkType)) {
        if (auto child = createChild<Child>(child_tag)) found.push_back(child);
    }
    return found;
}

template <class Child> boost::shared_ptr<Child> UDO::firstChild(const ChildList<Child> &list) const
{
    if (IsNull()) return {};
    // One by one: what is behind the child, a thousand blocks perhaps, is not looked at.
    for (const unsigned child_tag : linkTags(list.linkType)) {
        if (auto child = createChild<Child>(child_tag)) return child;
    }
    return {};
}

} // namespace LumUg
